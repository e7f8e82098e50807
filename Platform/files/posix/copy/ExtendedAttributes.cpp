#include "Platform/files/posix/copy/ExtendedAttributes.h"

#include <sys/xattr.h>

#include <cerrno>
#include <vector>

#include "Platform/files/posix/copy/SystemCalls.h"

namespace halvorn {
namespace {

bool isNotSupported(int error) { return error == ENOTSUP || error == EOPNOTSUPP; }

// Whether a failure means that there is no place or no right for the attribute, rather than a fault.
bool isBeyondUs(std::string_view name, int error) {
  return isNotSupported(error) || (error == EPERM && !name.starts_with("user."));
}

// Makes room until the answer fits.
template <typename Call>
ssize_t callWithRoom(std::vector<char>& buffer, const Call& call) {
  ssize_t size = call(buffer.data(), buffer.size());
  while (size < 0 && errno == ERANGE) {
    const ssize_t needed = call(nullptr, 0);
    if (needed < 0) return needed;
    buffer.resize(static_cast<std::size_t>(needed) + 64);
    size = call(buffer.data(), buffer.size());
  }
  return size;
}

}  // namespace

// The system has these calls for open files and for paths, but not for a name in an open folder.
AttributedFile::AttributedFile(int folder, const char* name)
    : path_("/proc/self/fd/" + std::to_string(folder) + "/" + name) {}

AttributedFile AttributedFile::held(int item) {
  AttributedFile file;
  file.heldPath_ = SystemCalls::pathToHeld(item);
  return file;
}

ssize_t AttributedFile::list(char* buffer, std::size_t room) const {
  return file_ >= 0 ? ::flistxattr(file_, buffer, room) : ::llistxattr(path_.c_str(), buffer, room);
}

ssize_t AttributedFile::get(const std::string& name, char* buffer, std::size_t room) const {
  return file_ >= 0 ? ::fgetxattr(file_, name.c_str(), buffer, room)
                    : ::lgetxattr(path_.c_str(), name.c_str(), buffer, room);
}

bool AttributedFile::each(const std::function<bool(std::string_view)>& wanted,
                          const std::function<bool(const std::string&, std::string_view)>& take) const {
  // Most files have none, and then this is all there is to do.
  char few[256];
  ssize_t size = list(few, sizeof few);
  if (size == 0) return true;
  std::vector<char> many;
  if (size < 0 && errno == ERANGE) {
    size = callWithRoom(many, [&](char* buffer, std::size_t room) { return list(buffer, room); });
  }
  if (size < 0) return isNotSupported(errno);
  const std::string_view names(many.empty() ? few : many.data(), static_cast<std::size_t>(size));
  std::vector<char> value(256);
  for (std::size_t start = 0; start < names.size();) {
    const std::string name(names.substr(start, names.find('\0', start) - start));
    start += name.size() + 1;
    if (!wanted(name)) continue;
    const ssize_t length =
        callWithRoom(value, [&](char* buffer, std::size_t room) { return get(name, buffer, room); });
    if (length < 0) {
      // It may have gone meanwhile, and some can only be listed.
      if (errno == ENODATA || isBeyondUs(name, errno)) continue;
      return false;
    }
    if (!take(name, std::string_view(value.data(), static_cast<std::size_t>(length)))) return false;
  }
  return true;
}

bool AttributedFile::give(const std::string& name, std::string_view value) const {
  const int result = file_ >= 0 ? ::fsetxattr(file_, name.c_str(), value.data(), value.size(), 0)
                                : ::setxattr(heldPath_.c_str(), name.c_str(), value.data(), value.size(), 0);
  return result == 0 || isBeyondUs(name, errno);
}

bool AttributedFile::remove(std::string_view name) const {
  const std::string copy(name);
  const int result =
      file_ >= 0 ? ::fremovexattr(file_, copy.c_str()) : ::removexattr(heldPath_.c_str(), copy.c_str());
  return result == 0 || errno == ENODATA || errno == EINVAL || isNotSupported(errno);
}

}  // namespace halvorn
