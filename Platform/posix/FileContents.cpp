#include "Platform/posix/FileContents.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "Platform/posix/FileDescriptor.h"
#include "Platform/posix/SystemCalls.h"

namespace halvorn::FileContents {
namespace {

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

}  // namespace

bool mayHaveHoles(const struct stat& facts) {
  constexpr off_t blockUnit = 512;
  return facts.st_blocks * blockUnit < facts.st_size;
}

bool copyRange(int source, int target, off_t start, off_t end, std::span<char> buffer,
               const std::function<void()>& sawMissing) {
  while (start < end) {
    const auto wanted = std::min(buffer.size(), static_cast<std::size_t>(end - start));
    ssize_t count = SystemCalls::readIfInMemory(source, buffer.data(), wanted, start);
    if (count <= 0) {
      if (count < 0) sawMissing();
      count = retried([&] { return ::pread(source, buffer.data(), wanted, start); });
    }
    // An original that ends early was cut off meanwhile; half a file must not pass for a whole one.
    if (count <= 0) return false;
    if (!writeAll(target, buffer.data(), static_cast<std::size_t>(count), start)) return false;
    start += count;
  }
  return true;
}

bool copyRangeInSystem(int source, int target, off_t start, off_t end, std::span<char> buffer,
                       Trial& copiesInSystem, const std::function<void()>& sawMissing) {
  // The first piece tells whether the rest is in memory. What has to come from a disk is read here, where
  // waiting for it is seen.
  constexpr off_t firstPiece = off_t{64} << 10;
  bool isInMemory = true;
  const auto noteMissing = [&] {
    isInMemory = false;
    sawMissing();
  };
  off_t done = std::min(end, start + firstPiece);
  if (!copyRange(source, target, start, done, buffer, noteMissing)) return false;
  while (done < end && isInMemory && copiesInSystem.isWorthTrying()) {
    const auto copied = SystemCalls::copyPart(source, target, done, end - done);
    if (copied < 0) return false;
    if (copied == 0) {
      copiesInSystem.refused();
      break;
    }
    (void)copiesInSystem.worked();
    done += copied;
  }
  return copyRange(source, target, done, end, buffer, sawMissing);
}

bool copyWithHoles(int source, int target, off_t size, std::span<char> buffer) {
  const auto ignore = [] {};
  off_t position = 0;
  while (position < size) {
    const off_t data = ::lseek(source, position, SEEK_DATA);
    if (data < 0 && errno == ENXIO) break;
    // Where the file system cannot tell holes, zeroes are copied.
    if (data < 0) return errno == EINVAL && copyRange(source, target, position, size, buffer, ignore);
    off_t hole = ::lseek(source, data, SEEK_HOLE);
    if (hole < 0) hole = size;
    if (!copyRange(source, target, data, hole, buffer, ignore)) return false;
    position = hole;
  }
  return ::ftruncate(target, size) == 0;
}

}  // namespace halvorn::FileContents
