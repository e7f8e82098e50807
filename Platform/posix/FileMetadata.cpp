#include "Platform/posix/FileMetadata.h"

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <vector>

namespace halvorn::FileMetadata {
namespace {

constexpr mode_t allModeBits = 07777;
constexpr std::string_view accessList = "system.posix_acl_access";
constexpr std::string_view defaultAccessList = "system.posix_acl_default";

std::array<timespec, 2> timesOf(const struct stat& facts) { return {facts.st_atim, facts.st_mtim}; }

mode_t modeToGive(const struct stat& facts, const struct stat& target, Ownership ownership) {
  mode_t mode = facts.st_mode & allModeBits;
  if (ownership == Ownership::ThisProcess) return mode & ~(S_ISUID | S_ISGID | S_IWGRP | S_IWOTH);
  // Set-id bits lend the owner's rights; with another owner they would lend somebody else's.
  if (target.st_uid != facts.st_uid) mode &= ~static_cast<mode_t>(S_ISUID);
  if (target.st_gid != facts.st_gid) mode &= ~static_cast<mode_t>(S_ISGID);
  return mode;
}

// `change` is a chown of the item. Not being allowed to give a file away is no failure.
template <typename Change>
bool giveOwner(struct stat& target, const struct stat& facts, const Change& change) {
  if (target.st_uid == facts.st_uid && target.st_gid == facts.st_gid) return true;
  if (change(facts.st_uid, facts.st_gid) == 0) {
    target.st_uid = facts.st_uid;
    target.st_gid = facts.st_gid;
    return true;
  }
  if (errno != EPERM && errno != EINVAL) return false;
  if (target.st_gid == facts.st_gid) return true;
  if (change(static_cast<uid_t>(-1), facts.st_gid) == 0) {
    target.st_gid = facts.st_gid;
    return true;
  }
  return errno == EPERM || errno == EINVAL;
}

bool mayCarry(std::string_view name, Ownership ownership) {
  return ownership == Ownership::Kept || name.starts_with("user.");
}

// Whether a failure to give the attribute means that there is no place or no right for it, rather than a
// fault.
bool isBeyondUs(std::string_view name) {
  if (errno == ENOTSUP || errno == EOPNOTSUPP || errno == ENODATA) return true;
  return errno == EPERM && !name.starts_with("user.");
}

bool copyAttribute(int source, int target, const std::string& name, std::vector<char>& value) {
  ssize_t size = ::fgetxattr(source, name.c_str(), value.data(), value.size());
  while (size < 0 && errno == ERANGE) {
    value.resize(value.size() * 4);
    size = ::fgetxattr(source, name.c_str(), value.data(), value.size());
  }
  if (size < 0) return isBeyondUs(name);
  return ::fsetxattr(target, name.c_str(), value.data(), static_cast<std::size_t>(size), 0) == 0 ||
         isBeyondUs(name);
}

bool copyAttributes(int source, int target, Ownership ownership) {
  std::vector<char> names(256);
  ssize_t size = ::flistxattr(source, names.data(), names.size());
  while (size < 0 && errno == ERANGE) {
    names.resize(names.size() * 4);
    size = ::flistxattr(source, names.data(), names.size());
  }
  if (size < 0) return errno == ENOTSUP || errno == EOPNOTSUPP;
  std::vector<char> value(size > 0 ? 1024 : 0);
  const std::string_view list(names.data(), static_cast<std::size_t>(size));
  for (std::size_t start = 0; start < list.size();) {
    const std::string name(list.substr(start, list.find('\0', start) - start));
    start += name.size() + 1;
    if (mayCarry(name, ownership) && !copyAttribute(source, target, name, value)) return false;
  }
  return true;
}

// A folder with a default list gives it to what is made in it; the original may have none.
bool dropInherited(int target, std::string_view name) {
  return ::fremovexattr(target, std::string(name).c_str()) == 0 || errno == ENODATA || errno == ENOTSUP ||
         errno == EOPNOTSUPP || errno == EINVAL;
}

}  // namespace

bool copyAllButTimes(int source, int target, const struct stat& facts, Ownership ownership) {
  struct stat made {};
  if (::fstat(target, &made) != 0) return false;
  if (ownership == Ownership::Kept &&
      !giveOwner(made, facts, [&](uid_t user, gid_t group) { return ::fchown(target, user, group); })) {
    return false;
  }
  if (!dropInherited(target, accessList)) return false;
  if (S_ISDIR(facts.st_mode) && !dropInherited(target, defaultAccessList)) return false;
  // A change of owner takes set-id bits and capabilities away, so they come after it.
  if (!copyAttributes(source, target, ownership)) return false;
  return ::fchmod(target, modeToGive(facts, made, ownership)) == 0;
}

bool copyToUnopened(int folder, const std::string& name, const struct stat& facts, Ownership ownership) {
  struct stat made {};
  if (::fstatat(folder, name.c_str(), &made, AT_SYMLINK_NOFOLLOW) != 0) return false;
  const auto change = [&](uid_t user, gid_t group) {
    return ::fchownat(folder, name.c_str(), user, group, AT_SYMLINK_NOFOLLOW);
  };
  if (ownership == Ownership::Kept && !giveOwner(made, facts, change)) return false;
  if (S_ISLNK(facts.st_mode)) return true;
  return ::fchmodat(folder, name.c_str(), modeToGive(facts, made, ownership), 0) == 0;
}

bool copyTimes(int target, const struct stat& facts) {
  return ::futimens(target, timesOf(facts).data()) == 0;
}

bool copyTimes(int folder, const std::string& name, const struct stat& facts) {
  return ::utimensat(folder, name.c_str(), timesOf(facts).data(), AT_SYMLINK_NOFOLLOW) == 0;
}

}  // namespace halvorn::FileMetadata
