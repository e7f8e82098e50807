#include "Platform/bundles/linux/ResourceFork.h"

#include <sys/xattr.h>

#include "Core/Paths.h"
#include "Platform/files/linux/FoundItem.h"
#include "Platform/files/posix/BoundedFile.h"

namespace halvorn {
namespace {

constexpr std::size_t kForkLimit = 16UL * 1024 * 1024;

constexpr std::uint32_t kAppleDoubleMagic = 0x00051607;
constexpr std::uint32_t kResourceForkEntry = 2;

// Big-endian numbers at positions that may lie anywhere.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  [[nodiscard]] std::optional<std::uint32_t> number(std::size_t at, std::size_t size) const {
    if (at > bytes_.size() || bytes_.size() - at < size) return std::nullopt;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) value = value << 8 | static_cast<unsigned char>(bytes_[at + i]);
    return value;
  }
  [[nodiscard]] std::optional<std::string> range(std::size_t at, std::size_t size) const {
    if (at > bytes_.size() || bytes_.size() - at < size) return std::nullopt;
    return std::string(bytes_.substr(at, size));
  }

 private:
  std::string_view bytes_;
};

// Where the entry of the type in the type list is, counted from the start of the fork.
std::optional<std::size_t> findType(const Bytes& fork, std::size_t typeList, FourCharCode type) {
  const auto last = fork.number(typeList, 2);
  if (!last || *last == 0xFFFF) return std::nullopt;
  for (std::size_t i = 0; i <= *last; ++i) {
    const std::size_t entry = typeList + 2 + i * 8;
    const auto found = fork.number(entry, 4);
    if (!found) return std::nullopt;
    if (*found == type) return entry;
  }
  return std::nullopt;
}

std::optional<std::string> extendedAttribute(const std::string& path, const char* name) {
  const ssize_t size = ::getxattr(path.c_str(), name, nullptr, 0);
  if (size <= 0 || static_cast<std::size_t>(size) > kForkLimit) return std::nullopt;
  std::string value(static_cast<std::size_t>(size), '\0');
  const ssize_t read = ::getxattr(path.c_str(), name, value.data(), value.size());
  if (read != size) return std::nullopt;
  return value;
}

}  // namespace

std::optional<std::string> resourceIn(std::string_view forkBytes, FourCharCode type, std::int16_t id) {
  const Bytes fork(forkBytes);
  const auto dataStart = fork.number(0, 4);
  const auto mapStart = fork.number(4, 4);
  const auto typeListOffset = mapStart ? fork.number(*mapStart + std::size_t{24}, 2) : std::nullopt;
  if (!dataStart || !typeListOffset) return std::nullopt;
  const std::size_t typeList = std::size_t{*mapStart} + *typeListOffset;
  const auto entry = findType(fork, typeList, type);
  const auto last = entry ? fork.number(*entry + 4, 2) : std::nullopt;
  const auto listOffset = entry ? fork.number(*entry + 6, 2) : std::nullopt;
  if (!last || !listOffset) return std::nullopt;
  for (std::size_t i = 0; i <= *last; ++i) {
    const std::size_t reference = typeList + *listOffset + i * 12;
    const auto number = fork.number(reference, 2);
    const auto offset = fork.number(reference + 5, 3);
    if (!number || !offset) return std::nullopt;
    if (static_cast<std::int16_t>(*number) != id) continue;
    const std::size_t data = std::size_t{*dataStart} + *offset;
    const auto length = fork.number(data, 4);
    return length ? fork.range(data + 4, *length) : std::nullopt;
  }
  return std::nullopt;
}

std::optional<std::string> resourceForkInAppleDouble(std::string_view fileBytes) {
  const Bytes file(fileBytes);
  const auto count = file.number(24, 2);
  if (file.number(0, 4) != kAppleDoubleMagic || !count) return std::nullopt;
  for (std::size_t i = 0; i < *count; ++i) {
    const std::size_t entry = 26 + i * 12;
    const auto kind = file.number(entry, 4);
    const auto offset = file.number(entry + 4, 4);
    const auto length = file.number(entry + 8, 4);
    if (!kind || !offset || !length) return std::nullopt;
    if (*kind == kResourceForkEntry) return file.range(*offset, *length);
  }
  return std::nullopt;
}

std::optional<std::string> readResourceFork(const std::string& path) {
  for (const char* name : {"user.com.apple.ResourceFork", "user.org.netatalk.ResourceFork"}) {
    if (auto fork = extendedAttribute(path, name)) return fork;
  }
  const auto item = findItem(path);
  // The kernel's own driver for that file system shows it so, for files.
  if (item && !isFolder(*item)) {
    if (auto fork = readRegularFile(path + "/rsrc", kForkLimit); fork && !fork->empty()) return fork;
  }
  const Text folder = Paths::deletingLastComponent(path);
  const Text beside = Paths::appending(folder, Text("._") + Paths::lastComponent(path));
  const auto appleDouble = readRegularFile(beside.bytes(), kForkLimit);
  return appleDouble ? resourceForkInAppleDouble(*appleDouble) : std::nullopt;
}

}  // namespace halvorn
