// An open file of this process, closed with the object.
#pragma once

#include <unistd.h>

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
  ~FileDescriptor() { close(); }

  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  [[nodiscard]] int get() const { return descriptor_; }
  void close() {
    if (isOpen()) ::close(std::exchange(descriptor_, -1));
  }

 private:
  int descriptor_ = -1;
};

}  // namespace halvorn
