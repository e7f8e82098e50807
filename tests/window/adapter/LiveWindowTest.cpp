// Real keys and mouse clicks on the real window under a window manager.
#include <cstdio>
#include <sstream>
#include <utility>

#include "tests/window/adapter/LiveWindow.h"

namespace halvorn {
namespace {

class WindowOnADesktop : public LiveWindow {
 protected:
  void SetUp() override {
    if (!programExists("xdotool")) GTEST_SKIP() << "xdotool is not installed";
    if (!startDesktop({.bus = false})) GTEST_SKIP() << reason_;
    startWindow();
    showInstallPage();
  }
};

TEST_F(WindowOnADesktop, AClickOnAButtonPerformsItsAction) {
  click("installButton");
  EXPECT_TRUE(said("action install:"));
  click("cancelButton");
  EXPECT_TRUE(said("action cancel:"));
  click("helpButton");
  EXPECT_TRUE(said("action openDocumentation:"));
}

TEST_F(WindowOnADesktop, ReturnAndEscapePressTheirButtons) {
  key("Return");
  EXPECT_TRUE(said("action install:"));
  key("Escape");
  EXPECT_TRUE(said("action cancel:"));
}

TEST_F(WindowOnADesktop, AHeldReturnPressesOnceAndEachFurtherPressAgain) {
  run({"xdotool", "keydown", "Return"});
  EXPECT_TRUE(eventually([&] { return times("return\n") > 4; })) << probe_->output();
  run({"xdotool", "keyup", "Return"});
  EXPECT_EQ(times("action install:"), 1) << probe_->output();
  key("Return");
  EXPECT_TRUE(eventually([&] { return times("action install:") == 2; })) << probe_->output();
}

TEST_F(WindowOnADesktop, AReturnThatWasHeldWhenTheWindowCameUpPressesNothing) {
  probe_.reset();
  run({"xdotool", "keydown", "Return"});
  startWindow();
  showInstallPage();
  EXPECT_TRUE(eventually([&] { return times("return\n") > 4; })) << probe_->output();
  EXPECT_EQ(times("action"), 0) << probe_->output();
  run({"xdotool", "keyup", "Return"});
  key("Return");
  EXPECT_TRUE(eventually([&] { return times("action install:") == 1; })) << probe_->output();
}

TEST_F(WindowOnADesktop, DisabledAndHiddenButtonsCannotBePressed) {
  tell({"disable installButton", "disable cancelButton", "hide helpButton"});
  click("installButton");
  key("Return");
  key("Escape");
  click("helpButton");
  key("space");
  tell({"enable installButton"});
  key("Return");
  ASSERT_TRUE(said("action install:"));
  EXPECT_EQ(times("action"), 1) << probe_->output();
}

TEST_F(WindowOnADesktop, TheOptionKeyIsSeenWithTheEventThatItWasHeldFor) {
  key("alt+Return");
  EXPECT_TRUE(said("action install: option"));
  key("Return");
  EXPECT_TRUE(eventually([&] { return ask("option") == "no option"; }));
}

TEST_F(WindowOnADesktop, AltAndItsLetterPressAButtonAndAreNoOptionKey) {
  key("alt+c");
  EXPECT_TRUE(said("action cancel:"));
  key("alt+i");
  EXPECT_TRUE(said("action install:"));
  EXPECT_EQ(times(": option"), 0) << probe_->output();
}

TEST_F(WindowOnADesktop, ControlAndQCloseIt) {
  key("ctrl+q");
  EXPECT_TRUE(said("closed"));
}

TEST_F(WindowOnADesktop, WithItsFrameItStaysWithinTheWorkArea) {
  tell({"state names", "set explanationField " + std::string(3000, 'w'), "window center"});
  EXPECT_TRUE(eventually([&] { return ask("judge") == "no finding"; })) << ask("judge");
  // Where it stood low, and then had more to say.
  tell({"state install", "window center", "set explanationField " + std::string(3000, 'w')});
  EXPECT_TRUE(eventually([&] { return ask("judge") == "no finding"; })) << ask("judge");
}

TEST_F(WindowOnADesktop, TabWalksThroughTheControls) {
  EXPECT_EQ(ask("focus"), "focus installButton");
  for (const char* next : {"helpButton", "cancelButton", "installButton"}) {
    key("Tab");
    EXPECT_TRUE(eventually([&] { return ask("focus") == std::string("focus ") + next; }))
        << next << ", not " << ask("focus");
  }
  key("shift+Tab");
  EXPECT_TRUE(eventually([&] { return ask("focus") == "focus cancelButton"; }));
  key("space");
  EXPECT_TRUE(said("action cancel:"));
}

TEST_F(WindowOnADesktop, TheKeyboardReturnsToTheButtonThatWasDisabled) {
  tell({"disable installButton", "disable cancelButton", "enable installButton", "hide cancelButton"});
  key("Return");
  EXPECT_TRUE(said("action install:"));
}

TEST_F(WindowOnADesktop, TheMouseMarksAPathThatIsCopiedAndTheKeyboardStaysWhereItIs) {
  if (!programExists("xclip")) GTEST_SKIP() << "xclip is not installed";
  const std::string place = ask("where pathField");
  const auto space = place.find(' ', 3);
  // From behind its end to before its beginning.
  run({"xdotool", "mousemove", place.substr(3, space - 3), place.substr(space + 1), "mousedown", "1",
       "mousemove_relative", "--", "-600", "0", "mouseup", "1"});
  EXPECT_TRUE(eventually([&] { return run({"xclip", "-o", "-selection", "primary"}) == "/opt/Sample"; }));
  key("ctrl+c");
  EXPECT_TRUE(eventually([&] { return run({"xclip", "-o", "-selection", "clipboard"}) == "/opt/Sample"; }));
  EXPECT_EQ(ask("focus"), "focus installButton");
  key("Return");
  EXPECT_TRUE(said("action install:"));
}

TEST_F(WindowOnADesktop, TheReadMePageScrollsByKeyAndReturnGoesOn) {
  tell({"document " KT_SOURCE_DIR "/tests/data/window/editor.rtf", "select 0"});
  EXPECT_EQ(ask("focus"), "focus readMeTextView");
  key("Page_Down");
  key("Return");
  EXPECT_TRUE(said("action install:"));
}

TEST_F(WindowOnADesktop, ALinkOfTheReadMeIsReachedByTabAndFollowedByReturn) {
  tell({"document " KT_SOURCE_DIR "/tests/data/window/editor.rtf", "select 0"});
  key("Tab");
  key("Return");
  EXPECT_TRUE(said("link https://example.com/notes"));
}

TEST_F(WindowOnADesktop, ClosingTheWindowIsTold) {
  run({"wmctrl", "-i", "-c", windowId()});
  EXPECT_TRUE(said("closed"));
  EXPECT_EQ(probe_->waitForEnd(10), 0);
}

TEST_F(WindowOnADesktop, TheWindowManagerKnowsItsTitleAndIcon) {
  tell({"windowTitle Install Größe & Co [*]"});
  EXPECT_TRUE(eventually([&] {
    return run({"xdotool", "getwindowname", windowId()}) == "Install Größe & Co [*]";
  })) << run({"xdotool", "getwindowname", windowId()});
  tell({"icon " KT_SOURCE_DIR "/Resources/HalvornInstaller.icns"});
  EXPECT_TRUE(eventually([&] {
    return run({"xprop", "-id", windowId(), "_NET_WM_ICON"}).find("Icon (128 x 128)") != std::string::npos;
  }));
}

TEST_F(WindowOnADesktop, OnlyBehindAnotherOneItAsksForAttention) {
  const std::string window = windowId();
  const auto asks = [&] {
    return run({"xprop", "-id", window, "_NET_WM_STATE"}).find("DEMANDS_ATTENTION") != std::string::npos;
  };
  tell({"attention"});
  EXPECT_FALSE(asks());
  ProbeProgram other({KT_WINDOW_PROBE, bundle(), "en", "light"},
                     ChildOptions{.environment = desktop_->environment()});
  ASSERT_TRUE(other.waitForOutput("ready", kTestPatience)) << other.output();
  (void)other.tell({"window show", "select 1", "window center", "window front"});
  ASSERT_TRUE(eventually([&] { return activeWindow() != window; }));
  // The window hears of it later than the desktop.
  EXPECT_TRUE(eventually([&] {
    tell({"attention"});
    return asks();
  })) << run({"xprop", "-id", window, "_NET_WM_STATE"});
}

TEST_F(WindowOnADesktop, ASheetTakesTheKeyboardAndEndsByReturn) {
  const std::string window = activeWindow();
  tell({"sheet AlertStopIcon"});
  ASSERT_TRUE(eventually([&] { return isSheet(activeWindow(), window); }));
  const std::string sheet = activeWindow();
  click("installButton");  // the window below cannot be used
  ASSERT_TRUE(eventually([&] { return activeWindow() == sheet; })) << "the keyboard goes back to the sheet";
  key("Return");
  EXPECT_TRUE(said("sheet ended 1000"));
  EXPECT_EQ(times("action"), 0) << probe_->output();
}

TEST_F(WindowOnADesktop, ASheetIsADialogOfItsWindowThatIsNotMadeSmallOrLarge) {
  const std::string window = activeWindow();
  tell({"sheet AlertStopIcon"});
  ASSERT_TRUE(eventually([&] { return isSheet(activeWindow(), window); }));
  const auto property = [&, sheet = activeWindow()](const char* name) {
    return run({"xprop", "-id", sheet, name});
  };
  EXPECT_NE(property("_NET_WM_WINDOW_TYPE").find("= _NET_WM_WINDOW_TYPE_DIALOG"), std::string::npos);
  EXPECT_NE(property("_NET_WM_STATE").find("_NET_WM_STATE_MODAL"), std::string::npos);
  std::ostringstream owner;
  owner << "# 0x" << std::hex << std::stoul(window);
  EXPECT_NE(property("WM_TRANSIENT_FOR").find(owner.str()), std::string::npos)
      << property("WM_TRANSIENT_FOR");
  // What may be done with it, and what its frame has: flags, then bits, of which 8 and 32 are making it small, 16 and 64
  // making it large. openbox draws both buttons nevertheless: no window's hints take a button away there.
  unsigned flags = 0, functions = 0, decorations = 0;
  const std::string hints = property("_MOTIF_WM_HINTS");
  ASSERT_EQ(std::sscanf(hints.c_str(), "%*[^=]= %x, %x, %x", &flags, &functions, &decorations), 3) << hints;
  EXPECT_EQ(flags & 3U, 3U) << hints;
  EXPECT_EQ(functions & (8U | 16U), 0U) << hints;
  EXPECT_EQ(decorations & (32U | 64U), 0U) << hints;
  EXPECT_TRUE(eventually([&] {
    return property("_NET_WM_ALLOWED_ACTIONS").find("_NET_WM_ACTION_MAXIMIZE") == std::string::npos;
  })) << property("_NET_WM_ALLOWED_ACTIONS");
}

TEST_F(WindowOnADesktop, TheSecondButtonOfASheetIsReachedByTab) {
  const std::string window = activeWindow();
  tell({"sheet AlertStopIcon"});
  ASSERT_TRUE(eventually([&] { return isSheet(activeWindow(), window); }));
  key("Tab");
  key("space");
  EXPECT_TRUE(said("sheet ended 1001"));
}

TEST_F(WindowOnADesktop, EscapeAndTheCloseButtonCountAsTheFirstButtonOfASheet) {
  const std::string window = activeWindow();
  for (const bool byKey : {true, false}) {
    tell({"sheet AlertStopIcon"});
    ASSERT_TRUE(eventually([&] { return isSheet(activeWindow(), window); }));
    if (byKey) {
      key("Escape");
    } else {
      run({"wmctrl", "-i", "-c", activeWindow()});
    }
    ASSERT_TRUE(eventually([&] { return ask("focus") == "focus installButton"; }));
    ASSERT_TRUE(eventually([&] { return activeWindow() == window; }));
  }
  EXPECT_EQ(times("sheet ended 1000"), 2) << probe_->output();
}

class WindowOnABus : public LiveWindow {
 protected:
  void SetUp() override {
    if (!startDesktop({})) GTEST_SKIP() << reason_;
  }
  void startPortal(const std::vector<std::string>& arguments = {}) {
    std::vector<std::string> command = {KT_PORTAL_PROBE};
    command.insert(command.end(), arguments.begin(), arguments.end());
    portal_ = std::make_unique<ChildProcess>(command, ChildOptions{.environment = desktop_->environment()});
    ASSERT_TRUE(portal_->waitForOutput("ready", kTestPatience)) << portal_->output();
  }
  void set(const std::string& scheme) {
    portal_->writeInput(scheme + "\n");
    ASSERT_TRUE(portal_->readLine(kTestPatience));
  }
  // Whether the wheel is painted on while its clock ticks five times.
  bool turns() {
    int ticks = 0, paintings = 0;
    readWheel(ticks, paintings);
    int laterTicks = ticks, laterPaintings = paintings;
    EXPECT_TRUE(eventually([&] {
      readWheel(laterTicks, laterPaintings);
      return laterTicks >= ticks + 5;
    })) << "the wheel's clock stands still";
    return laterPaintings >= paintings + 3;
  }
  void readWheel(int& ticks, int& paintings) {
    std::istringstream(ask("wheel").substr(6)) >> ticks >> paintings;
  }
  [[nodiscard]] bool isSeen(const std::string& view) { return ask("ink " + view) != "ink 0"; }

