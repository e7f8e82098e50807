#include "Platform/posix/TreeCopy.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "Platform/posix/FileContents.h"

namespace halvorn {
namespace {

constexpr int openToRead = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

struct Identity {
  dev_t device;
  ino_t number;
  friend auto operator<=>(const Identity&, const Identity&) = default;
};

class TreeCopier {
 public:
  explicit TreeCopier(const CopyRules& rules) : rules_(rules) {}

  bool copyItem(int fromFolder, int toFolder, const std::string& fromName, const std::string& toName) {
    struct stat facts {};
    if (!look(fromFolder, fromName, facts)) return false;
    switch (facts.st_mode & S_IFMT) {
      case S_IFDIR:
        return copyFolder(fromFolder, toFolder, fromName, toName);
      case S_IFREG:
        return copyFile(fromFolder, toFolder, fromName, toName);
      case S_IFLNK:
        return copyLink(fromFolder, toFolder, fromName, toName, facts);
      default:
        return copyNode(toFolder, toName, facts);
    }
  }

 private:
  bool look(int folder, const std::string& name, struct stat& facts) const {
    const RightsOf rights(rules_.readAs);
    return rights.holds() && ::fstatat(folder, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0;
  }

  FileDescriptor openOriginal(int folder, const std::string& name, int flags) const {
    const RightsOf rights(rules_.readAs);
    if (!rights.holds()) return {};
    return FileDescriptor(retried([&] { return ::openat(folder, name.c_str(), openToRead | flags); }));
  }

  bool copyFolder(int fromFolder, int toFolder, const std::string& fromName, const std::string& toName) {
    FileDescriptor source = openOriginal(fromFolder, fromName, O_DIRECTORY);
    struct stat facts {};
    if (!source || ::fstat(source.get(), &facts) != 0) return false;
    if (::mkdirat(toFolder, toName.c_str(), S_IRWXU) != 0) return false;
    FileDescriptor target(retried(
        [&] { return ::openat(toFolder, toName.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
    if (!target) return false;
    const auto names = list(source.get());
    if (!names) return false;
    for (const std::string& name : *names) {
      if (!copyItem(source.get(), target.get(), name, name)) return false;
    }
    return FileMetadata::copyAllButTimes(source.get(), target.get(), facts, rules_.ownership) &&
           FileMetadata::copyTimes(target.get(), facts);
  }

  std::optional<std::vector<std::string>> list(int folder) const {
    const RightsOf rights(rules_.readAs);
    if (!rights.holds()) return std::nullopt;
    FileDescriptor again(::openat(folder, ".", openToRead | O_DIRECTORY));
    if (!again) return std::nullopt;
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::fdopendir(again.get()), ::closedir);
    if (stream == nullptr) return std::nullopt;
    (void)again.release();
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = ::readdir(stream.get())) {
      const std::string name = entry->d_name;
      if (name != "." && name != "..") names.push_back(name);
    }
    if (errno != 0) return std::nullopt;
    return names;
  }

  bool copyFile(int fromFolder, int toFolder, const std::string& fromName, const std::string& toName) {
    FileDescriptor source = openOriginal(fromFolder, fromName, 0);
    struct stat facts {};
    if (!source || ::fstat(source.get(), &facts) != 0 || !S_ISREG(facts.st_mode)) return false;
    if (facts.st_nlink > 1) {
      const auto earlier = copies_.find({facts.st_dev, facts.st_ino});
      if (earlier != copies_.end()) {
        const auto& [folder, name] = earlier->second;
        return ::linkat(folder->get(), name.c_str(), toFolder, toName.c_str(), 0) == 0;
      }
    }
    constexpr int create = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor target(
        retried([&] { return ::openat(toFolder, toName.c_str(), create, S_IRUSR | S_IWUSR); }));
    if (!target) return false;
    if (facts.st_nlink > 1) {
      auto folder = std::make_shared<FileDescriptor>(::dup(toFolder));
      copies_.emplace(Identity{facts.st_dev, facts.st_ino}, std::pair(std::move(folder), toName));
    }
    return FileContents::copy(source.get(), target.get(), facts) &&
           FileMetadata::copyAllButTimes(source.get(), target.get(), facts, rules_.ownership) &&
           FileMetadata::copyTimes(target.get(), facts) && target.closeAfterWriting();
  }

  bool copyLink(int fromFolder, int toFolder, const std::string& fromName, const std::string& toName,
                const struct stat& facts) const {
    std::string target(static_cast<std::size_t>(facts.st_size > 0 ? facts.st_size : 4096) + 1, '\0');
    {
      const RightsOf rights(rules_.readAs);
      if (!rights.holds()) return false;
      const ssize_t size = ::readlinkat(fromFolder, fromName.c_str(), target.data(), target.size());
      if (size <= 0 || static_cast<std::size_t>(size) == target.size()) return false;
      target.resize(static_cast<std::size_t>(size));
    }
    return ::symlinkat(target.c_str(), toFolder, toName.c_str()) == 0 &&
           FileMetadata::copyToUnopened(toFolder, toName, facts, rules_.ownership) &&
           FileMetadata::copyTimes(toFolder, toName, facts);
  }

  bool copyNode(int toFolder, const std::string& toName, const struct stat& facts) const {
    const bool isDevice = S_ISBLK(facts.st_mode) || S_ISCHR(facts.st_mode);
    if (isDevice && rules_.ownership == Ownership::ThisProcess) return false;
    return ::mknodat(toFolder, toName.c_str(), (facts.st_mode & S_IFMT) | S_IRUSR | S_IWUSR, facts.st_rdev) ==
               0 &&
           FileMetadata::copyToUnopened(toFolder, toName, facts, rules_.ownership) &&
           FileMetadata::copyTimes(toFolder, toName, facts);
  }

  const CopyRules& rules_;
  std::map<Identity, std::pair<std::shared_ptr<FileDescriptor>, std::string>> copies_;
};

}  // namespace

bool copyTree(const ItemPlace& from, const ItemPlace& to, const CopyRules& rules) {
  return TreeCopier(rules).copyItem(from.folder.get(), to.folder.get(), from.name, to.name);
}

}  // namespace halvorn
