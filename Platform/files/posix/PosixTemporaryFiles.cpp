#include "Platform/files/posix/PosixTemporaryFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "Core/Paths.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {

namespace {

Text systemFolder() {
  const char* const named = std::getenv("TMPDIR");
  struct stat information = {};
  const bool isFolder =
      named && named[0] == '/' && ::stat(named, &information) == 0 && S_ISDIR(information.st_mode);
  return isFolder ? Text(named) : Text("/tmp");
}

}  // namespace

PosixTemporaryFiles::PosixTemporaryFiles() : PosixTemporaryFiles(systemFolder()) {}
PosixTemporaryFiles::PosixTemporaryFiles(const Text& folder) : folder_(folder) {}

OptionalText PosixTemporaryFiles::create() {
  std::string path = Paths::appending(folder_, "halvorn-XXXXXX").bytes();
  // mkstemp makes the file exclusively and with mode 0600.
  const FileDescriptor file(::mkostemp(path.data(), O_CLOEXEC));
  if (!file) return std::nullopt;
  return Text(path);
}

std::optional<std::string> PosixTemporaryFiles::contents(const Text& path) const {
  const FileDescriptor file(::open(path.bytes().c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  struct stat information = {};
  if (!file || ::fstat(file.get(), &information) != 0 || !S_ISREG(information.st_mode)) return std::nullopt;
  // The size is taken once: a program that writes faster than this reads must not keep it busy for ever.
  std::string bytes(static_cast<std::size_t>(information.st_size), '\0');
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t count =
        retried([&] { return ::read(file.get(), bytes.data() + filled, bytes.size() - filled); });
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  bytes.resize(filled);
  return bytes;
}

void PosixTemporaryFiles::remove(const Text& path) { ::unlink(path.bytes().c_str()); }

}  // namespace halvorn
