// The event loop, alerts, announcements and what is clicked in a document.
#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include "Platform/running/mac/Conversions.h"
#include "Platform/running/mac/MacMainThread.h"
#include "Platform/window/mac/ControlClasses.h"
#include "Platform/window/mac/MacAlerts.h"
#include "Platform/window/mac/MacApplication.h"
#include "Platform/window/mac/MacImages.h"
#include "Platform/window/mac/MacInstallerWindow.h"
#include "Platform/window/mac/MacScreenReader.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/mac/MacLoop.h"
#include "tests/mac/frameworks/FakeMac.h"

namespace halvorn {
namespace {

class MacApplicationTest : public testing::Test {
 protected:
  MacApplicationTest() { fakemac::reset(); }
  static NSApplication* system() { return [NSApplication sharedApplication]; }
  // GNUstep may look for what a task has posted only when the next timer is due, else half a minute later.
  int run() {
    mainThread.performAfter(0.05, [] {});
    return application.run();
  }

  MacPool pool;
  MacMainThread mainThread;
  MacApplication application{mainThread, "Test", "Beenden"};
  using Strings = std::vector<std::string>;
};

TEST_F(MacApplicationTest, TheLoopEndsWhenItIsToldTo) {
  bool isReached = false;
  mainThread.perform([&] {
    isReached = true;
    application.terminate();
  });
  EXPECT_EQ(run(), 0);
  EXPECT_TRUE(isReached);
}

TEST_F(MacApplicationTest, ToldToEndBeforeItBeganItDoesNotBegin) {
  bool isReached = false;
  mainThread.perform([&] { isReached = true; });
  application.terminate();
  EXPECT_EQ(run(), 0);
  EXPECT_FALSE(isReached);
}

TEST_F(MacApplicationTest, TheEndOfTheSessionIsToldBeforeTheLoopEnds) {
  int told = 0;
  application.setSessionEnded([&] { ++told; });
  mainThread.perform([&] { [system() terminate:nil]; });
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(told, 1);
}

TEST_F(MacApplicationTest, TheSystemIsAnsweredThatTheProgramEndsByItself) {
  EXPECT_EQ([[system() delegate] applicationShouldTerminate:system()], NSTerminateCancel);
}

TEST_F(MacApplicationTest, TheMenuEndsTheProgramInThePersonsLanguage) {
  NSMenu* const menu = [[[system() mainMenu] itemAtIndex:0] submenu];
  NSMenuItem* const quit = [menu itemAtIndex:0];
  EXPECT_TRUE([[quit title] isEqual:@"Beenden"]);
  EXPECT_TRUE([[quit keyEquivalent] isEqual:@"q"]);
  EXPECT_TRUE([NSStringFromSelector([quit action]) isEqual:@"terminate:"]);
}

TEST_F(MacApplicationTest, WhatWaitsForAWindowThatNeverComesIsDoneAllTheSame) {
  bool isDone = false;
  application.performWhenShown([&] { isDone = true; });
  EXPECT_TRUE(serveMacLoopUntil([&] { return isDone; }));
}

TEST_F(MacApplicationTest, AWindowThatIsShownAgainRepeatsNothing) {
  int done = 0;
  bool isIdle = false;
  application.performWhenShown([&] { ++done; });
  application.windowIsShown();
  ASSERT_TRUE(serveMacLoopUntil([&] { return done == 1; }, 0.9));
  application.windowIsShown();
  mainThread.performWhenIdle([&] { mainThread.perform([&] { isIdle = true; }); });
  ASSERT_TRUE(serveMacLoopUntil([&] { return isIdle; }));
  EXPECT_EQ(done, 1);
}

TEST_F(MacApplicationTest, OnceTheWindowIsThereNothingWaitsLonger) {
  application.windowIsShown();
  std::vector<int> order;
  application.performWhenShown([&] { order.push_back(1); });
  ASSERT_TRUE(serveMacLoopUntil([&] { return !order.empty(); }, 0.9));
  application.performWhenShown([&] { order.push_back(2); });
  EXPECT_EQ(order, std::vector<int>{1}) << "never inside the call";
  EXPECT_TRUE(serveMacLoopUntil([&] { return order.size() == 2; }, 0.9));
}

TEST_F(MacApplicationTest, TheOptionKeyIsThatOfTheLastPress) {
  const auto press = [](NSUInteger flags) {
    return [NSEvent keyEventWithType:NSKeyDown
                            location:NSZeroPoint
                       modifierFlags:flags
                           timestamp:0
                        windowNumber:0
                             context:nil
                          characters:@"a"
         charactersIgnoringModifiers:@"a"
                           isARepeat:NO
                             keyCode:0];
  };
  [system() sendEvent:press(NSAlternateKeyMask | NSShiftKeyMask)];
  EXPECT_TRUE(application.currentEventHasOptionKey());
  [system() sendEvent:press(NSShiftKeyMask)];
  EXPECT_FALSE(application.currentEventHasOptionKey());
}

class MacAlertsTest : public MacApplicationTest {
 protected:
  MacAlertsTest() {
    auto loaded = MacInstallerWindow::load(KT_SOURCE_DIR "/Resources/InstallerWindow.xml", strings, images,
                                           application);
    window = std::move(loaded.window);
  }
  FakeLocalizedStrings strings;
  MacImages images{KT_SOURCE_DIR "/Resources"};
  std::unique_ptr<MacInstallerWindow> window;
};

TEST_F(MacAlertsTest, TextsAndButtonsAreThoseOfTheAlertInTheirOrder) {
  MacAlerts(*window).beginSheet({.style = AlertDescription::Style::Informational,
                                 .messageText = "It cannot be installed",
                                 .informativeText = "Größe",
                                 .buttonTitles = {"Quit", "Visit Archive"},
                                 .icon = images.imageNamed("AlertStopIcon")},
                                [](int) {});
  EXPECT_EQ(fakemac::sheetTexts(), (Strings{"It cannot be installed", "Größe", "Quit", "Visit Archive"}));
  fakemac::endSheet(0);
}

TEST_F(MacAlertsTest, TheEndOfASheetMayShowAnother) {
  MacAlerts alerts(*window);
  std::vector<int> codes;
  const AlertDescription alert{.buttonTitles = {"OK"}};
  alerts.beginSheet(alert, [&](int code) {
    codes.push_back(code);
    alerts.beginSheet(alert, [&](int next) { codes.push_back(next); });
  });
  fakemac::endSheet(0);
  EXPECT_TRUE(fakemac::sheetIsUp());
  fakemac::endSheet(-1);
  EXPECT_EQ(codes, (std::vector<int>{1000, 1000}));
}

TEST_F(MacApplicationTest, AnAnnouncementIsPostedForTheProgram) {
  MacScreenReader reader;
  reader.announce("Größe was installed");
  reader.announce("");
  EXPECT_EQ(fakemac::state().announcements, Strings{"Größe was installed"});
}

TEST_F(MacApplicationTest, OnlyWebAndMailAddressesAreOpenedFromADocument) {
  Strings opened;
  KTDocumentView* const view =
      [[[KTDocumentView alloc] initWithFrame:NSMakeRect(0, 0, 100, 100)] autorelease];
  [view setOpenLink:[&](const Text& url) { opened.push_back(url.bytes()); }];
  for (NSString* const address : {@"https://example.com/a", @"file:///etc/passwd", @"mailto:a@example.com",
                                  @"javascript:1", @"http://example.com"}) {
    EXPECT_TRUE([view textView:view clickedOnLink:address atIndex:0]) << "nothing else opens it";
  }
  EXPECT_TRUE([view textView:view clickedOnLink:[NSURL URLWithString:@"https://example.com/b"] atIndex:0]);
  EXPECT_EQ(opened, (Strings{"https://example.com/a", "mailto:a@example.com", "http://example.com",
                             "https://example.com/b"}));
}

}  // namespace
}  // namespace halvorn
