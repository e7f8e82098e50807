#include "Platform/files/posix/copy/FileContents.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn::FileContents {
namespace {

using Operation = Cause::Operation;

Cause writeAll(int target, const char* bytes, std::size_t count, off_t offset) {
  while (count > 0) {
    const ssize_t written = retried([&] { return ::pwrite(target, bytes, count, offset); });
    if (written < 0) return Cause::ofSystem(Operation::Write);
    if (written == 0) return Cause::ofOurs(Operation::Write, "nothing more was written");
    bytes += written;
    count -= static_cast<std::size_t>(written);
    offset += written;
  }
  return {};
}

// What a read that gave nothing means. Half a file must not pass for a whole one.
Cause causeOfReading(ssize_t count) {
  return count < 0
             ? Cause::ofSystem(Operation::Read, Cause::Side::Original)
             : Cause::ofOurs(Operation::Read, "it was cut off while it was copied", Cause::Side::Original);
}

// A piece of a file as memory. Only the system looks into it: a file that is cut off meanwhile makes its
// calls fail, and would end this process.
class MappedPiece {
 public:
  MappedPiece(int file, off_t start, off_t size)
      : memory_(SystemCalls::mapToRead(file, start, static_cast<std::size_t>(size))),
        size_(static_cast<std::size_t>(size)) {}
  ~MappedPiece() {
    if (isMapped()) ::munmap(memory_, size_);
  }
  MappedPiece(const MappedPiece&) = delete;
  MappedPiece& operator=(const MappedPiece&) = delete;
  [[nodiscard]] bool isMapped() const { return memory_ != nullptr; }
  [[nodiscard]] std::span<const char> bytes() const { return {static_cast<const char*>(memory_), size_}; }

 private:
  void* memory_;
  std::size_t size_;
};

// Writes as much at a time as the buffer would hold; `offset` tells how far it came.
Cause writePiece(int target, std::span<const char> piece, off_t& offset, std::size_t atATime) {
  while (!piece.empty()) {
    const auto now = piece.first(std::min(piece.size(), atATime));
    if (const Cause cause = writeAll(target, now.data(), now.size(), offset)) return cause;
    piece = piece.subspan(now.size());
    offset += static_cast<off_t>(now.size());
  }
  return {};
}

// The least that file systems leave out.
constexpr std::size_t kBlockSize = 4096;

bool isZero(std::span<const char> bytes) {
  return bytes[0] == 0 && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0;
}

ssize_t readSome(const Original& original, std::span<char> buffer, off_t offset) {
  if (original.asking.isWorthTrying()) {
    const ssize_t count = SystemCalls::readIfInMemory(original.file, buffer.data(), buffer.size(), offset);
    if (count > 0) return count;
    if (count < 0 && errno == EAGAIN) original.sawMissing();
    if (count < 0 && errno == EOPNOTSUPP) original.asking.refused();
  }
  return retried([&] { return ::pread(original.file, buffer.data(), buffer.size(), offset); });
}

// Blocks of zeros are left out.
Cause writeNonZero(int target, std::span<const char> bytes, off_t offset) {
  while (!bytes.empty()) {
    std::size_t size = std::min(bytes.size(), kBlockSize);
    if (!isZero(bytes.first(size))) {
      while (size < bytes.size() && !isZero(bytes.subspan(size, std::min(bytes.size() - size, kBlockSize))))
        size = std::min(bytes.size(), size + kBlockSize);
      if (const Cause cause = writeAll(target, bytes.data(), size, offset)) return cause;
    }
    bytes = bytes.subspan(size);
    offset += static_cast<off_t>(size);
  }
  return {};
}

Cause copyNonZero(const Original& original, int target, off_t size, std::span<char> buffer) {
  for (off_t position = 0; position < size;) {
    const auto wanted = std::min(buffer.size(), static_cast<std::size_t>(size - position));
    const ssize_t count = readSome(original, buffer.first(wanted), position);
    if (count <= 0) return causeOfReading(count);
    const auto bytes = buffer.first(static_cast<std::size_t>(count));
    if (const Cause cause = writeNonZero(target, bytes, position)) return cause;
    position += count;
  }
  return {};
}

// Tells whether the rest is in memory. What has to come from a disk is read
// here, where waiting for it is seen.
Cause copyFirstPiece(const Original& original, int target, off_t start, off_t end, std::span<char> buffer,
                     bool& isInMemory) {
  const std::function<void()> noteMissing = [&] {
    isInMemory = false;
    original.sawMissing();
  };
  return copyRange({original.file, original.asking, noteMissing}, target, start, end, buffer);
}

// The system says that it could not copy, and not which of the two files is to blame; reading tells.
Cause causeOfCopying(const Original& original, off_t offset) {
  const int error = errno;
  char byte = 0;
  const bool isUnreadable = retried([&] { return ::pread(original.file, &byte, 1, offset); }) < 0;
  return isUnreadable ? Cause::ofSystem(Operation::Read, Cause::Side::Original)
                      : Cause::ofSystem(Operation::Write, Cause::Side::Copy, error);
}

}  // namespace

