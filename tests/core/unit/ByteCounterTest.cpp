#include "Core/ByteCounter.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace halvorn {
namespace {

TEST(ByteCounter, CountsWhatSeveralThreadsAdd) {
  ByteCounter counter;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int j = 0; j < 1000; ++j) counter.add(3);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(counter.bytes(), 12000U);
  counter.reset();
  EXPECT_EQ(counter.bytes(), 0U);
}

TEST(ByteCounter, TellsTheSumWheneverAStepIsFull) {
  std::vector<std::uint64_t> told;
  ByteCounter counter(100, [&](std::uint64_t bytes) { told.push_back(bytes); });
  for (const std::uint64_t bytes : {99U, 1U, 50U, 49U, 1U, 300U, 0U}) counter.add(bytes);
  EXPECT_EQ(told, (std::vector<std::uint64_t>{100, 200, 500}));
}

TEST(ByteCounter, IsRaisedByWhoCountedElsewhereAndNeverFalls) {
  ByteCounter counter;
  for (const std::uint64_t bytes : {8U, 4U, 12U, 12U}) counter.raiseTo(bytes);
  EXPECT_EQ(counter.bytes(), 12U);
}

}  // namespace
}  // namespace halvorn