  std::unique_ptr<ChildProcess> portal_;
};

TEST_F(WindowOnABus, TheDesktopsColorSchemeIsFollowed) {
  startPortal();
  ASSERT_EQ(portal_->readLine(kTestPatience), "ready");
  set("dark");
  startWindow("desktop");
  EXPECT_TRUE(said("dark"));
  set("light");
  EXPECT_TRUE(said("light"));
  set("dark");
  EXPECT_TRUE(eventually([&] { return times("dark") == 2; }));
  set("none");
  EXPECT_TRUE(eventually([&] { return times("light") == 2; }));
}

TEST_F(WindowOnABus, TheDesktopsContrastIsFollowedInEitherLook) {
  startPortal();
  ASSERT_EQ(portal_->readLine(kTestPatience), "ready");
  set("contrast");
  startWindow("light");
  EXPECT_TRUE(eventually([&] { return ask("edges") == "edges #000000"; }))
      << "in a look of the person's own, too";
  set("no-contrast");
  EXPECT_TRUE(eventually([&] { return ask("edges") == "edges #8a8a90"; }));
  set("contrast");
  EXPECT_TRUE(eventually([&] { return ask("edges") == "edges #000000"; }));
}

TEST_F(WindowOnABus, AThemeOfHighContrastIsFollowed) {
  startPortal();
  ASSERT_EQ(portal_->readLine(kTestPatience), "ready");
  set("theme HighContrastInverse");
  startWindow("desktop");
  EXPECT_TRUE(said("dark"));
  EXPECT_TRUE(eventually([&] { return ask("edges") == "edges #ffffff"; }));
  set("theme Adwaita");
  EXPECT_TRUE(eventually([&] { return ask("edges") == "edges #8a8a90"; }));
  for (const auto& [on, off] : {std::pair("high-contrast YES", "high-contrast NO"),
                                std::pair("scheme BreezeHighContrast", "scheme Breeze")}) {
    set(on);
    EXPECT_TRUE(eventually([&] { return ask("edges") == "edges #000000"; })) << on;
    set(off);
    EXPECT_TRUE(eventually([&] { return ask("edges") == "edges #8a8a90"; })) << off;
  }
}

TEST_F(WindowOnABus, WhereNothingIsToMoveTheWheelIsThereAndStandsStill) {
  startPortal();
  ASSERT_EQ(portal_->readLine(kTestPatience), "ready");
  set("still");
  startWindow("light");
  showInstallPage();
  tell({"spin"});
  EXPECT_TRUE(eventually([&] { return !turns(); }));
  EXPECT_TRUE(isSeen("progressIndicator"));
  for (const auto& [moving, still] :
       {std::pair("moving", "animations NO"), std::pair("animations YES", "durations 0"),
        std::pair("durations 1", "still")}) {
    set(moving);
    EXPECT_TRUE(eventually([&] { return turns(); })) << moving;
    set(still);
    EXPECT_TRUE(eventually([&] { return !turns(); })) << still;
    EXPECT_TRUE(isSeen("progressIndicator"));
  }
  tell({"stop"});
  EXPECT_FALSE(isSeen("progressIndicator"));
}

TEST_F(WindowOnABus, ASettingOfThePersonsOwnWinsOverTheDesktop) {
  startPortal();
  ASSERT_EQ(portal_->readLine(kTestPatience), "ready");
  set("dark");
  startWindow("light");
  set("light");
  set("dark");
  tell({"window atLaunch"});
  EXPECT_EQ(times("dark"), 0) << probe_->output();
}

TEST_F(WindowOnABus, APortalThatNeverAnswersHoldsNothingUp) {
  startPortal({"silent"});
  startWindow("desktop");
  tell({"window atLaunch"});
  EXPECT_TRUE(eventually([&] { return !windowId().empty(); }));
}

}  // namespace
}  // namespace halvorn
