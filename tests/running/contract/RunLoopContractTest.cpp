// What adapters expect of the main loop, of the toolkit's and of the plain one.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QCoreApplication>
#include <memory>
#include <string>
#include <vector>

#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/window/linux/QtApplication.h"
#include "Platform/window/linux/QtRunLoop.h"
#include "tests/support/ChildProcess.h"

namespace halvorn {
namespace {

struct Loop {
  virtual ~Loop() = default;
  virtual RunLoop& sources() = 0;
  virtual MainThread& mainThread() = 0;
  virtual bool runUntil(const std::function<bool()>& condition, double seconds) = 0;
};

struct PlainLoop : Loop {
  RunLoop& sources() override { return loop; }
  MainThread& mainThread() override { return loop; }
  bool runUntil(const std::function<bool()>& condition, double seconds) override {
    return loop.runUntil(condition, seconds);
  }
  PollRunLoop loop;
};

struct ToolkitLoop : Loop {
  ToolkitLoop() { loop = std::make_unique<QtRunLoop>(); }
  RunLoop& sources() override { return *loop; }
  MainThread& mainThread() override { return application; }
  bool runUntil(const std::function<bool()>& condition, double seconds) override {
    const double end = testSeconds() + seconds;
    while (!condition()) {
      if (testSeconds() > end) return false;
      QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
      pauseBriefly();
    }
    return true;
  }
  QtApplication application{"/test"};
  std::unique_ptr<QtRunLoop> loop;
};

// A session manager ends programs this way.
TEST(QtApplication, AskedToQuitItEndsItsLoopAndTellsBefore) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QtApplication application("/test");
  std::vector<std::string> told;
  application.setSessionEnded([&] { told.emplace_back("session ended"); });
  application.perform([] { QCoreApplication::postEvent(qApp, new QEvent(QEvent::Quit)); });
  EXPECT_EQ(application.run(), 0);
  EXPECT_EQ(told, std::vector<std::string>{"session ended"});
}

TEST(QtApplication, AskedToQuitWithNobodyToTellItEndsItsLoop) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QtApplication application("/test");
  application.perform([] { QCoreApplication::quit(); });
  EXPECT_EQ(application.run(), 0);
}

class RunLoopContract : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    ASSERT_EQ(::pipe(ends_), 0);
    if (GetParam() == "Toolkit") {
      ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
      loop = std::make_unique<ToolkitLoop>();
    } else {
      loop = std::make_unique<PlainLoop>();
    }
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
  EXPECT_TRUE(loop->runUntil([&] { return calls == 1; }, kTestPatience));
  write();
  EXPECT_TRUE(loop->runUntil([&] { return calls == 2; }, kTestPatience));
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
  EXPECT_TRUE(loop->runUntil([&] { return calls > 0; }, kTestPatience));
  EXPECT_FALSE(loop->runUntil([&] { return calls > 1; }, 0.05));
  EXPECT_EQ(calls, 1);
}

TEST_P(RunLoopContract, ATimerCallsAgainAndAgainUntilItEnds) {
  int calls = 0;
  auto source = loop->sources().every(0.01, [&] { ++calls; });
  EXPECT_TRUE(loop->runUntil([&] { return calls >= 3; }, kTestPatience));
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
  ASSERT_TRUE(loop->runUntil([&] { return order.size() == 4; }, kTestPatience));
  EXPECT_EQ(order, (std::vector<std::string>{"posted 1", "posted 2", "idle 1", "idle 2"}));
}

TEST_P(RunLoopContract, AnIdleTaskMayAskForAnother) {
  int calls = 0;
  std::function<void()> again = [&] {
    if (++calls < 5) loop->mainThread().performWhenIdle(again);
  };
  loop->mainThread().performWhenIdle(again);
  EXPECT_TRUE(loop->runUntil([&] { return calls == 5; }, kTestPatience));
}

INSTANTIATE_TEST_SUITE_P(Loops, RunLoopContract, ::testing::Values("Plain", "Toolkit"),
                         [](const auto& parameter) { return parameter.param; });

}  // namespace
}  // namespace halvorn
