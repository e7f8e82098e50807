#include "Platform/files/linux/FoundItem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <memory>

#include "Platform/files/posix/BoundedFile.h"

namespace halvorn {
namespace {

std::string processLink(const FoundItem& item) {
  return "/proc/self/fd/" + std::to_string(item.descriptor.get());
}

mode_t modeOf(const FoundItem& item) {
  struct stat information = {};
  return ::fstat(item.descriptor.get(), &information) == 0 ? information.st_mode : 0;
}

// Opening the descriptor's own link opens that very item, whatever stands at its path by now.
FileDescriptor openedToRead(const FoundItem& item) {
  if (!isRegularFile(item)) return {};
  return FileDescriptor(::open(processLink(item).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

}  // namespace

std::optional<FoundItem> findItem(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) return std::nullopt;
  FoundItem item{FileDescriptor(::open(path.c_str(), O_PATH | O_CLOEXEC)), {}};
  if (item.descriptor.get() < 0) return std::nullopt;
  char real[PATH_MAX];
  const ssize_t length = ::readlink(processLink(item).c_str(), real, sizeof real);
  if (length <= 0 || length == sizeof real || real[0] != '/') return std::nullopt;
  item.realPath.assign(real, static_cast<std::size_t>(length));
  return item;
}

bool isFolder(const FoundItem& item) { return S_ISDIR(modeOf(item)); }
bool isRegularFile(const FoundItem& item) { return S_ISREG(modeOf(item)); }

bool isWithin(const std::string& realPath, const std::string& folder) {
  if (folder == "/") return true;
  return realPath.starts_with(folder) && (realPath.size() == folder.size() || realPath[folder.size()] == '/');
}

std::optional<std::string> readItem(const FoundItem& item, std::size_t limit) {
  return readOpenFile(openedToRead(item), limit);
}

std::optional<std::string> readStart(const FoundItem& item, std::size_t count) {
  return readStartOfOpenFile(openedToRead(item), count);
}

std::vector<std::string> folderEntries(const FoundItem& folder) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(processLink(folder).c_str()), ::closedir);
  if (!listing) return names;
  while (const dirent* entry = ::readdir(listing.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  return names;
}

}  // namespace halvorn
