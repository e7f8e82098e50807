// KTSystem on a live desktop: what it hands out is made of the real adapters, none of them missing.
#include <gtest/gtest.h>

#include <algorithm>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTUtilities.h"
#include "KTStuff/KTClasses/PlainColor.h"
#include "KTStuff/KTSystem.h"
#include "Platform/running/Clock.h"
#include "Platform/session/DesktopFacts.h"
#include "Platform/text/Keyboard.h"
#include "tests/library/adapter/EnvironmentOfTest.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class SystemOnDesktop : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    desktop.emplace(parts);
    environment.emplace(desktop->environment());
    system.emplace(std::vector<Text>{"/opt/program"});
  }

  std::unique_ptr<ChildProcess> start(const std::string& program) {
    auto child = std::make_unique<ChildProcess>(std::vector<std::string>{program},
                                                ChildOptions{.environment = desktop->environment()});
    EXPECT_EQ(child->readLine(kTestPatience), "ready");
    return child;
  }
  static void tell(ChildProcess& child, const std::string& word) {
    child.writeInput(word + "\n");
    EXPECT_EQ(child.readLine(kTestPatience).value_or("").substr(0, 4), "done");
  }

  // Asks again and again: what the condition asks of the system need not wake the loop.
  bool until(const std::function<bool()>& condition) {
    const double end = system->clock().monotonicSeconds() + kTestPatience;
    while (!system->runUntil(condition, 0.02)) {
      if (system->clock().monotonicSeconds() > end) return false;
    }
    return true;
  }

  DesktopParts parts;
  std::optional<Desktop> desktop;
  std::optional<EnvironmentOfTest> environment;
  std::optional<KTSystem> system;
};

TEST_F(SystemOnDesktop, AWindowsProgramComesToTheFront) {
  const auto window = start(KT_WINDOW_PROBE);
  tell(*window, "front");
  EXPECT_TRUE(until([&] {
    const KTProcessPointer front = system->processes().frontProcess();
    return front && front->unixPID() == window->pid();
  }));
}

TEST_F(SystemOnDesktop, LaunchesAreTold) {
  (void)system->processes().allProcesses();
  std::vector<Text> changes;
  const auto observation = system->notifications().addObserver(
      KTProcessChangeNotification, nullptr,
      [&](const Notification& notification) { changes.push_back(notification.text("change").value_or("")); });
  const auto window = start(KT_WINDOW_PROBE);
  EXPECT_TRUE(until([&] {
    return std::find(changes.begin(), changes.end(), Text("started")) != changes.end();
  })) << testing::PrintToString(changes);
}

TEST_F(SystemOnDesktop, IdleTimeClipboardAndKeysAreTold) {
  EXPECT_GE(system->utilities().idleTime(), 0.0F);
  EXPECT_NE(system->desktopFacts().clipboardChangeCount(), std::nullopt);
  EXPECT_EQ(StringExtensions::stringWithVirtualKeyCode(0, 0, system->keyboard()), Text("a"));
}

TEST_F(SystemOnDesktop, AFullScreenWindowHidesTheMenuBar) {
  const auto window = start(KT_WINDOW_PROBE);
  tell(*window, "front");
  EXPECT_FALSE(system->utilities().fullScreenMode());
  tell(*window, "fullscreen");
  EXPECT_TRUE(until([&] { return system->utilities().fullScreenMode(); }));
}

TEST_F(SystemOnDesktop, ColorsFollowThePortal) {
  const auto portal = start(KT_PORTAL_PROBE);
  const auto color = system->colors().lightColor(PlainColor::sRGB(1, 1, 1), PlainColor::sRGB(0, 0, 0));
  EXPECT_EQ(color->whiteComponent(), 1.0);
  tell(*portal, "dark");
  EXPECT_TRUE(until([&] { return color->whiteComponent() == 0.0; }));
  EXPECT_TRUE(system->utilities().darkAppearance());
}

class SystemWithAccessibility : public SystemOnDesktop {
 protected:
  SystemWithAccessibility() { parts.accessibility = true; }
};

TEST_F(SystemWithAccessibility, AProgramsFocusIsWatched) {
  const auto watched = start(KT_WATCHED_PROGRAM);
  KTProcessPointer process;
  ASSERT_TRUE(until([&] {
    process = system->processes().processWithPID(watched->pid());
    return process && system->accessibility().createApplicationElement(process->serialNumber());
  }));
  process->installAXObserver();
  process->addAXNotification("AXFocusedUIElementChanged");
  Text event;
  const auto observation = system->notifications().addObserver(
      KTProcessUINotification, process.get(),
      [&](const Notification& notification) { event = notification.text("event").value_or(""); });
  // It hears some time later that somebody listens, and only then tells.
  int asked = 0;
  EXPECT_TRUE(until([&] {
    tell(*watched, asked++ % 2 == 0 ? "focus second" : "focus first");
    return event == Text("AXFocusedUIElementChanged");
  }));
}

}  // namespace
}  // namespace halvorn
