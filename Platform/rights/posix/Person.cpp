#include "Platform/rights/posix/Person.h"

#include <grp.h>
#include <pwd.h>
#include <sys/fsuid.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace halvorn {
namespace {

std::string absoluteFromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && value[0] == '/' ? value : "";
}

std::vector<gid_t> groupsOfThisProcess() {
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(0, ::getgroups(0, nullptr))));
  const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
  groups.resize(static_cast<std::size_t>(std::max(0, count)));
  return groups;
}

struct Account {
  std::string name;
  gid_t group = 0;
  std::string home;
};

std::optional<Account> accountOf(uid_t user) {
  std::vector<char> buffer(1024);
  passwd entry{};
  passwd* found = nullptr;
  while (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == ERANGE &&
         buffer.size() < (1u << 20)) {
    buffer.resize(buffer.size() * 2);
  }
  if (found == nullptr) return std::nullopt;
  return Account{.name = entry.pw_name, .group = entry.pw_gid, .home = entry.pw_dir};
}

std::vector<gid_t> groupsOf(const Account& account) {
  int count = 32;
  std::vector<gid_t> groups(static_cast<std::size_t>(count));
  while (::getgrouplist(account.name.c_str(), account.group, groups.data(), &count) < 0) {
    if (static_cast<std::size_t>(count) <= groups.size()) count = static_cast<int>(groups.size()) * 2;
    groups.resize(static_cast<std::size_t>(count));
  }
  groups.resize(static_cast<std::size_t>(count));
  return groups;
}

std::string dataFolderIn(const std::string& home) { return home.empty() ? "" : home + "/.local/share"; }

// The library's setgroups changes every thread; the system call changes the calling one.
bool setGroupsOfThread(const std::vector<gid_t>& groups) {
  return ::syscall(SYS_setgroups, groups.size(), groups.data()) == 0;
}

// The answer of setfsuid and setfsgid says nothing; asking with an impossible id does.
constexpr unsigned impossibleId = static_cast<unsigned>(-1);
bool setFileUser(uid_t user) {
  ::setfsuid(user);
  return static_cast<uid_t>(::setfsuid(impossibleId)) == user;
}
bool setFileGroup(gid_t group) {
  ::setfsgid(group);
  return static_cast<gid_t>(::setfsgid(impossibleId)) == group;
}

}  // namespace

Person personOfThisProcess() {
  Person person{.user = ::geteuid(), .group = ::getegid(), .groups = groupsOfThisProcess()};
  person.home = absoluteFromEnvironment("HOME");
  if (person.home.empty()) {
    if (const auto account = accountOf(person.user); account && account->home.starts_with('/')) {
      person.home = account->home;
    }
  }
  person.dataFolder = absoluteFromEnvironment("XDG_DATA_HOME");
  if (person.dataFolder.empty()) person.dataFolder = dataFolderIn(person.home);
  return person;
}

Requester requesterOfAdministratorRights() {
  if (::geteuid() != 0) return {};
  const char* value = std::getenv("PKEXEC_UID");
  if (value == nullptr) return {};
  uid_t user = 0;
  const char* end = value + std::strlen(value);
  const auto [rest, error] = std::from_chars(value, end, user);
  if (error != std::errc{} || rest != end || value == end) return {.person = std::nullopt, .isUnknown = true};
  const auto account = accountOf(user);
  if (!account) return {.person = std::nullopt, .isUnknown = true};
  Person person{.user = user, .group = account->group, .groups = groupsOf(*account)};
  if (account->home.starts_with('/')) person.home = account->home;
  person.dataFolder = dataFolderIn(person.home);
  return {.person = person, .isUnknown = false};
}

RightsOf::RightsOf(const Person* person) {
  if (person == nullptr || person->user == ::geteuid()) return;
  isChanged_ = true;
  groupsBefore_ = groupsOfThisProcess();
  groupBefore_ = static_cast<gid_t>(::setfsgid(impossibleId));
  // The user last: it takes the right to change the others away.
  holds_ = setGroupsOfThread(person->groups) && setFileGroup(person->group) && setFileUser(person->user);
}

RightsOf::~RightsOf() {
  if (!isChanged_) return;
  // A thread that kept the wrong rights must not go on.
  if (!setFileUser(::geteuid()) || !setFileGroup(groupBefore_) || !setGroupsOfThread(groupsBefore_))
    std::abort();
}

}  // namespace halvorn
