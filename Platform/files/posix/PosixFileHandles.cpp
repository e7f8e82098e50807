#include "Platform/files/posix/PosixFileHandles.h"

#include <fcntl.h>
#include <unistd.h>

#include <string>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

class PosixFileHandle : public FileHandle {
 public:
  explicit PosixFileHandle(FileDescriptor file) : file_(std::move(file)) {}

  [[nodiscard]] bool seekToEnd() override { return ::lseek(file_.get(), 0, SEEK_END) >= 0; }
  [[nodiscard]] bool write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const auto written = retried([&] { return ::write(file_.get(), bytes.data(), bytes.size()); });
      if (written <= 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
  }

 private:
  FileDescriptor file_;
};

}  // namespace

std::unique_ptr<FileHandle> PosixFileHandles::openForWriting(const Text& path) const {
  const std::string name = path.bytes();
  if (name.find('\0') != std::string::npos) return nullptr;
  FileDescriptor file(
      retried([&] { return ::open(name.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK); }));
  return file.isOpen() ? std::make_unique<PosixFileHandle>(std::move(file)) : nullptr;
}

}  // namespace halvorn
