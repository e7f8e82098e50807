// The plain loop, and the toolkit's.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <QCoreApplication>
#include <memory>
#include <string>
#include <vector>

#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/window/linux/QtApplication.h"
#include "Platform/window/linux/QtRunLoop.h"
#include "tests/running/contract/Loops.h"
#include "tests/support/ChildProcess.h"

namespace halvorn {
namespace {

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

std::unique_ptr<Loop> makePlain() { return std::make_unique<PlainLoop>(); }
std::unique_ptr<Loop> makeToolkits() {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
  return std::make_unique<ToolkitLoop>();
}

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

}  // namespace

const std::vector<NamedLoop>& loops() {
  static const std::vector<NamedLoop> all = {{"Plain", makePlain}, {"Toolkit", makeToolkits}};
  return all;
}

}  // namespace halvorn
