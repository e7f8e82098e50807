// What the cases of the contract are asked of on Linux: facts that a test sets, and those of a real desktop.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <functional>
#include <memory>
#include <optional>

#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/session/linux/LinuxDesktopFacts.h"
#include "Platform/session/linux/PortalInterfaceStyle.h"
#include "tests/fakes/FakeDesktopFacts.h"
#include "tests/fakes/FakeInterfaceStyleSetting.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"

namespace halvorn {

// A program of the desktop that does as it is told.
class Servant {
 public:
  Servant(const std::vector<std::string>& words, const Desktop& desktop)
      : program_(words, {.environment = desktop.environment()}) {
    EXPECT_EQ(program_.readLine(kTestPatience), "ready");
  }
  void tell(const std::string& line) {
    program_.writeInput(line + "\n");
    EXPECT_EQ(program_.readLine(kTestPatience), "done");
  }

 private:
  ChildProcess program_;
};

// --- clipboard and menu bar

struct FakeScreen {
  static std::optional<std::string> missing() { return std::nullopt; }
  void copy() { facts.changeClipboard(); }
  void fillTheScreen() { facts.hideMenuBar(); }
  void leaveTheScreen() { facts.showMenuBar(); }
  bool serveUntil(const std::function<bool()>& condition) { return condition(); }

  FakeDesktopFacts facts;
};

struct RealScreen {
  static constexpr DesktopParts parts{.bus = false};
  static std::optional<std::string> missing() { return Desktop::missing(parts); }
  void copy() { window.tell("copy"); }
  void fillTheScreen() { window.tell("fullscreen"); }
  void leaveTheScreen() { window.tell("windowed"); }
  bool serveUntil(const std::function<bool()>& condition) { return loop.runUntil(condition, kTestPatience); }

  Desktop desktop{parts};
  PollRunLoop loop;
  Servant window{{KT_WINDOW_PROBE}, desktop};
  const PosixClock clock{};
  LinuxDesktopFacts facts{Environment(Environment::Variables{{"DISPLAY", desktop.displayName()}}),
                          std::nullopt, loop, clock};
};

using ScreenWorlds = testing::Types<FakeScreen, RealScreen>;

// --- interface style

struct FakeStyles {
  static std::optional<std::string> missing() { return std::nullopt; }
  void choose(bool dark) { style.change(dark ? OptionalText("Dark") : std::nullopt); }
  bool serveUntil(const std::function<bool()>& condition) { return condition(); }

  FakeInterfaceStyleSetting style;
};

struct RealStyles {
  static constexpr DesktopParts parts{.display = false};
  static std::optional<std::string> missing() { return Desktop::missing(parts); }
  void choose(bool dark) { portal.tell(dark ? "scheme 1" : "scheme 2"); }
  bool serveUntil(const std::function<bool()>& condition) {
    return eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }

  int argumentCount = 1;
  char name[5] = "test";
  char* arguments[2] = {name, nullptr};
  QCoreApplication application{argumentCount, arguments};
  Desktop desktop{parts};
  Servant portal{{KT_SESSION_SERVICES, "portal", desktop.busAddress()}, desktop};
  PortalInterfaceStyle style{desktop.busAddress()};
};

using StyleWorlds = testing::Types<FakeStyles, RealStyles>;

}  // namespace halvorn
