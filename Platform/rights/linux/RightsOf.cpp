#include "Platform/rights/posix/RightsOf.h"

#include <sys/fsuid.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

namespace halvorn {
namespace {

// The library's setgroups changes every thread; the system call changes the calling one.
bool setGroupsOfThread(const std::vector<gid_t>& groups) {
  return ::syscall(SYS_setgroups, groups.size(), groups.data()) == 0;
}

// The answer of setfsuid and setfsgid says nothing; asking with an impossible id does.
constexpr unsigned kImpossibleId = static_cast<unsigned>(-1);
bool setFileUser(uid_t user) {
  ::setfsuid(user);
  return static_cast<uid_t>(::setfsuid(kImpossibleId)) == user;
}
bool setFileGroup(gid_t group) {
  ::setfsgid(group);
  return static_cast<gid_t>(::setfsgid(kImpossibleId)) == group;
}

}  // namespace

RightsOf::RightsOf(const Person* person) {
  if (person == nullptr || person->user == ::geteuid()) return;
  isChanged_ = true;
  groupsBefore_ = groupsOfThisProcess();
  groupBefore_ = static_cast<gid_t>(::setfsgid(kImpossibleId));
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
