// How a program ends: its threads waited for, the signals that ask for it, an end from within.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "Platform/running/posix/BeforeExit.h"
#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/running/posix/PosixWorkers.h"
#include "Platform/running/posix/TerminationSignals.h"
#include "tests/support/ChildProcess.h"

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

struct SignalledLoop {
  PollRunLoop loop;
  Cancellation received;
  std::vector<int> told;
  TerminationSignals signals{loop, received, [this](int signal) { told.push_back(signal); }};
};

TEST(TerminationSignals, EachIsToldOnTheLoopAndEndsNothing) {
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
    EXPECT_EQ(inChild([signal] {
                SignalledLoop world;
                ::raise(signal);
                if (!world.received.isRequested()) return 1;
                if (!world.told.empty()) return 2;
                if (!world.loop.runUntil([&] { return !world.told.empty(); }, 5)) return 3;
                return world.told == std::vector<int>{signal} ? 0 : 4;
              }),
              0)
        << signal;
  }
}

TEST(TerminationSignals, AreHarmlessHoweverManyComeWhileNoLoopRuns) {
  EXPECT_EQ(inChild([] {
              SignalledLoop world;
              for (int i = 0; i < 100'000; ++i) ::raise(i % 2 == 0 ? SIGTERM : SIGHUP);
              return world.received.isRequested() ? 0 : 1;
            }),
            0);
}

TEST(TerminationSignals, OneThatWasIgnoredStaysIgnored) {
  EXPECT_EQ(inChild([] {
              std::signal(SIGHUP, SIG_IGN);
              SignalledLoop world;
              ::raise(SIGHUP);
              world.loop.runFor(0.02);
              return world.told.empty() && !world.received.isRequested() ? 0 : 1;
            }),
            0);
}

TEST(TerminationSignals, AfterwardsTheyActAsBefore) {
  EXPECT_EQ(inChild([] {
              { const SignalledLoop world; }
              ::raise(SIGTERM);
              return 1;
            }),
            -SIGTERM);
}

TEST(TerminationSignals, AnotherThreadAtWorkIsNotDisturbed) {
  EXPECT_EQ(inChild([] {
              SignalledLoop world;
              int ends[2] = {-1, -1};
              if (::pipe(ends) != 0) return 1;
              std::atomic<bool> isReading = false;
              ssize_t count = 0;
              std::thread reader([&] {
                char byte = 0;
                isReading = true;
                count = ::read(ends[0], &byte, 1);
              });
              while (!isReading) std::this_thread::yield();
              const pthread_t thread = reader.native_handle();
              for (int i = 0; i < 100; ++i) {
                // It has a handler, which is what is tested. NOLINTNEXTLINE(bugprone-bad-signal-to-kill-thread)
                ::pthread_kill(thread, SIGTERM);
              }
              (void)!::write(ends[1], "x", 1);
              reader.join();
              return count == 1 ? 0 : 2;
            }),
            0);
}

TEST(TerminationSignals, AChildThatHasNotBecomeItsProgramTellsTheParentNothing) {
  EXPECT_EQ(inChild([] {
              SignalledLoop world;
              const pid_t child = ::fork();
              if (child == 0) {
                ::raise(SIGTERM);
                ::_exit(0);
              }
              ::waitpid(child, nullptr, 0);
              world.loop.runFor(0.02);
              return world.told.empty() ? 0 : 1;
            }),
            0);
}

TEST(TerminationSignals, AProgramThatIsStartedMeanwhileEndsOfThem) {
  EXPECT_EQ(inChild([] {
              const SignalledLoop world;
              return runCommand({"sh", "-c", "kill -TERM $$; echo alive"}).status == -SIGTERM ? 0 : 1;
            }),
            0);
}

TEST(BeforeExit, AnExitFromWithinDoesTheTaskFirstAndKeepsItsStatus) {
  int ends[2] = {-1, -1};
  ASSERT_EQ(::pipe(ends), 0);
  EXPECT_EQ(inChild([&]() -> int {
              const BeforeExit last([&] { (void)!::write(ends[1], "done", 4); });
              std::exit(7);
            }),
            7);
  char text[5] = {};
  EXPECT_EQ(::read(ends[0], text, 4), 4);
  EXPECT_STREQ(text, "done");
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(BeforeExit, ATaskWhoseObjectIsGoneIsNotDone) {
  EXPECT_EQ(inChild([]() -> int {
              {
                const BeforeExit last([] { ::_exit(9); });
              }
              std::exit(7);
            }),
            7);
}

TEST(BeforeExit, ATaskIsDoneOnce) {
  int ends[2] = {-1, -1};
  ASSERT_EQ(::pipe2(ends, O_NONBLOCK), 0);
  EXPECT_EQ(inChild([&]() -> int {
              const auto write = [&] { (void)!::write(ends[1], "x", 1); };
              { const BeforeExit first(write); }
              const BeforeExit second(write);
              std::exit(3);
            }),
            3);
  char text[4] = {};
  EXPECT_EQ(::read(ends[0], text, 4), 1);
  ::close(ends[0]);
  ::close(ends[1]);
}

}  // namespace
}  // namespace halvorn
