#include "Platform/linux/ui/BoundedFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace halvorn {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

}  // namespace

std::optional<QByteArray> readBoundedFile(const Text& path, qsizetype limit) {
  const std::string name = path.bytes();
  if (name.empty() || name.find('\0') != std::string::npos) return std::nullopt;
  const Descriptor file(::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  struct stat status = {};
  if (file.number() < 0 || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
    return std::nullopt;
  if (status.st_size > limit) return std::nullopt;

  // The size is only a hint: a file may grow while it is read.
  QByteArray bytes(static_cast<qsizetype>(status.st_size) + 1, Qt::Uninitialized);
  qsizetype length = 0;
  for (;;) {
    if (length == bytes.size()) bytes.resize(bytes.size() * 2);
    const ssize_t count =
        ::read(file.number(), bytes.data() + length, static_cast<std::size_t>(bytes.size() - length));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    length += count;
    if (length > limit) return std::nullopt;
  }
  bytes.resize(length);
  return bytes;
}

}  // namespace halvorn
