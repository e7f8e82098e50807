#include "packaging/linux/starter/Files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace halvorn {

std::string readAll(int file) {
  std::string bytes;
  char part[4096];
  while (true) {
    const ssize_t count = ::read(file, part, sizeof part);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return bytes;
    bytes.append(part, static_cast<std::size_t>(count));
  }
}

std::string contentsOf(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return "";
  const std::string bytes = readAll(file);
  ::close(file);
  return bytes;
}

}  // namespace halvorn
