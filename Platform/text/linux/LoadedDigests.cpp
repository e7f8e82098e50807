#include "Platform/text/linux/LoadedDigests.h"

#include "Platform/running/linux/LoadedModule.h"
#include "Platform/text/linux/DigestModule.h"

namespace halvorn {

LoadedDigests::LoadedDigests(const Text& modulePath) : modulePath_(modulePath) {}

LoadedDigests::~LoadedDigests() = default;

std::optional<Md5Digest> LoadedDigests::md5(std::string_view bytes) const {
  std::call_once(once_, [this] {
    const LoadedModule module(modulePath_);
    if (auto* make = module.function<MakeDigests>(kDigestModuleFunction)) loaded_.reset(make());
  });
  return loaded_ ? loaded_->md5(bytes) : std::nullopt;
}

}  // namespace halvorn
