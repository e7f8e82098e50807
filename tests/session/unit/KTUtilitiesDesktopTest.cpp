#include "KTStuff/KTClasses/KTUtilitiesDesktop.h"

#include <gtest/gtest.h>

#include <optional>

#include "tests/fakes/FakeDefaults.h"
#include "tests/fakes/FakeDesktopFacts.h"
#include "tests/fakes/FakeInterfaceStyleSetting.h"
#include "tests/fakes/FakeLocalizedDates.h"
#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/FakeProcesses.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/fakes/NamedImages.h"

namespace halvorn {
namespace {

using Lines = std::vector<std::string>;
constexpr double kBeforeYosemite = 1342;
constexpr double kBeforeMojave = 1638;

class KTUtilitiesDesktopTest : public testing::Test {
 protected:
  FakeApplication& start(const char* name) { return fake.applications.start({.name = name}); }
  KTProcessPointer process(const FakeApplication& application) {
    return fake.processes.processWithSerialNumber(application.number);
  }
  // Another application comes to the front, and everybody hears of it.
  void switchTo(const FakeApplication& application) {
    fake.applications.switchFront(application);
    fake.mainThread.becomeIdle();
  }
  void startWatching() { mainThread.runDelayed(1.0); }

  FakeProcesses fake;
  FakeMainThread mainThread;
  FakeDesktopFacts desktop;
  FakeDefaults defaults;
  FakeInterfaceStyleSetting style;
  NamedImages images;
  FakeSystemFacts systemFacts;
  FakeLocalizedDates dates;
  KTUtilitiesVersions versions{fake.bundles, systemFacts, fake.unicode, dates, fake.log};
  const KTUtilitiesDesktopServices services{.processes = fake.processes,
                                            .notifications = fake.notifications,
                                            .mainThread = mainThread,
                                            .desktop = desktop,
                                            .defaults = defaults,
                                            .interfaceStyle = style,
                                            .system = systemFacts,
                                            .bundles = fake.bundles,
                                            .images = images,
                                            .log = fake.log};
  std::optional<KTUtilitiesDesktop> object{std::in_place, versions, services};
  KTUtilitiesDesktop& utilities = *object;
};

using Initialize = KTUtilitiesDesktopTest;

TEST_F(Initialize, SchedulesTheWatcherInOneSecond) {
  ASSERT_EQ(mainThread.delayed.size(), 1u);
  EXPECT_EQ(mainThread.delayed[0].seconds, 1.0);
}

TEST_F(Initialize, HappensOnce) {
  utilities.initialize();
  utilities.initialize();
  EXPECT_EQ(mainThread.delayed.size(), 1u);
}

// The next object lies where the former one lay: what reached for that would reach it.
TEST_F(Initialize, ThatComesTrueTooLateWatchesForNobody) {
  const auto late = mainThread.delayed.at(0).task;
  object.emplace(versions, services);
  fake.processes.installNotifications();
  FakeApplication& editor = start("Editor");
  late();
  switchTo(editor);
  EXPECT_EQ(desktop.clipboardQuestions, 0);
  mainThread.delayed.at(1).task();
  switchTo(start("Viewer"));
  EXPECT_EQ(desktop.clipboardQuestions, 1);
}

TEST_F(Initialize, TheWatcherHearsOfChangesWhoeverPostsThem) {
  FakeApplication& editor = start("Editor");
  startWatching();
  fake.applications.front = editor.number;
  fake.notifications.enqueueWhenIdle({KTProcessChangeNotification, std::make_shared<int>(), {}});
  fake.mainThread.becomeIdle();
  EXPECT_EQ(desktop.clipboardQuestions, 1);
}

TEST_F(Initialize, BeforeTheSecondIsOverNobodyWatches) {
  FakeApplication& editor = start("Editor");
  fake.processes.installNotifications();
  switchTo(editor);
  desktop.changeClipboard();
  switchTo(start("Viewer"));
  startWatching();
  EXPECT_EQ(utilities.clipboardPublisherProcess(), nullptr);
}

using ClipboardPublisher = KTUtilitiesDesktopTest;

TEST_F(ClipboardPublisher, FirstOfARunIsNobody) {
  fake.applications.front = start("Editor").number;
  EXPECT_EQ(utilities.clipboardPublisherProcess(), nullptr);
}

TEST_F(ClipboardPublisher, IsTheActiveProcessOnceItChangedTheClipboard) {
  FakeApplication& editor = start("Editor");
  fake.applications.front = editor.number;
  (void)utilities.clipboardPublisherProcess();
  desktop.changeClipboard();
  EXPECT_EQ(utilities.clipboardPublisherProcess(), process(editor));
}

TEST_F(ClipboardPublisher, StaysThePublisherAfterASwitch) {
  FakeApplication& editor = start("Editor");
  FakeApplication& viewer = start("Viewer");
  fake.applications.front = editor.number;
  (void)utilities.clipboardPublisherProcess();
  startWatching();
  desktop.changeClipboard();
  switchTo(viewer);
  EXPECT_EQ(utilities.clipboardPublisherProcess(), process(editor));
}

TEST_F(ClipboardPublisher, IsNotReplacedByOneThatChangedNothing) {
  FakeApplication& editor = start("Editor");
  FakeApplication& viewer = start("Viewer");
  fake.applications.front = editor.number;
  (void)utilities.clipboardPublisherProcess();
  startWatching();
  desktop.changeClipboard();
  switchTo(viewer);
  switchTo(start("Player"));
  EXPECT_EQ(utilities.clipboardPublisherProcess(), process(editor));
}

TEST_F(ClipboardPublisher, IsReplacedByTheNextThatChangesIt) {
  FakeApplication& editor = start("Editor");
  FakeApplication& viewer = start("Viewer");
  fake.applications.front = editor.number;
  (void)utilities.clipboardPublisherProcess();
  startWatching();
  desktop.changeClipboard();
  switchTo(viewer);
  desktop.changeClipboard();
  switchTo(editor);
  EXPECT_EQ(utilities.clipboardPublisherProcess(), process(viewer));
}

TEST_F(ClipboardPublisher, IsRightBeforeTheNotificationIsDelivered) {
  FakeApplication& editor = start("Editor");
  FakeApplication& viewer = start("Viewer");
  fake.applications.front = editor.number;
  (void)utilities.clipboardPublisherProcess();
  desktop.changeClipboard();
  fake.applications.front = viewer.number;
  EXPECT_EQ(utilities.clipboardPublisherProcess(), process(editor));
  desktop.changeClipboard();
  EXPECT_EQ(utilities.clipboardPublisherProcess(), process(viewer));
}

TEST_F(ClipboardPublisher, NotificationAboutTheSameFrontChangesNothing) {
  FakeApplication& editor = start("Editor");
  fake.applications.front = editor.number;
  (void)utilities.clipboardPublisherProcess();
  desktop.changeClipboard();
  utilities.processSwitched();
  EXPECT_EQ(utilities.clipboardPublisherProcess(), process(editor));
}

TEST_F(ClipboardPublisher, UnknownFrontIsNobody) {
  fake.applications.front.reset();
  EXPECT_EQ(utilities.clipboardPublisherProcess(), nullptr);
  desktop.changeClipboard();
  EXPECT_EQ(utilities.clipboardPublisherProcess(), nullptr);
}

TEST_F(ClipboardPublisher, SurvivesAFrontThatIsUnknownForAWhile) {
  FakeApplication& editor = start("Editor");
  fake.applications.front = editor.number;
  (void)utilities.clipboardPublisherProcess();
  desktop.changeClipboard();
  fake.applications.front.reset();
  EXPECT_EQ(utilities.clipboardPublisherProcess(), process(editor));
}

TEST_F(ClipboardPublisher, IsKeptAfterItHasEnded) {
  FakeApplication& editor = start("Editor");
  fake.applications.front = editor.number;
  (void)utilities.clipboardPublisherProcess();
  startWatching();
  desktop.changeClipboard();
  const KTProcessPointer expected = process(editor);
  switchTo(start("Viewer"));
  fake.applications.endAndTell(editor);
  fake.mainThread.becomeIdle();
  EXPECT_EQ(utilities.clipboardPublisherProcess(), expected);
}

using ApplicationName = KTUtilitiesDesktopTest;

TEST_F(ApplicationName, IsTheExecutableOfTheMainBundle) {
  fake.bundles.setInfo(fake.bundles.mainBundle, {{"CFBundleExecutable", "Installer"}});
  EXPECT_EQ(utilities.applicationName(), Text("Installer"));
}

TEST_F(ApplicationName, IsEmptyWhenMissing) {
  EXPECT_EQ(utilities.applicationName(), Text(""));
  fake.bundles.setInfo(fake.bundles.mainBundle, {});
  EXPECT_EQ(utilities.applicationName(), Text(""));
}

using FullScreenMode = KTUtilitiesDesktopTest;

TEST_F(FullScreenMode, IsFalseBeforeAnyMenuBarEvent) { EXPECT_FALSE(utilities.fullScreenMode()); }

TEST_F(FullScreenMode, FollowsTheMenuBar) {
  (void)utilities.fullScreenMode();
  desktop.hideMenuBar();
  EXPECT_TRUE(utilities.fullScreenMode());
  desktop.hideMenuBar();
  EXPECT_TRUE(utilities.fullScreenMode());
  desktop.showMenuBar();
  EXPECT_FALSE(utilities.fullScreenMode());
}

TEST_F(FullScreenMode, InstallsTheMonitorOnTheFirstCallOnly) {
  EXPECT_EQ(desktop.menuBarHandlerInstallations, 0);
  (void)utilities.fullScreenMode();
  (void)utilities.fullScreenMode();
  EXPECT_EQ(desktop.menuBarHandlerInstallations, 1);
}

TEST_F(FullScreenMode, StaysFalseAndIsLoggedWhenTheMenuBarCannotBeWatched) {
  desktop.canWatchMenuBar = false;
  EXPECT_FALSE(utilities.fullScreenMode());
  EXPECT_FALSE(utilities.fullScreenMode());
  EXPECT_EQ(fake.log.lines(), Lines{"could not install menu bar visibility event handl)"});
}

TEST_F(FullScreenMode, EventsAreLeftToOtherHandlers) {
  (void)utilities.fullScreenMode();
  EXPECT_EQ(desktop.menuBarHandler({kMenuEventClass, kMenuBarHiddenEvent}), EventAnswer::NotHandled);
  EXPECT_EQ(desktop.menuBarHandler({kMenuEventClass, kMenuBarShownEvent}), EventAnswer::NotHandled);
}

TEST_F(FullScreenMode, EventsOfOtherClassesAndKindsAreIgnored) {
  (void)utilities.fullScreenMode();
  EXPECT_EQ(desktop.menuBarHandler({fourCharCode("wind"), kMenuBarHiddenEvent}), EventAnswer::NotHandled);
  EXPECT_EQ(desktop.menuBarHandler({kMenuEventClass, 5}), EventAnswer::NotHandled);
  EXPECT_FALSE(utilities.fullScreenMode());
}

TEST_F(FullScreenMode, TheKindsOfEventsAre2000And2001) {
  (void)utilities.fullScreenMode();
  const std::pair<int, bool> kinds[] = {
      {2001, true}, {2002, true}, {2000, false}, {1999, false}, {2001, true}};
  for (const auto& [kind, isHidden] : kinds) {
    EXPECT_EQ(desktop.menuBarHandler({fourCharCode("menu"), kind}), EventAnswer::NotHandled);
    EXPECT_EQ(utilities.fullScreenMode(), isHidden) << kind;
  }
}

// The next object lies where the former one lay: what reached for that would reach it.
TEST_F(FullScreenMode, EventsThatComeTooLateFindNobody) {
  (void)utilities.fullScreenMode();
  const auto late = desktop.menuBarHandler;
  object.emplace(versions, services);
  EXPECT_FALSE(object->fullScreenMode());
  EXPECT_EQ(late({kMenuEventClass, kMenuBarHiddenEvent}), EventAnswer::NotHandled);
  EXPECT_FALSE(object->fullScreenMode());
  desktop.hideMenuBar();
  EXPECT_TRUE(object->fullScreenMode());
}

using DarkMenuTheme = KTUtilitiesDesktopTest;

TEST_F(DarkMenuTheme, IsThatOfTheDefaults) {
  defaults.values.insert_or_assign("AppleInterfaceStyle", PropertyValue("Dark"));
  EXPECT_TRUE(utilities.darkMenuTheme());
  defaults.values.insert_or_assign("AppleInterfaceStyle", PropertyValue("dark"));
  EXPECT_FALSE(utilities.darkMenuTheme());
  defaults.values.insert_or_assign("AppleInterfaceStyle", PropertyValue(true));
  EXPECT_FALSE(utilities.darkMenuTheme());
}

TEST_F(DarkMenuTheme, IsFalseWhenNobodyTells) { EXPECT_FALSE(utilities.darkMenuTheme()); }

TEST_F(DarkMenuTheme, IsThatOfTheDesktopWithoutADefault) {
  style.style = "Dark";
  EXPECT_TRUE(utilities.darkMenuTheme());
  style.style = "Sepia";
  EXPECT_FALSE(utilities.darkMenuTheme());
}

TEST_F(DarkMenuTheme, DefaultWinsOverTheDesktop) {
  style.style = "Dark";
  defaults.values.insert_or_assign("AppleInterfaceStyle", PropertyValue("Light"));
  EXPECT_FALSE(utilities.darkMenuTheme());
}

TEST_F(DarkMenuTheme, IsReadAfreshAtEachCall) {
  EXPECT_FALSE(utilities.darkMenuTheme());
  style.change("Dark");
  EXPECT_TRUE(utilities.darkMenuTheme());
  style.change(std::nullopt);
  EXPECT_FALSE(utilities.darkMenuTheme());
}

TEST_F(DarkMenuTheme, IsFalseBeforeItsReleaseAndAsksNobody) {
  systemFacts.framework = kBeforeYosemite;
  defaults.values.insert_or_assign("AppleInterfaceStyle", PropertyValue("Dark"));
  EXPECT_FALSE(utilities.darkMenuTheme());
  EXPECT_EQ(style.installations, 0);
}

TEST_F(DarkMenuTheme, ObserverIsInstalledOnTheFirstCallOnly) {
  EXPECT_EQ(style.installations, 0);
  (void)utilities.darkMenuTheme();
  (void)utilities.darkMenuTheme();
  EXPECT_EQ(style.installations, 1);
}

TEST_F(DarkMenuTheme, ChangeThatComesTooLateIsReadByTheNextObject) {
  (void)utilities.darkMenuTheme();
  object.reset();
  style.change("Dark");
  object.emplace(versions, services);
  EXPECT_TRUE(object->darkMenuTheme());
  EXPECT_EQ(style.installations, 2);
}

using DarkAppearance = KTUtilitiesDesktopTest;

TEST_F(DarkAppearance, IsTheDarkThemeFromItsReleaseOn) {
  EXPECT_FALSE(utilities.darkAppearance());
  style.style = "Dark";
  EXPECT_TRUE(utilities.darkAppearance());
}

TEST_F(DarkAppearance, IsFalseBeforeItsReleaseWhateverTheDefaultsSay) {
  systemFacts.framework = kBeforeMojave;
  defaults.values.insert_or_assign("AppleInterfaceStyle", PropertyValue("Dark"));
  EXPECT_FALSE(utilities.darkAppearance());
  EXPECT_TRUE(utilities.darkMenuTheme());
}

using SystemTintImage = KTUtilitiesDesktopTest;

TEST_F(SystemTintImage, FollowsReleaseThemeAndTint) {
  struct Row {
    double framework;
    const char* style;
    int tint;
    const char* expected;
  };
  const Row rows[] = {
      {1671, "Light", kBlueControlTint, "tintYosBlue"},
      {1671, "Light", kGraphiteControlTint, "tintYosGraphite"},
      {1671, "Dark", kBlueControlTint, "tintYosDarkBlue"},
      {1671, "Dark", kGraphiteControlTint, "tintYosDarkGraphite"},
      {1671, "Dark", 0, "tintYosDarkGraphite"},
      {kBeforeYosemite, "Light", kBlueControlTint, "tintMavBlue"},
      {kBeforeYosemite, "Dark", kGraphiteControlTint, "tintMavGraphite"},
  };
  for (const Row& row : rows) {
    systemFacts.framework = row.framework;
    style.style = row.style;
    desktop.tint = row.tint;
    const auto image = std::dynamic_pointer_cast<const NamedImages::NamedImage>(utilities.systemTintImage());
    ASSERT_TRUE(image);
    EXPECT_EQ(image->name, Text(row.expected));
  }
}

TEST_F(SystemTintImage, TheBlueTintIsOne) {
  for (const auto& [number, expected] :
       {std::pair(0, "Graphite"), {1, "Blue"}, {2, "Graphite"}, {6, "Graphite"}}) {
    desktop.tint = number;
    const auto image = std::dynamic_pointer_cast<const NamedImages::NamedImage>(utilities.systemTintImage());
    ASSERT_TRUE(image);
    EXPECT_EQ(image->name, Text("tintYos") + Text(expected)) << number;
  }
}

TEST_F(SystemTintImage, IsNothingWhenTheApplicationHasNone) {
  images.exist = false;
  EXPECT_EQ(utilities.systemTintImage(), nullptr);
}

using System = KTUtilitiesDesktopTest;

TEST_F(System, DisplayIsNeverZoomed) { EXPECT_FALSE(utilities.displayIsZoomed()); }

TEST_F(System, DebuggingIsWhatTheSystemSays) {
  EXPECT_FALSE(utilities.debugging());
  systemFacts.debuggerIsAttached = true;
  EXPECT_TRUE(utilities.debugging());
}

TEST_F(System, IdleTimeIsInSeconds) {
  desktop.nanoseconds = 1'500'000'000;
  EXPECT_EQ(utilities.idleTime(), 1.5F);
  desktop.nanoseconds = 0;
  EXPECT_EQ(utilities.idleTime(), 0.0F);
  desktop.nanoseconds = 86'400'000'000'000;
  EXPECT_EQ(utilities.idleTime(), 86400.0F);
}

TEST_F(System, IdleTimeThatCannotBeReadIsMinusOne) { EXPECT_EQ(utilities.idleTime(), -1.0F); }

TEST_F(System, FileSystemTypeIsNamedAndLogged) {
  systemFacts.fileSystemTypes["/home/anna"] = "ext4";
  EXPECT_EQ(utilities.fileSystemTypeFor("/home/anna"), Text("ext4"));
  EXPECT_EQ(fake.log.lines(), (Lines{"FS Info /home/anna", "statfs err = 0"}));
}

TEST_F(System, FileSystemTypeOfAMissingPathIsEmptyAndLogged) {
  EXPECT_EQ(utilities.fileSystemTypeFor("/missing"), Text(""));
  EXPECT_EQ(fake.log.lines(), (Lines{"FS Info /missing", "statfs err = -1"}));
}

}  // namespace
}  // namespace halvorn
