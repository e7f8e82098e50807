// What adapters expect of the main loop, of the toolkit's and of the plain one.
#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/running/contract/Loops.h"

namespace halvorn {
namespace {

constexpr double kLongestWait = 10.0;  // seconds, for what comes

class RunLoopContract : public ::testing::TestWithParam<NamedLoop> {
 protected:
  void SetUp() override {
    ASSERT_EQ(::pipe(ends_), 0);
    loop = GetParam().make();
  }
  void TearDown() override {
    ::close(ends_[0]);
    ::close(ends_[1]);
  }
  void write() { ASSERT_EQ(::write(ends_[1], "x", 1), 1); }
  void read() {
    char byte = 0;
    ASSERT_EQ(::read(ends_[0], &byte, 1), 1);
  }

  std::unique_ptr<Loop> loop;
  int ends_[2] = {-1, -1};
};

TEST_P(RunLoopContract, CallsBackOnceForEachThingToRead) {
  int calls = 0;
  const auto source = loop->sources().whenReadable(ends_[0], [&] {
    read();
    ++calls;
  });
  EXPECT_FALSE(loop->runUntil([&] { return calls > 0; }, 0.05)) << "nothing to read yet";
  write();
  EXPECT_TRUE(loop->runUntil([&] { return calls == 1; }, kLongestWait));
  write();
  EXPECT_TRUE(loop->runUntil([&] { return calls == 2; }, kLongestWait));
}

TEST_P(RunLoopContract, ASourceMayEndInItsOwnCallBack) {
  int calls = 0;
  std::unique_ptr<RunLoop::Source> source;
  const std::string captured(100, 'x');
  source = loop->sources().whenReadable(ends_[0], [&, captured] {
    source.reset();
    calls += captured.size() == 100 ? 1 : 1000;
  });
  write();
  EXPECT_TRUE(loop->runUntil([&] { return calls > 0; }, kLongestWait));
  EXPECT_FALSE(loop->runUntil([&] { return calls > 1; }, 0.05));
  EXPECT_EQ(calls, 1);
}

TEST_P(RunLoopContract, ATimerCallsAgainAndAgainUntilItEnds) {
  int calls = 0;
  auto source = loop->sources().every(0.01, [&] { ++calls; });
  EXPECT_TRUE(loop->runUntil([&] { return calls >= 3; }, kLongestWait));
  source.reset();
  const int before = calls;
  EXPECT_FALSE(loop->runUntil([&] { return calls > before; }, 0.05));
}

TEST_P(RunLoopContract, IdleTasksRunInOrderAfterWhatWasPosted) {
  std::vector<std::string> order;
  loop->mainThread().performWhenIdle([&] { order.push_back("idle 1"); });
  loop->mainThread().performWhenIdle([&] { order.push_back("idle 2"); });
  loop->mainThread().perform([&] { order.push_back("posted 1"); });
  loop->mainThread().perform([&] { order.push_back("posted 2"); });
  EXPECT_TRUE(order.empty()) << "never inside the call";
  ASSERT_TRUE(loop->runUntil([&] { return order.size() == 4; }, kLongestWait));
  EXPECT_EQ(order, (std::vector<std::string>{"posted 1", "posted 2", "idle 1", "idle 2"}));
}

TEST_P(RunLoopContract, AnIdleTaskMayAskForAnother) {
  int calls = 0;
  std::function<void()> again = [&] {
    if (++calls < 5) loop->mainThread().performWhenIdle(again);
  };
  loop->mainThread().performWhenIdle(again);
  EXPECT_TRUE(loop->runUntil([&] { return calls == 5; }, kLongestWait));
}

INSTANTIATE_TEST_SUITE_P(Loops, RunLoopContract, ::testing::ValuesIn(loops()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

}  // namespace
}  // namespace halvorn
