// What programs with windows make of being quit, on every kind of desktop that can ask them.
#include <signal.h>

#include "tests/processes/adapter/LiveFixture.h"
#include "tests/support/QuitLines.h"

namespace halvorn {
namespace {

struct Kind {
  const char* name;
  DesktopParts parts;
  std::vector<std::string> habits;

  friend void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }
};

class PoliteQuitting : public LiveFixture, public testing::WithParamInterface<Kind> {
 protected:
  void SetUp() override { startDesktopAndWatch(GetParam().parts); }
  ChildProcess& startShown(int windows, Strings habits) {
    habits.insert(habits.end(), {"--windows", std::to_string(windows)});
    habits.insert(habits.end(), GetParam().habits.begin(), GetParam().habits.end());
    ChildProcess& child = startBundle("Editor", "EDIT", habits);
    awaitWindows(child, static_cast<std::size_t>(windows));
    return child;
  }
  // How long it took.
  double quit(const ChildProcess& child, float timeout) {
    const KTProcessPointer editor = process(child);
    const double start = testSeconds();
    EXPECT_TRUE(editor->quitRunningApplicationWithTimeout(timeout));
    return testSeconds() - start;
  }
  bool wasQuit() { return saysItQuit(live->log.lines().at(0), "Editor"); }
  static int count(ChildProcess& child, const std::string& what) {
    std::ignore = child.waitForOutput("(never said)", 0.2);
    int result = 0;
    for (auto at = child.output().find(what); at != std::string::npos;
         at = child.output().find(what, at + 1)) {
      ++result;
    }
    return result;
  }
};
INSTANTIATE_TEST_SUITE_P(
    Desktops, PoliteQuitting,
    testing::Values(
        Kind{"X11", {.bus = false}, {}}, Kind{"Wayland", {.bus = false, .compositor = Compositor::Sway}, {}},
        Kind{"XWayland", {.bus = false, .compositor = Compositor::Sway, .xClients = true}, {"--x-windows"}},
        Kind{"KWin", {.compositor = Compositor::KWin}, {}}),
    [](const auto& parameters) { return parameters.param.name; });

TEST_P(PoliteQuitting, AProgramThatFollowsIsClosedAndNotSignalled) {
  ChildProcess& child = startShown(1, {});
  quit(child, 4.0F);
  EXPECT_TRUE(wasQuit());
  EXPECT_EQ(child.waitForEnd(5), 0);
  EXPECT_EQ(count(child, "close"), 1);
  EXPECT_EQ(count(child, "term"), 0);
}

// A signal in the meantime would end it, with what it has not saved.
TEST_P(PoliteQuitting, AProgramThatAsksToSaveGetsToAsk) {
  ChildProcess& child = startShown(1, {"--asks-to-save"});
  EXPECT_GE(quit(child, 1.6F), 1.6);
  EXPECT_EQ(child.waitForEnd(5), -SIGKILL) << "nobody has answered";
  EXPECT_EQ(count(child, "asking"), 1);
  EXPECT_EQ(count(child, "term"), 0);
}

TEST_P(PoliteQuitting, AProgramThatSavesSlowlyGetsToSave) {
  ChildProcess& child = startShown(2, {"--saves-slowly", "1.8"});
  EXPECT_GE(quit(child, 4.0F), 1.5);
  EXPECT_TRUE(wasQuit());
  EXPECT_EQ(child.waitForEnd(5), 0);
  EXPECT_EQ(count(child, "saved"), 1);
}

TEST_P(PoliteQuitting, AProgramThatDoesNotAnswerIsSignalledOnceAfterAMoment) {
  ChildProcess& child = startShown(2, {"--ignores-close"});
  const double seconds = quit(child, 4.0F);
  EXPECT_GE(seconds, 0.9);
  EXPECT_TRUE(wasQuit());
  EXPECT_EQ(child.waitForEnd(5), 0);
  EXPECT_EQ(count(child, "close"), 2) << "each window once";
  EXPECT_EQ(count(child, "term"), 1);
}

TEST_P(PoliteQuitting, AProgramThatIsLeftWithoutWindowsIsSignalledInTime) {
  ChildProcess& child = startShown(1, {"--saves-slowly", "60"});
  EXPECT_GE(quit(child, 20.0F), 2.9);
  EXPECT_TRUE(wasQuit());
  EXPECT_EQ(child.waitForEnd(5), -SIGTERM);
}

TEST_P(PoliteQuitting, AProgramWithoutWindowsIsSignalledAtOnce) {
  ChildProcess& child = startBundle("Editor", "EDIT", GetParam().habits);
  quit(child, 4.0F);
  EXPECT_TRUE(wasQuit());
  EXPECT_EQ(child.waitForEnd(5), 0);
  EXPECT_EQ(count(child, "term"), 1);
}

}  // namespace
}  // namespace halvorn
