#include "tests/support/PersonsShoes.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>

namespace halvorn {
namespace {

bool becomePerson() {
  return ::initgroups("halvorn-person", PolkitWorld::personId) == 0 &&
         ::setresgid(PolkitWorld::personId, PolkitWorld::personId, PolkitWorld::personId) == 0 &&
         ::setresuid(PolkitWorld::personId, PolkitWorld::personId, PolkitWorld::personId) == 0;
}

void takeEnvironment(const PolkitWorld& world) {
  for (const std::string& entry : world.personsEnvironment()) {
    const std::size_t equals = entry.find('=');
    ::setenv(entry.substr(0, equals).c_str(), entry.substr(equals + 1).c_str(), 1);
  }
}

[[noreturn]] void playAndEnd(const PolkitWorld& world, const std::function<void()>& play) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (!becomePerson()) ::_exit(2);
  // The change of user took the arrangement above away.
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  takeEnvironment(world);
  try {
    play();
  } catch (const std::exception& problem) {
    ADD_FAILURE() << problem.what();
  }
  std::fflush(nullptr);
  ::_exit(testing::Test::HasFailure() ? 1 : 0);
}

}  // namespace

void inThePersonsShoes(const PolkitWorld& world, const std::function<void()>& play) {
  std::fflush(nullptr);
  const pid_t player = ::fork();
  ASSERT_GE(player, 0);
  if (player == 0) playAndEnd(world, play);
  int status = 0;
  ASSERT_EQ(::waitpid(player, &status, 0), player);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
      << "in the person's shoes: wait status " << status;
}

}  // namespace halvorn
