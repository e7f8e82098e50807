#include "Platform/rights/posix/Accounts.h"

#include <grp.h>
#include <pwd.h>

#include <cerrno>

namespace halvorn {

std::optional<Account> accountWithUid(uid_t uid) {
  passwd entry = {};
  passwd* found = nullptr;
  std::vector<char> buffer(1024);
  while (::getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
    if (buffer.size() > 1024 * 1024) return std::nullopt;
    buffer.resize(buffer.size() * 2);
  }
  if (found == nullptr) return std::nullopt;
  return Account{entry.pw_uid, entry.pw_gid, entry.pw_name, entry.pw_dir, entry.pw_shell};
}

std::vector<gid_t> groupsOf(const Account& account) {
  int count = 64;
  std::vector<gid_t> groups(static_cast<std::size_t>(count));
  if (::getgrouplist(account.name.c_str(), account.gid, groups.data(), &count) < 0 && count > 0) {
    groups.resize(static_cast<std::size_t>(count));
    if (::getgrouplist(account.name.c_str(), account.gid, groups.data(), &count) < 0) count = 0;
  }
  groups.resize(static_cast<std::size_t>(count));
  return groups;
}

}  // namespace halvorn
