#include "Platform/files/posix/copy/NewFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string_view>

#include "Platform/files/posix/copy/SystemCalls.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

bool isEmpty(int folder) {
  constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  FileDescriptor again(retried([&] { return ::openat(folder, ".", flags); }));
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(again ? ::fdopendir(again.get()) : nullptr, ::closedir);
  if (stream == nullptr) return false;
  (void)again.release();
  while (const dirent* entry = ::readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return false;
  }
  return true;
}

}  // namespace

bool isNewFolder(int folder, mode_t asked) {
  errno = 0;
  struct stat facts {};
  if (::fstat(folder, &facts) != 0 || !S_ISDIR(facts.st_mode) || facts.st_uid != ::geteuid()) return false;
  // The folder above may hand the bit down that hands groups down.
  constexpr mode_t rights = S_ISUID | S_ISVTX | 0777;
  if ((facts.st_mode & rights & ~asked) != 0) return false;
  return isEmpty(folder) && !SystemCalls::wasChangedSinceItsBirth(folder);
}

}  // namespace halvorn
