// Limits of a process that is started for it: they cannot be given back.
#include "Platform/running/posix/ResourceLimits.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace halvorn {
namespace {

// Whether, with these limits, asking for that many leaves this soft limit.
bool isSoftLimitAfterRaising(rlim_t soft, rlim_t hard, rlim_t least, rlim_t expected) {
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit limits{soft, hard};
    // Who has the rights raises the hard limit too, so they are given up.
    if (::setrlimit(RLIMIT_NOFILE, &limits) != 0 || (::geteuid() == 0 && ::setuid(65534) != 0)) ::_exit(2);
    const rlimit before = raiseLimit(RLIMIT_NOFILE, least);
    rlimit after{};
    ::getrlimit(RLIMIT_NOFILE, &after);
    const bool isRight = after.rlim_cur == expected && after.rlim_max == hard && before.rlim_cur == soft &&
                         before.rlim_max == hard;
    ::_exit(isRight ? 0 : 1);
  }
  int status = -1;
  return ::waitpid(child, &status, 0) == child && status == 0;
}

TEST(RaiseLimit, RaisesToWhatIsAskedFor) { EXPECT_TRUE(isSoftLimitAfterRaising(64, 1000, 512, 512)); }

TEST(RaiseLimit, RaisesAsFarAsThisProcessMay) { EXPECT_TRUE(isSoftLimitAfterRaising(64, 100, 512, 100)); }

TEST(RaiseLimit, NeverLowers) { EXPECT_TRUE(isSoftLimitAfterRaising(600, 1000, 512, 600)); }

}  // namespace
}  // namespace halvorn
