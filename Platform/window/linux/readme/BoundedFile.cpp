#include "Platform/window/linux/readme/BoundedFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

std::optional<QByteArray> readBoundedFile(const Text& path, qsizetype limit) {
  const std::string name = path.bytes();
  if (name.empty() || name.find('\0') != std::string::npos) return std::nullopt;
  const FileDescriptor file(::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  struct stat status = {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  if (status.st_size > limit) return std::nullopt;

  // The size is only a hint: a file may grow while it is read.
  QByteArray bytes(static_cast<qsizetype>(status.st_size) + 1, Qt::Uninitialized);
  qsizetype length = 0;
  for (;;) {
    if (length == bytes.size()) bytes.resize(bytes.size() * 2);
    const ssize_t count = retried([&] {
      return ::read(file.get(), bytes.data() + length, static_cast<std::size_t>(bytes.size() - length));
    });
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    length += count;
    if (length > limit) return std::nullopt;
  }
  bytes.resize(length);
  return bytes;
}

}  // namespace halvorn
