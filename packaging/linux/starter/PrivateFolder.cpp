#include "packaging/linux/starter/PrivateFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <ftw.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace halvorn {
namespace {

std::string valueOf(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && value[0] == '/' ? value : "";
}

// "" when programs of that size can lie there, else why not.
std::string obstacleIn(const std::string& place, unsigned long long size) {
  struct statvfs status {};
  if (::statvfs(place.c_str(), &status) != 0 || ::access(place.c_str(), W_OK | X_OK) != 0)
    return place + " cannot be written to";
  if ((status.f_flag & ST_NOEXEC) != 0) return place + " lets no program run (noexec)";
  if (static_cast<unsigned long long>(status.f_bavail) * status.f_frsize < size)
    return place + " has no room";
  return "";
}

// A folder that is this person's and nobody else's, with a lock on it; -1 where it is not.
int openOwn(const std::string& path, int lock) {
  const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
  struct stat status {};
  const bool isOwn = folder >= 0 && ::fstat(folder, &status) == 0 && status.st_uid == ::geteuid() &&
                     (status.st_mode & 0077U) == 0;
  if (isOwn && ::flock(folder, lock) == 0) return folder;
  if (folder >= 0) ::close(folder);
  return -1;
}

void removeWhatNobodyHolds(const std::string& base) {
  DIR* const listing = ::opendir(base.c_str());
  if (listing == nullptr) return;
  while (const dirent* entry = ::readdir(listing)) {
    if (entry->d_name[0] == '.') continue;
    const std::string path = base + "/" + entry->d_name;
    const int folder = openOwn(path, LOCK_EX | LOCK_NB);
    if (folder < 0) continue;
    removeFolder(path);
    ::close(folder);
  }
  ::closedir(listing);
}

int removeItem(const char* path, const struct stat* /*status*/, int /*kind*/, FTW* /*place*/) {
  (void)::remove(path);
  return 0;
}

int makeWritable(const char* path, const struct stat* /*status*/, int kind, FTW* /*place*/) {
  if (kind == FTW_D || kind == FTW_DNR) ::chmod(path, 0700);
  return 0;
}

}  // namespace

std::vector<std::string> placesForPrivateFolders() {
  std::vector<std::string> places;
  const std::string cache = valueOf("XDG_CACHE_HOME");
  const std::string home = valueOf("HOME");
  if (!cache.empty()) places.push_back(cache);
  if (!home.empty()) places.push_back(home + "/.cache");
  places.insert(places.end(), {"/var/tmp", "/tmp"});
  return places;
}

PrivateFolder makePrivateFolder(const std::vector<std::string>& places, unsigned long long size) {
  std::string problem = "There is no place to unpack to";
  for (const std::string& place : places) {
    if (place.ends_with("/.cache")) ::mkdir(place.c_str(), 0700);
    if (const std::string obstacle = obstacleIn(place, size); !obstacle.empty()) {
      problem += ": " + obstacle;
      continue;
    }
    const std::string base = place + "/halvorn-installer-" + std::to_string(::geteuid());
    ::mkdir(base.c_str(), 0700);
    const int held = openOwn(base, LOCK_EX);
    if (held < 0) {
      problem += ": " + base + " belongs to somebody else";
      continue;
    }
    removeWhatNobodyHolds(base);
    std::string path = base + "/XXXXXX";
    const bool isMade = ::mkdtemp(path.data()) != nullptr && openOwn(path, LOCK_EX | LOCK_NB) >= 0;
    ::close(held);
    if (isMade) return {path, ""};
    problem += ": " + base + " cannot be written to";
  }
  return {"", problem + "."};
}

void removeFolder(const std::string& path) {
  constexpr int kDescriptors = 16;
  ::nftw(path.c_str(), makeWritable, kDescriptors, FTW_PHYS);
  ::nftw(path.c_str(), removeItem, kDescriptors, FTW_PHYS | FTW_DEPTH);
}

}  // namespace halvorn
