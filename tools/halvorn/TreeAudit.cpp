#include "tools/halvorn/TreeAudit.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <utility>

#include "Platform/files/posix/copy/AttributeCalls.h"
#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

using Items = std::map<std::string, struct stat>;  // by the path below the top
using Attributes = std::map<std::string, std::string>;
using Identity = std::pair<dev_t, ino_t>;

Items itemsOf(const std::string& top) {
  Items items;
  const auto add = [&](const std::string& below, const std::string& path) {
    struct stat facts {};
    if (::lstat(path.c_str(), &facts) == 0) items.emplace(below, facts);
  };
  add("", top);
  std::error_code problem;
  const auto options = fs::directory_options::skip_permission_denied;
  for (auto entry = fs::recursive_directory_iterator(top, options, problem);
       !problem && entry != fs::recursive_directory_iterator(); entry.increment(problem))
    add(entry->path().string().substr(top.size() + 1), entry->path().string());
  return items;
}

std::string octal(mode_t mode) {
  std::string digits;
  for (int shift = 9; shift >= 0; shift -= 3)
    digits += static_cast<char>('0' + (mode >> static_cast<unsigned>(shift) & 7U));
  return digits;
}

std::string ownerOf(const struct stat& facts) {
  return std::to_string(facts.st_uid) + ":" + std::to_string(facts.st_gid);
}

