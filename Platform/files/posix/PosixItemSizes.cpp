#include "Platform/files/posix/PosixItemSizes.h"

#include <filesystem>
#include <system_error>

namespace halvorn {
namespace {

namespace fs = std::filesystem;

std::uint64_t bytesOf(const fs::directory_entry& item) {
  std::error_code error;
  if (!fs::is_regular_file(item.symlink_status(error))) return 0;
  const std::uintmax_t size = item.file_size(error);
  return error ? 0 : size;
}

}  // namespace

std::optional<std::uint64_t> PosixItemSizes::bytesIn(const Text& path, const Cancellation& givenUp) const {
  std::error_code error;
  const fs::directory_entry top(fs::path(path.bytes()), error);
  if (error || !fs::exists(top.symlink_status(error))) return std::nullopt;
  std::uint64_t bytes = bytesOf(top);
  if (!fs::is_directory(top.symlink_status(error))) return bytes;
  constexpr auto kUnreadable = fs::directory_options::skip_permission_denied;
  for (fs::recursive_directory_iterator item(top.path(), kUnreadable, error), end; !error && item != end;
       item.increment(error)) {
    if (givenUp.isRequested()) return std::nullopt;
    bytes += bytesOf(*item);
  }
  return bytes;
}

}  // namespace halvorn
