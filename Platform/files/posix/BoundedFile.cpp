#include "Platform/files/posix/BoundedFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace halvorn {
namespace {

constexpr std::size_t kPieceLength = 64UL * 1024;

// Up to `count` bytes; fewer when the file ends before.
std::optional<std::string> readBytes(const FileDescriptor& file, std::size_t count) {
  std::string bytes;
  while (bytes.size() < count) {
    const std::size_t before = bytes.size();
    const std::size_t room = std::min(count - before, kPieceLength);
    bytes.resize(before + room);
    const ssize_t read = retried([&] { return ::read(file.get(), bytes.data() + before, room); });
    if (read < 0) return std::nullopt;
    bytes.resize(before + static_cast<std::size_t>(read));
    if (read == 0) break;
  }
  return bytes;
}

// None when the path leads to no regular file.
FileDescriptor openRegularFile(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) return FileDescriptor();
  struct stat status = {};
  // Looked at before it is opened: being opened means something to a device.
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return FileDescriptor();
  return FileDescriptor(
      retried([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
}

}  // namespace

std::optional<std::string> readRegularFile(const std::string& path, std::size_t limit) {
  return readOpenFile(openRegularFile(path), limit);
}

std::optional<std::string> readStartOfRegularFile(const std::string& path, std::size_t count) {
  return readStartOfOpenFile(openRegularFile(path), count);
}

std::optional<std::string> readOpenFile(const FileDescriptor& file, std::size_t limit) {
  struct stat status = {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  if (status.st_size < 0 || static_cast<std::size_t>(status.st_size) > limit) return std::nullopt;
  // The size is only a hint: a file may grow while it is read.
  auto bytes = readBytes(file, limit + 1);
  if (bytes && bytes->size() > limit) return std::nullopt;
  return bytes;
}

std::optional<std::string> readStartOfOpenFile(const FileDescriptor& file, std::size_t count) {
  struct stat status = {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return readBytes(file, count);
}

}  // namespace halvorn
