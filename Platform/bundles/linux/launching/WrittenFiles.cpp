#include "Platform/bundles/linux/launching/WrittenFiles.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

void makeFolders(const std::string& folder) {
  if (folder.size() < 2 || ::mkdir(folder.c_str(), 0700) == 0 || errno != ENOENT) return;
  makeFolders(folder.substr(0, folder.rfind('/')));
  ::mkdir(folder.c_str(), 0700);
}

bool writeAll(const FileDescriptor& file, const std::string& bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count =
        retried([&] { return ::write(file.get(), bytes.data() + written, bytes.size() - written); });
    if (count <= 0) return false;
    written += static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace

bool writeFileAtomically(const std::string& path, const std::string& bytes) {
  makeFolders(path.substr(0, path.rfind('/')));
  std::string temporary = path + ".XXXXXX";
  const FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
  if (file.get() < 0) return false;
  const bool isWritten = writeAll(file, bytes) && ::fchmod(file.get(), 0644) == 0 &&
                         std::rename(temporary.c_str(), path.c_str()) == 0;
  if (!isWritten) ::unlink(temporary.c_str());
  return isWritten;
}

void removeFile(const std::string& path) { ::unlink(path.c_str()); }

void touch(const std::string& path) { ::utimensat(AT_FDCWD, path.c_str(), nullptr, 0); }

}  // namespace halvorn