bool mayHaveHoles(const struct stat& facts) {
  constexpr off_t blockUnit = 512;
  return facts.st_blocks * blockUnit < facts.st_size;
}

Cause copyRange(const Original& original, int target, off_t start, off_t end, std::span<char> buffer) {
  while (start < end) {
    const auto wanted = std::min(buffer.size(), static_cast<std::size_t>(end - start));
    const ssize_t count = readSome(original, buffer.first(wanted), start);
    if (count <= 0) return causeOfReading(count);
    if (const Cause cause = writeAll(target, buffer.data(), static_cast<std::size_t>(count), start))
      return cause;
    start += count;
  }
  return {};
}

Cause copyRangeInSystem(const Original& original, int target, off_t start, off_t end, std::span<char> buffer,
                        Trial& copiesInSystem) {
  constexpr off_t firstPiece = off_t{64} << 10;
  bool isInMemory = true;
  off_t done = std::min(end, start + firstPiece);
  if (const Cause cause = copyFirstPiece(original, target, start, done, buffer, isInMemory)) return cause;
  while (done < end && isInMemory && copiesInSystem.isWorthTrying()) {
    const auto copied = SystemCalls::copyPart(original.file, target, done, end - done);
    if (copied < 0) return causeOfCopying(original, done);
    if (copied == 0) {
      copiesInSystem.refused();
      break;
    }
    (void)copiesInSystem.worked();
    done += copied;
  }
  return copyRange(original, target, done, end, buffer);
}

Cause copyRangeMapped(const Original& original, int target, off_t start, off_t end, std::span<char> buffer,
                      Trial& mappings, off_t window) {
  bool isInMemory = true;
  off_t done = std::min(end, start + static_cast<off_t>(buffer.size()));
  if (const Cause cause = copyFirstPiece(original, target, start, done, buffer, isInMemory)) return cause;
  // Where nobody can say, mapping could mean waiting.
  if (!original.asking.isWorthTrying()) isInMemory = false;
  while (done < end && isInMemory && mappings.isWorthTrying()) {
    const MappedPiece piece(original.file, done, std::min(end - done, window));
    if (!piece.isMapped()) {
      mappings.refused();
      break;
    }
    (void)mappings.worked();
    const off_t pieceEnd = done + static_cast<off_t>(piece.bytes().size());
    const Cause cause = writePiece(target, piece.bytes(), done, buffer.size());
    if (cause && cause.error() != EFAULT) return cause;
    // It could not be fetched. Reading it says why.
    isInMemory = done == pieceEnd;
  }
  return copyRange(original, target, done, end, buffer);
}

Cause copyWithHoles(const Original& original, int target, off_t size, std::span<char> buffer) {
  off_t position = 0;
  while (position < size) {
    const off_t data = ::lseek(original.file, position, SEEK_DATA);
    if (data < 0 && errno == ENXIO) break;
    if (data < 0 && errno != EINVAL) return Cause::ofSystem(Operation::Read, Cause::Side::Original);
    off_t hole = data < 0 ? -1 : ::lseek(original.file, data, SEEK_HOLE);
    if (hole < 0) hole = size;
    if (data <= 0 && hole >= size) {
      // There are holes, and the file system cannot say where.
      if (const Cause cause = copyNonZero(original, target, size, buffer)) return cause;
    } else if (const Cause cause = copyRange(original, target, data, hole, buffer)) {
      return cause;
    }
    position = hole;
  }
  return ::ftruncate(target, size) == 0 ? Cause() : Cause::ofSystem(Operation::Write);
}

}  // namespace halvorn::FileContents
