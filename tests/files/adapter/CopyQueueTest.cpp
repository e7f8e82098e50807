// The queue that the threads of one copy work from.
#include "Platform/files/posix/copy/CopyQueue.h"

#include <gtest/gtest.h>

#include <latch>
#include <mutex>
#include <stdexcept>
#include <vector>

namespace halvorn {
namespace {

class CopyQueueTest : public testing::Test {
 protected:
  // A task that notes that it ran.
  CopyQueue::Task noting(int number) {
    return [this, number](CopyScratch&) {
      const std::lock_guard lock(mutex);
      ran.push_back(number);
    };
  }

  std::mutex mutex;
  std::vector<int> ran;
  CopyQueue queue;
};

TEST_F(CopyQueueTest, AloneEverythingRunsInTheOrderInWhichItWasAdded) {
  queue.runAll([&](CopyScratch&) {
    for (int number : {1, 2, 3}) queue.add(noting(number));
  });
  EXPECT_EQ(ran, (std::vector{1, 2, 3}));
}

TEST_F(CopyQueueTest, AloneNothingIsLeftForLater) {
  EXPECT_FALSE(queue.addForLater(5, noting(1)));
  queue.runAll([](CopyScratch&) {});
  EXPECT_TRUE(ran.empty());
}

TEST_F(CopyQueueTest, WhatWasLeftForLaterComesAfterTheRestTheLongestFirst) {
  queue.allowWorkers(2);
  std::latch isOtherBusy(1);
  std::latch isDone(1);
  queue.runAll([&](CopyScratch&) {
    queue.add([&](CopyScratch&) {
      isOtherBusy.count_down();
      isDone.wait();
    });
    isOtherBusy.wait();
    EXPECT_TRUE(queue.addForLater(20, noting(20)));
    EXPECT_TRUE(queue.addForLater(30, noting(30)));
    EXPECT_TRUE(queue.addForLater(10, [&](CopyScratch& scratch) {
      noting(10)(scratch);
      isDone.count_down();
    }));
    queue.add(noting(1));
  });
  EXPECT_EQ(ran, (std::vector{1, 30, 20, 10}));
}

TEST_F(CopyQueueTest, OnlySoMuchIsLeftForLaterAndAllOfItIsDone) {
  queue.allowWorkers(2);
  int left = 0;
  queue.runAll([&](CopyScratch&) {
    const std::lock_guard others(mutex);
    while (left < 1000 && queue.addForLater(left, noting(left))) ++left;
  });
  EXPECT_GT(left, 1);
  EXPECT_LT(left, 100) << "each of them keeps a folder open";
  EXPECT_EQ(ran.size(), static_cast<std::size_t>(left));
}

TEST_F(CopyQueueTest, ATaskThatThrowsStopsTheQueueAndWhatWaitsIsDropped) {
  queue.runAll([&](CopyScratch&) {
    queue.add([](CopyScratch&) { throw std::runtime_error("no memory"); });
    queue.add(noting(1));
  });
  EXPECT_TRUE(queue.isStopped());
  EXPECT_TRUE(ran.empty());
}

}  // namespace
}  // namespace halvorn
