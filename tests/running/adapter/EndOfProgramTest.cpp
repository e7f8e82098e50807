// How a program ends: its threads are waited for.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <future>
#include <thread>

#include "Platform/running/posix/PosixWorkers.h"

namespace halvorn {
namespace {

// Runs the body in a process of its own; its exit status, or minus the number of the signal that ended it.
int inChild(const std::function<int()>& body) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::alarm(20);
    ::_exit(body());
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

TEST(PosixWorkers, TasksRunOnThreadsOfTheirOwnAndAreWaitedFor) {
  std::atomic<int> ended = 0;
  std::atomic<bool> isElsewhere = true;
  const auto self = std::this_thread::get_id();
  PosixWorkers workers;
  for (int i = 0; i < 20; ++i) {
    workers.detach([&] {
      if (std::this_thread::get_id() == self) isElsewhere = false;
      workers.detach([&] { ++ended; });
      ++ended;
    });
  }
  workers.finish();
  EXPECT_EQ(ended, 40);
  EXPECT_TRUE(isElsewhere);
}

TEST(PosixWorkers, ATaskRunsAlsoWhereTheSystemRefusesAThread) {
  EXPECT_EQ(inChild([] {
              // The limit is none for the administrator.
              if (::geteuid() == 0 && ::setresuid(65534, 65534, 65534) != 0) return 3;
              const rlimit none = {0, 0};
              if (::setrlimit(RLIMIT_NPROC, &none) != 0) return 1;
              bool hasRun = false;
              PosixWorkers workers;
              workers.detach([&] { hasRun = true; });
              workers.finish();
              return hasRun ? 0 : 2;
            }),
            0);
}

TEST(PosixWorkers, FinishWaitsForATaskThatIsAtWork) {
  std::promise<void> goOn;
  std::atomic<bool> hasEnded = false;
  PosixWorkers workers;
  workers.detach([&] {
    goOn.get_future().wait();
    hasEnded = true;
  });
  std::thread starter([&] { goOn.set_value(); });
  workers.finish();
  EXPECT_TRUE(hasEnded);
  starter.join();
  workers.finish();
}

// Whoever takes the waiting out of the way of what the tasks use is told at once, by every test that runs it.
TEST(PosixWorkersDeathTest, DestroyedWithoutHavingFinishedTheyEndTheProgram) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        PosixWorkers workers;
        workers.detach([] {});
      },
      testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
}  // namespace halvorn
