// Descriptors and time on the system's run loop.
#include "Platform/running/mac/MacRunLoop.h"

#include <unistd.h>

#include "tests/mac/MacLoop.h"
#include "tests/mac/MacTest.h"

namespace halvorn {
namespace {

class MacRunLoopTest : public MacTest {
 protected:
  void SetUp() override { ASSERT_EQ(::pipe(ends), 0); }
  void TearDown() override {
    source.reset();
    ::close(ends[0]);
    if (ends[1] >= 0) ::close(ends[1]);
    MacTest::TearDown();
  }
  void put(char byte) { ASSERT_EQ(::write(ends[1], &byte, 1), 1); }
  char take() {
    char byte = 0;
    return ::read(ends[0], &byte, 1) == 1 ? byte : '-';
  }

  MacPool pool;
  MacRunLoop loop;
  int ends[2] = {-1, -1};
  std::unique_ptr<RunLoop::Source> source;
};

TEST_F(MacRunLoopTest, WhatCanBeReadIsToldAgainAndAgain) {
  std::string read;
  source = loop.whenReadable(ends[0], [&] { read += take(); });
  EXPECT_FALSE(MacRunLoop::runUntil([&] { return !read.empty(); }, 0.05)) << "nothing is there yet";
  put('a');
  EXPECT_TRUE(MacRunLoop::runUntil([&] { return read == "a"; }, 10));
  put('b');
  put('c');
  EXPECT_TRUE(MacRunLoop::runUntil([&] { return read == "abc"; }, 10));
}

TEST_F(MacRunLoopTest, TheEndOfTheOtherEndIsToldToo) {
  bool isTold = false;
  source = loop.whenReadable(ends[0], [&] {
    isTold = true;
    source.reset();
  });
  ::close(ends[1]);
  ends[1] = -1;
  EXPECT_TRUE(MacRunLoop::runUntil([&] { return isTold; }, 10));
  EXPECT_EQ(source, nullptr);
}

TEST_F(MacRunLoopTest, ASourceMayEndInItsOwnCallBackAndTellsNothingMore) {
  int told = 0;
  source = loop.whenReadable(ends[0], [&] {
    ++told;
    source.reset();
  });
  put('a');
  EXPECT_TRUE(MacRunLoop::runUntil([&] { return told == 1; }, 10));
  put('b');
  EXPECT_FALSE(MacRunLoop::runUntil([&] { return told > 1; }, 0.05));
}

TEST_F(MacRunLoopTest, ATimerRunsUntilItIsLetGo) {
  int told = 0;
  source = loop.every(0.01, [&] {
    if (++told == 3) source.reset();
  });
  EXPECT_EQ(told, 0);
  EXPECT_TRUE(MacRunLoop::runUntil([&] { return told == 3; }, 10));
  EXPECT_FALSE(MacRunLoop::runUntil([&] { return told > 3; }, 0.05));
}

TEST_F(MacRunLoopTest, ASourceThatIsLetGoIsKeptByNobody) {
  const int before = liveInstances("KTRunLoopCall");
  int told = 0;
  source = loop.every(0.01, [&] { ++told; });
  EXPECT_EQ(liveInstances("KTRunLoopCall"), before + 1);
  source.reset();
  EXPECT_TRUE(serveMacLoopUntil([&] { return liveInstances("KTRunLoopCall") == before; }));
  EXPECT_EQ(told, 0);
}

TEST_F(MacRunLoopTest, ASourceThatIsGoneBeforeAnythingCameTellsNothing) {
  int told = 0;
  source = loop.whenReadable(ends[0], [&] { ++told; });
  source.reset();
  put('a');
  EXPECT_FALSE(MacRunLoop::runUntil([&] { return told > 0; }, 0.05));
}

}  // namespace
}  // namespace halvorn
