#include "Core/TaskGate.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <thread>

namespace halvorn {
namespace {

TEST(TaskGate, LetsTasksThroughWhileItIsOpen) {
  TaskGate gate;
  int runs = 0;
  const auto task = gate.wrap([&] { ++runs; });
  task();
  task();
  EXPECT_EQ(runs, 2);
}

TEST(TaskGate, ATaskThatBeginsAfterTheGateHasGoneDoesNothing) {
  auto gate = std::make_unique<TaskGate>();
  int runs = 0;
  const auto task = gate->wrap([&] { ++runs; });
  gate->close();
  task();
  gate.reset();
  task();
  EXPECT_EQ(runs, 0);
}

TEST(TaskGate, ClosingWaitsForTheTaskThatRuns) {
  TaskGate gate;
  std::promise<void> hasBegun;
  std::promise<void> mayEnd;
  std::atomic<bool> hasEnded = false;
  std::thread worker(gate.wrap([&] {
    hasBegun.set_value();
    mayEnd.get_future().wait();
    hasEnded = true;
  }));
  hasBegun.get_future().wait();
  std::thread releaser([&] { mayEnd.set_value(); });
  gate.close();
  EXPECT_TRUE(hasEnded);
  releaser.join();
  worker.join();
}

TEST(TaskGate, MayBeClosedTwice) {
  TaskGate gate;
  gate.close();
  gate.close();
  bool hasRun = false;
  gate.wrap([&] { hasRun = true; })();
  EXPECT_FALSE(hasRun);
}

}  // namespace
}  // namespace halvorn
