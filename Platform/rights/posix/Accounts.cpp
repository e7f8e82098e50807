#include "Platform/rights/posix/Accounts.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace halvorn {
namespace {

constexpr std::size_t kMostGroups = 1 << 16;  // what a process can be in

// Systems do not agree whether the number of a group has a sign.
template <typename Number>
std::vector<gid_t> askForGroups(int (*call)(const char*, Number, Number*, int*), const Account& account) {
  std::vector<Number> groups(64);
  while (true) {
    int count = static_cast<int>(groups.size());
    if (call(account.name.c_str(), static_cast<Number>(account.gid), groups.data(), &count) >= 0) {
      return {groups.begin(), groups.begin() + count};
    }
    // Not every system says how many there are.
    if (groups.size() >= kMostGroups) return {account.gid};
    groups.resize(std::max(groups.size() * 2, static_cast<std::size_t>(std::max(0, count))));
  }
}

// `ask` is one of the reentrant questions, given all but its key.
template <typename Question>
std::optional<Account> accountFrom(Question ask) {
  passwd entry = {};
  passwd* found = nullptr;
  std::vector<char> buffer(1024);
  while (ask(&entry, buffer.data(), buffer.size(), &found) == ERANGE) {
    if (buffer.size() > std::size_t{1024} * 1024) return std::nullopt;
    buffer.resize(buffer.size() * 2);
  }
  if (found == nullptr) return std::nullopt;
  return Account{entry.pw_uid, entry.pw_gid, entry.pw_name, entry.pw_dir, entry.pw_shell};
}

}  // namespace

std::optional<Account> accountWithUid(uid_t uid) {
  return accountFrom([uid](auto... rest) { return ::getpwuid_r(uid, rest...); });
}

std::optional<Account> accountNamed(const std::string& name) {
  if (name.find('\0') != std::string::npos) return std::nullopt;
  return accountFrom([&name](auto... rest) { return ::getpwnam_r(name.c_str(), rest...); });
}

std::vector<gid_t> groupsOf(const Account& account) { return askForGroups(::getgrouplist, account); }

std::vector<gid_t> groupsOfThisProcess() {
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(0, ::getgroups(0, nullptr))));
  const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
  groups.resize(static_cast<std::size_t>(std::max(0, count)));
  return groups;
}

}  // namespace halvorn
