#include "Platform/posix/HardLinks.h"

#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include <vector>

#include "Platform/posix/FileDescriptor.h"
#include "Platform/posix/SystemCalls.h"

namespace halvorn {
namespace {

bool isNoMoreNames(int error) {
  return error == EMLINK || error == EPERM || error == ENOTSUP || error == EOPNOTSUPP || error == EXDEV;
}

// The names from the top down to the folder, the last first.
std::vector<const std::string*> namesUp(const FolderPath* path) {
  std::vector<const std::string*> names;
  for (; path != nullptr; path = path->above.get()) names.push_back(&path->name);
  return names;
}

// In one piece, or empty when the system would not take that.
std::string joined(const std::vector<const std::string*>& names, const std::string& last) {
  std::size_t size = last.size() + 1;
  for (const std::string* name : names) size += name->size() + 1;
  std::string path;
  if (size > PATH_MAX) return path;
  path.reserve(size);
  for (auto name = names.rbegin(); name != names.rend(); ++name) path.append(**name).push_back('/');
  return path + last;
}

FileDescriptor openDown(int top, const std::vector<const std::string*>& names) {
  FileDescriptor folder(::fcntl(top, F_DUPFD_CLOEXEC, 0));
  for (auto name = names.rbegin(); name != names.rend() && folder; ++name) {
    folder = FileDescriptor(retried([&] {
      return ::openat(folder.get(), (*name)->c_str(),
                      SystemCalls::openPath | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    }));
  }
  return folder;
}

}  // namespace

bool HardLinks::link(const Copy& copy, int folder, const char* name,
                     const std::shared_ptr<const FolderPath>& path) const {
  if (copy.folder == path) return ::linkat(folder, copy.name.c_str(), folder, name, 0) == 0;
  const auto names = namesUp(copy.folder.get());
  const std::string whole = joined(names, copy.name);
  if (!whole.empty()) return ::linkat(top_, whole.c_str(), folder, name, 0) == 0;
  const FileDescriptor holder = openDown(top_, names);
  return holder && ::linkat(holder.get(), copy.name.c_str(), folder, name, 0) == 0;
}

HardLinks::Answer HardLinks::makeOrLink(const struct stat& facts, int folder, const char* name,
                                        const std::shared_ptr<const FolderPath>& path,
                                        const std::function<bool()>& make) {
  // Held throughout, so that the second name never comes before the first is there.
  const std::lock_guard lock(mutex_);
  const auto key = std::pair(facts.st_dev, facts.st_ino);
  const auto found = copies_.find(key);
  if (found != copies_.end()) {
    if (link(found->second, folder, name, path)) {
      if (--found->second.namesLeft == 0) copies_.erase(found);
      return Answer::Linked;
    }
    if (!isNoMoreNames(errno)) return Answer::Failed;
    copies_.erase(found);
  }
  if (!make()) return Answer::Failed;
  copies_[key] = {.folder = path, .name = name, .namesLeft = facts.st_nlink - 1};
  return Answer::Made;
}

}  // namespace halvorn