Attributes attributesOf(const std::string& path) {
  Attributes attributes;
  const fs::path item(path);
  const FileDescriptor folder(::open(item.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto all = [](std::string_view name) {
    return AttributeCalls::kindOf(name) != AttributeCalls::Kind::Places;
  };
  // A file system without attributes has none; what cannot be read shows where the other side has it.
  static_cast<void>(AttributedFile(folder.get(), item.filename().c_str())
                        .each(all, [&](const std::string& name, std::string_view value) {
                          attributes.emplace(name, value);
                          return Cause();
                        }));
  return attributes;
}

enum class Bytes { Same, Different, Unreadable };

Bytes compareBytes(const std::string& a, const std::string& b) {
  const FileDescriptor first(::open(a.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  const FileDescriptor second(::open(b.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  if (!first || !second) return Bytes::Unreadable;
  std::vector<char> one(1 << 18);
  std::vector<char> two(one.size());
  for (off_t at = 0;;) {
    const ssize_t count = ::pread(first.get(), one.data(), one.size(), at);
    if (count < 0) return Bytes::Unreadable;
    // Files of one size: what is read here in part is read there in part too.
    ssize_t other = 0;
    while (other < count) {
      const ssize_t more =
          ::pread(second.get(), two.data() + other, static_cast<std::size_t>(count - other), at + other);
      if (more <= 0) return Bytes::Different;
      other += more;
    }
    if (!std::equal(one.begin(), one.begin() + count, two.begin())) return Bytes::Different;
    if (count == 0) return Bytes::Same;
    at += count;
  }
}

class Auditing {
 public:
  Auditing(const std::string& source, const std::string& installed)
      : source_(source), installed_(installed), originals_(itemsOf(source)), copies_(itemsOf(installed)) {}

  TreeAudit on(Ownership road) {
    giver_ = MetadataGiver(road);
    audit_ = {.road = road, .items = originals_.size()};
    pairs_.clear();
    for (const auto& [path, facts] : originals_) {
      const auto copy = copies_.find(path);
      if (copy == copies_.end()) {
        note(path, "missing");
      } else {
        compare(path, facts, copy->second);
      }
    }
    for (const auto& [path, facts] : copies_) {
      if (!originals_.contains(path)) note(path, "extra");
    }
    return audit_;
  }

 private:
  void note(const std::string& path, const char* kind, const std::string& detail = {},
            bool isAsItMust = false) {
    audit_.differences.push_back({path, kind, detail, isAsItMust});
  }
  [[nodiscard]] std::string original(const std::string& path) const {
    return path.empty() ? source_ : source_ + "/" + path;
  }
  [[nodiscard]] std::string copy(const std::string& path) const {
    return path.empty() ? installed_ : installed_ + "/" + path;
  }

  void compare(const std::string& path, const struct stat& a, const struct stat& b) {
    if ((a.st_mode & S_IFMT) != (b.st_mode & S_IFMT)) return note(path, "kind");
    compareOwner(path, a, b);
    if (!S_ISLNK(a.st_mode)) compareMode(path, a, b);
    if (a.st_mtim.tv_sec != b.st_mtim.tv_sec || a.st_mtim.tv_nsec != b.st_mtim.tv_nsec) note(path, "time");
    compareAttributes(path);
    if (!S_ISDIR(a.st_mode)) compareNames(path, a, b);
    if (S_ISLNK(a.st_mode)) {
      std::error_code problem;
      if (fs::read_symlink(original(path), problem) != fs::read_symlink(copy(path), problem))
        note(path, "link");
    } else if (S_ISREG(a.st_mode)) {
      compareContents(path, a, b);
    }
  }

  // The administrator's road gives everything to the administrator. Else the owner is kept where the one who installed
  // may give it, and who installed has the top folder.
  void compareOwner(const std::string& path, const struct stat& a, const struct stat& b) {
    const bool isSame = a.st_uid == b.st_uid && a.st_gid == b.st_gid;
    const std::string detail = ownerOf(a) + " became " + ownerOf(b);
    if (audit_.road == Ownership::ThisProcess) {
      const bool isAdministrators = b.st_uid == 0 && b.st_gid == 0;
      if (!isSame || !isAdministrators) note(path, "owner", detail, isAdministrators);
      return;
    }
    const struct stat& top = copies_.at("");
    const bool isInstallers = (b.st_uid == top.st_uid && b.st_uid != 0) || b.st_uid == a.st_uid;
    if (!isSame) note(path, "owner", detail, isInstallers);
  }

  void compareMode(const std::string& path, const struct stat& a, const struct stat& b) {
    const mode_t must = giver_.modeToGive(a, b);
    const mode_t is = b.st_mode & 07777;
    const mode_t was = a.st_mode & 07777;
    if (is == was && is == must) return;
    note(path, "mode", octal(was) + " became " + octal(is), is == must);
  }

  void compareAttributes(const std::string& path) {
    const Attributes before = attributesOf(original(path));
    const Attributes after = attributesOf(copy(path));
    for (const auto& [name, value] : before) {
      const auto found = after.find(name);
      if (found != after.end() && found->second == value) {
        if (!giver_.isCarried(name)) note(path, "attribute", name + " is there");
      } else {
        note(path, "attribute", name, found == after.end() && !giver_.isCarried(name));
      }
    }
    for (const auto& [name, value] : after) {
      if (!before.contains(name)) note(path, "attribute", name + " is new");
    }
  }

  // Names of one file in the one tree are names of one file in the other.
  void compareNames(const std::string& path, const struct stat& a, const struct stat& b) {
    const Identity copied(b.st_dev, b.st_ino);
    const auto [there, isNew] = pairs_.try_emplace({a.st_dev, a.st_ino}, copied);
    if (!isNew && there->second != copied) note(path, "names", "not one file with its other name");
  }

  void compareContents(const std::string& path, const struct stat& a, const struct stat& b) {
    if (a.st_size != b.st_size) return note(path, "size");
    if (!bytes_.contains(path)) bytes_[path] = compareBytes(original(path), copy(path));
    if (bytes_[path] == Bytes::Different) note(path, "bytes");
    if (bytes_[path] == Bytes::Unreadable) note(path, "unreadable");
  }

  std::string source_;
  std::string installed_;
  Items originals_;
  Items copies_;
  MetadataGiver giver_{Ownership::Kept};
  TreeAudit audit_;
  std::map<Identity, Identity> pairs_;
  std::map<std::string, Bytes> bytes_;  // read once, for both roads
};

}  // namespace

std::size_t TreeAudit::faults() const {
  return static_cast<std::size_t>(std::count_if(differences.begin(), differences.end(),
                                                [](const auto& each) { return !each.isAsItMust; }));
}

TreeAudit auditOf(const std::string& source, const std::string& installed) {
  Auditing auditing(source, installed);
  TreeAudit kept = auditing.on(Ownership::Kept);
  if (kept.faults() == 0) return kept;
  TreeAudit administrators = auditing.on(Ownership::ThisProcess);
  return administrators.faults() < kept.faults() ? administrators : kept;
}

}  // namespace halvorn
