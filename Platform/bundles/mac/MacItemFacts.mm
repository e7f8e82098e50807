#include "Platform/bundles/mac/MacItemFacts.h"

#include <cstring>

#include "Platform/running/mac/Conversions.h"
#include "Platform/running/mac/Held.h"

#import <Carbon/Carbon.h>
#import <CoreServices/CoreServices.h>

namespace halvorn {
namespace {

constexpr UInt32 kLongestPath = 16 * 1024;

std::optional<FSRef> itemAt(const Text& path) {
  FSRef item;
  const std::string bytes = path.bytes();
  const OSStatus status = FSPathMakeRef(reinterpret_cast<const UInt8*>(bytes.c_str()), &item, nullptr);
  return status == noErr ? std::optional(item) : std::nullopt;
}

// A resource file that is open for reading, and current while this lives.
class ResourceFile {
 public:
  explicit ResourceFile(const FSRef& item) : before_(CurResFile()), file_(FSOpenResFile(&item, fsRdPerm)) {
    if (isOpen()) UseResFile(file_);
  }
  ~ResourceFile() {
    if (!isOpen()) return;
    CloseResFile(file_);
    UseResFile(before_);
  }
  ResourceFile(const ResourceFile&) = delete;
  ResourceFile& operator=(const ResourceFile&) = delete;
  [[nodiscard]] bool isOpen() const { return file_ != -1; }

 private:
  const ResFileRefNum before_;
  const ResFileRefNum file_;
};

}  // namespace

std::optional<ApplicationItemFlags> MacItemFacts::flags(const Text& path) const {
  const auto item = itemAt(path);
  LSItemInfoRecord record;
  std::memset(&record, 0, sizeof(record));
  if (!item ||
      LSCopyItemInfoForRef(&*item, kLSRequestAppTypeFlags | kLSRequestBasicFlagsOnly, &record) != noErr)
    return std::nullopt;
  return ApplicationItemFlags{.isPackage = (record.flags & kLSItemInfoIsPackage) != 0,
                              .isNativeApplication = (record.flags & kLSItemInfoIsNativeApp) != 0};
}

std::optional<std::string> MacItemFacts::resource(const Text& path, FourCharCode type,
                                                  std::int16_t id) const {
  const auto item = itemAt(path);
  if (!item) return std::nullopt;
  const ResourceFile file(*item);
  if (!file.isOpen()) return std::nullopt;
  const Handle resource = Get1Resource(type, id);
  if (resource == nullptr || *resource == nullptr) return std::nullopt;
  std::string bytes(*resource, static_cast<std::size_t>(GetHandleSize(resource)));
  ReleaseResource(resource);
  return bytes;
}

OptionalText MacItemFacts::aliasTarget(const Text& path) const {
  auto item = itemAt(path);
  Boolean isFolder = 0;
  Boolean wasAlias = 0;
  if (!item || FSResolveAliasFile(&*item, 1, &isFolder, &wasAlias) != noErr || wasAlias == 0)
    return std::nullopt;
  std::string target(kLongestPath, '\0');
  if (FSRefMakePath(&*item, reinterpret_cast<UInt8*>(target.data()), kLongestPath) != noErr)
    return std::nullopt;
  return Text(target.c_str());
}

}  // namespace halvorn
