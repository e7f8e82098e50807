#include "Platform/rights/posix/RightsOf.h"

#include <sys/kauth.h>
#include <unistd.h>

#include <cstdlib>

// It has no successor: a thread with another identity is what is wanted here.
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

namespace halvorn {

// The thread takes an identity of its own; the groups are then those of that account.
RightsOf::RightsOf(const Person* person) {
  if (person == nullptr || person->user == ::geteuid()) return;
  isChanged_ = true;
  holds_ = ::pthread_setugid_np(person->user, person->group) == 0;
}

RightsOf::~RightsOf() {
  if (!isChanged_) return;
  // A thread that kept the wrong rights must not go on.
  if (holds_ && ::pthread_setugid_np(KAUTH_UID_NONE, KAUTH_GID_NONE) != 0) std::abort();
}

}  // namespace halvorn
