// Tasks on the system's run loop.
#include "Platform/running/mac/MacMainThread.h"

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/mac/MacLoop.h"
#include "tests/mac/MacTest.h"

namespace halvorn {
namespace {

class MacMainThreadTest : public MacTest {
 protected:
  MacPool pool;
  MacMainThread mainThread;
  std::vector<std::string> order;
};

TEST_F(MacMainThreadTest, TasksRunInTheOrderTheyCameAndNeverInsideTheCall) {
  for (const char* name : {"1", "2", "3"}) mainThread.perform([this, name] { order.emplace_back(name); });
  EXPECT_TRUE(order.empty());
  ASSERT_TRUE(serveMacLoopUntil([&] { return order.size() == 3; }));
  EXPECT_EQ(order, (std::vector<std::string>{"1", "2", "3"}));
}

TEST_F(MacMainThreadTest, ATaskThatATaskPostsComesAfterThoseThatWaited) {
  mainThread.perform([&] {
    order.emplace_back("1");
    mainThread.perform([&] { order.emplace_back("3"); });
  });
  mainThread.perform([&] { order.emplace_back("2"); });
  ASSERT_TRUE(serveMacLoopUntil([&] { return order.size() == 3; }));
  EXPECT_EQ(order, (std::vector<std::string>{"1", "2", "3"}));
}

TEST_F(MacMainThreadTest, TasksOfAnotherThreadRunOnTheMainOne) {
  const auto here = std::this_thread::get_id();
  std::thread::id ranOn;
  std::thread([&] {
    for (int i = 0; i < 3; ++i) {
      mainThread.perform([&, i] {
        ranOn = std::this_thread::get_id();
        order.emplace_back(std::to_string(i));
      });
    }
  }).join();
  ASSERT_TRUE(serveMacLoopUntil([&] { return order.size() == 3; }));
  EXPECT_EQ(ranOn, here);
  EXPECT_EQ(order, (std::vector<std::string>{"0", "1", "2"}));
}

TEST_F(MacMainThreadTest, ADelayedTaskWaitsItsTime) {
  const auto start = std::chrono::steady_clock::now();
  auto ran = start;
  mainThread.performAfter(0.05, [&] {
    ran = std::chrono::steady_clock::now();
    order.emplace_back("later");
  });
  mainThread.perform([&] { order.emplace_back("now"); });
  ASSERT_TRUE(serveMacLoopUntil([&] { return order.size() == 2; }));
  EXPECT_EQ(order, (std::vector<std::string>{"now", "later"}));
  EXPECT_GE(ran - start, std::chrono::milliseconds(49)) << "the system's time is not exactly the clock's";
}

TEST_F(MacMainThreadTest, DelayedTasksThatAreAllLateRunInTheOrderOfTheirTimes) {
  mainThread.performAfter(0.02, [&] { order.emplace_back("later"); });
  mainThread.performAfter(0.01, [&] { order.emplace_back("soon"); });
  mainThread.perform([] {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(40);
    while (std::chrono::steady_clock::now() < end) std::this_thread::yield();
  });
  ASSERT_TRUE(serveMacLoopUntil([&] { return order.size() == 2; }));
  EXPECT_EQ(order, (std::vector<std::string>{"soon", "later"}));
}

TEST_F(MacMainThreadTest, IdleTasksRunInOrderAfterWhatWasPosted) {
  mainThread.performWhenIdle([&] { order.emplace_back("idle 1"); });
  mainThread.performWhenIdle([&] { order.emplace_back("idle 2"); });
  mainThread.perform([&] { order.emplace_back("posted 1"); });
  mainThread.perform([&] { order.emplace_back("posted 2"); });
  EXPECT_TRUE(order.empty());
  ASSERT_TRUE(serveMacLoopUntil([&] { return order.size() == 4; }));
  EXPECT_EQ(order, (std::vector<std::string>{"posted 1", "posted 2", "idle 1", "idle 2"}));
}

TEST_F(MacMainThreadTest, AnIdleTaskMayAskForAnother) {
  int calls = 0;
  std::function<void()> again = [&] {
    if (++calls < 5) mainThread.performWhenIdle(again);
  };
  mainThread.performWhenIdle(again);
  EXPECT_TRUE(serveMacLoopUntil([&] { return calls == 5; }));
}

TEST_F(MacMainThreadTest, WhatATaskHoldsIsLetGoOnceItHasRun) {
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> watch = held;
  for (const int kind : {0, 1, 2}) {
    auto task = [held, this] { order.emplace_back("ran"); };
    if (kind == 0) mainThread.perform(task);
    if (kind == 1) mainThread.performAfter(0.01, task);
    if (kind == 2) mainThread.performWhenIdle(task);
  }
  held.reset();
  ASSERT_TRUE(serveMacLoopUntil([&] { return order.size() == 3; }));
  EXPECT_TRUE(serveMacLoopUntil([&] { return watch.expired(); }));
}

}  // namespace
}  // namespace halvorn
