// What the cases of the contract are asked of on macOS: the adapters, on a desktop that a test makes up.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "Platform/color/mac/MacInterfaceStyleSetting.h"
#include "Platform/session/mac/MacDesktopFacts.h"
#include "tests/mac/frameworks/FakeMac.h"

namespace halvorn {

struct MacScreen {
  MacScreen() { fakemac::reset(); }
  static std::optional<std::string> missing() { return std::nullopt; }
  void copy() { ++fakemac::state().pasteboardChanges; }
  void fillTheScreen() { menuBar(kMenuBarHiddenEvent); }
  void leaveTheScreen() { menuBar(kMenuBarShownEvent); }
  bool serveUntil(const std::function<bool()>& condition) { return condition(); }
  static void menuBar(int kind) {
    static_cast<void>(fakemac::deliver(kMenuEventClass, static_cast<std::uint32_t>(kind)));
  }

  MacDesktopFacts facts;
};
using ScreenWorlds = testing::Types<MacScreen>;

struct MacStyles {
  MacStyles() { fakemac::reset(); }
  static std::optional<std::string> missing() { return std::nullopt; }
  void choose(bool dark) {
    fakemac::state().settings.clear();
    if (dark) fakemac::state().settings["AppleInterfaceStyle"] = "Dark";
    fakemac::postDistributed("AppleInterfaceThemeChangedNotification");
  }
  bool serveUntil(const std::function<bool()>& condition) { return condition(); }

  MacInterfaceStyleSetting style;
};
using StyleWorlds = testing::Types<MacStyles>;

}  // namespace halvorn
