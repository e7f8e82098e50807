// An open file of this process, closed with the object.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace halvorn {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  // Takes what open() and its like return; -1 is none.
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() { reset(); }

  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  [[nodiscard]] explicit operator bool() const { return isOpen(); }
  [[nodiscard]] int get() const { return descriptor_; }
  // Hands the open file over to the caller.
  [[nodiscard]] int release() { return std::exchange(descriptor_, -1); }
  // Leaves errno alone, so that a failure can still be told after what was open is closed.
  void reset() {
    if (!isOpen()) return;
    const int error = errno;
    ::close(release());
    errno = error;
  }
  // Closes now. Fails: false when the system could not keep what was written.
  [[nodiscard]] bool closeAfterWriting() { return !isOpen() || ::close(release()) == 0 || errno == EINTR; }

 private:
  int descriptor_ = -1;
};

// Repeats a system call that a signal interrupted.
template <typename Call>
auto retried(const Call& call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

}  // namespace halvorn
