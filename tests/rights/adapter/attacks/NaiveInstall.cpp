#include "tests/rights/adapter/attacks/NaiveInstall.h"

#include <pwd.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace halvorn::NaiveInstall {
namespace {

namespace fs = std::filesystem;

void copyAttributes(const std::string& from, const std::string& to) {
  char names[4096];
  char value[4096];
  const ssize_t size = ::listxattr(from.c_str(), names, sizeof names);
  for (ssize_t start = 0; start < size;
       start += static_cast<ssize_t>(std::string_view(names + start).size()) + 1) {
    const ssize_t length = ::getxattr(from.c_str(), names + start, value, sizeof value);
    if (length >= 0) ::setxattr(to.c_str(), names + start, value, static_cast<std::size_t>(length), 0);
  }
}

bool moveToTrash(const std::string& path) {
  const char* asker = std::getenv("PKEXEC_UID");
  const passwd* person = ::getpwuid(asker != nullptr ? static_cast<uid_t>(std::atoi(asker)) : ::getuid());
  if (person == nullptr) return false;
  const std::string trash = std::string(person->pw_dir) + "/.local/share/Trash";
  std::error_code error;
  fs::create_directories(trash + "/files", error);
  fs::create_directories(trash + "/info", error);
  const std::string name = fs::path(path).filename();
  std::ofstream(trash + "/info/" + name + ".trashinfo") << "[Trash Info]\nPath=" << path << "\n";
  const std::string there = trash + "/files/" + name;
  fs::rename(path, there, error);
  if (error) return false;
  ::lchown(there.c_str(), person->pw_uid, person->pw_gid);
  for (auto item = fs::recursive_directory_iterator(there, error); item != fs::recursive_directory_iterator();
       item.increment(error)) {
    ::lchown(item->path().c_str(), person->pw_uid, person->pw_gid);
  }
  return true;
}

}  // namespace

bool copyItem(const std::string& from, const std::string& to) {
  std::error_code error;
  if (fs::is_symlink(from, error)) {
    fs::copy_symlink(from, to, error);
    return !error;
  }
  if (fs::is_directory(from, error)) {
    fs::create_directory(to, error);
    if (error) return false;
    for (const auto& entry : fs::directory_iterator(from, error)) {
      if (!copyItem(entry.path(), to + "/" + entry.path().filename().string())) return false;
    }
  } else {
    std::ifstream source(from, std::ios::binary);
    std::ofstream target(to, std::ios::binary);
    if (!source || !target) return false;
    if (source.peek() != std::ifstream::traits_type::eof()) target << source.rdbuf();
    if (!target.flush()) return false;
    if (fs::is_regular_file(from, error) && fs::file_size(from, error) != fs::file_size(to, error))
      return false;
  }
  struct stat facts {};
  if (::stat(from.c_str(), &facts) != 0 || ::chmod(to.c_str(), facts.st_mode & 07777) != 0) return false;
  copyAttributes(from, to);
  return true;
}

bool removeItem(const std::string& path) {
  std::error_code error;
  if (fs::is_directory(fs::symlink_status(path, error))) {
    for (const auto& entry : fs::directory_iterator(path, error)) {
      if (!removeItem(entry.path())) return false;
    }
  }
  return fs::remove(path, error);
}

int install(const std::string& source, const std::string& destination, const std::string& wrapper) {
  const std::string parent = fs::path(destination).parent_path();
  std::error_code error;
  if (!wrapper.empty() && fs::exists(parent, error)) {
    for (const auto& entry : fs::directory_iterator(wrapper, error)) {
      const std::string target = parent + "/" + entry.path().filename().string();
      // What is there is written over, as far as possible.
      if (!copyItem(entry.path(), target)) {
        std::fprintf(stderr, "ERROR -- Could not copy auxiliary item to %s\n", target.c_str());
        return 2;
      }
    }
  } else if (!wrapper.empty() && !copyItem(wrapper, parent)) {
    std::fprintf(stderr, "ERROR -- Could not copy wrapper to %s\n", parent.c_str());
    return 2;
  }
  if (fs::exists(destination, error) && !moveToTrash(destination)) {
    std::fprintf(stderr, "ERROR -- Could not trash '%s'\n", destination.c_str());
    return 1;
  }
  if (!copyItem(source, destination)) {
    std::fprintf(stderr, "ERROR -- Could not copy myself to %s\n", destination.c_str());
    return 2;
  }
  return 0;
}

}  // namespace halvorn::NaiveInstall
