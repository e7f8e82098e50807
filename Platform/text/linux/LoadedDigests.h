// Digests of the module that has them, loaded when the first one is asked for.
#pragma once

#include <memory>
#include <mutex>

#include "Core/Text.h"
#include "Platform/text/Digests.h"

namespace halvorn {

class LoadedDigests : public Digests {
 public:
  explicit LoadedDigests(const Text& modulePath);
  ~LoadedDigests() override;
  // nullopt also without the module.
  [[nodiscard]] std::optional<Md5Digest> md5(std::string_view bytes) const override;

 private:
  const Text modulePath_;
  mutable std::once_flag once_;
  mutable std::unique_ptr<const Digests> loaded_;
};

}  // namespace halvorn
