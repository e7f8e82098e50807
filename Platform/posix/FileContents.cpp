#include "Platform/posix/FileContents.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "Platform/posix/FileDescriptor.h"

namespace halvorn::FileContents {
namespace {

constexpr std::size_t bufferSize = 128 * 1024;

bool writeAll(int target, const char* bytes, std::size_t count, off_t offset) {
  while (count > 0) {
    const ssize_t written = retried([&] { return ::pwrite(target, bytes, count, offset); });
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
    offset += written;
  }
  return true;
}

// Copies from `start` up to `end`, or up to the end of the file where that comes first.
bool copyRange(int source, int target, off_t start, off_t end, std::vector<char>& buffer) {
  while (start < end) {
    const auto wanted = std::min(buffer.size(), static_cast<std::size_t>(end - start));
    const ssize_t count = retried([&] { return ::pread(source, buffer.data(), wanted, start); });
    if (count < 0) return false;
    if (count == 0) return true;
    if (!writeAll(target, buffer.data(), static_cast<std::size_t>(count), start)) return false;
    start += count;
  }
  return true;
}

bool mayHaveHoles(const struct stat& facts) { return facts.st_blocks * 512 < facts.st_size; }

bool copyWithHoles(int source, int target, off_t size, std::vector<char>& buffer) {
  off_t position = 0;
  while (position < size) {
    const off_t data = ::lseek(source, position, SEEK_DATA);
    if (data < 0 && errno == ENXIO) break;
    if (data < 0) return errno == EINVAL && copyRange(source, target, position, size, buffer);
    off_t hole = ::lseek(source, data, SEEK_HOLE);
    if (hole < 0) hole = size;
    if (!copyRange(source, target, data, hole, buffer)) return false;
    position = hole;
  }
  return ::ftruncate(target, size) == 0;
}

}  // namespace

bool copy(int source, int target, const struct stat& facts) {
  std::vector<char> buffer(std::min(bufferSize, static_cast<std::size_t>(facts.st_size) + 1));
  if (mayHaveHoles(facts)) return copyWithHoles(source, target, facts.st_size, buffer);
  return copyRange(source, target, 0, facts.st_size, buffer);
}

}  // namespace halvorn::FileContents
