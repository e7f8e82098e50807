// What is asked of the registry, of Carbon, of Gestalt and the kernel, and what is given back.
#include <unistd.h>

#include "Platform/color/mac/MacInterfaceStyleSetting.h"
#include "Platform/session/mac/MacDesktopFacts.h"
#include "Platform/session/mac/MacSystemFacts.h"
#include "tests/mac/MacTest.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class MacFacts : public MacTest {
 protected:
  MacDesktopFacts desktop;
  MacSystemFacts system;
};

TEST_F(MacFacts, IdleTimeIsTheRegistrysInNanoseconds) {
  EXPECT_EQ(desktop.nanosecondsSinceLastInput(), 1'500'000'000);
  fakemac::state().idleNanoseconds = 7'000'000'000'000;
  EXPECT_EQ(desktop.nanosecondsSinceLastInput(), 7'000'000'000'000);
  fakemac::state().idleNanoseconds = 0;
  EXPECT_EQ(desktop.nanosecondsSinceLastInput(), 0);
}

TEST_F(MacFacts, IdleTimeIsUnknownWhereverTheWayThereEnds) {
  const auto unknown = [&](const char* reason) {
    EXPECT_EQ(desktop.nanosecondsSinceLastInput(), std::nullopt) << reason;
    EXPECT_EQ(fakemac::liveObjects(), 0) << reason;
    fakemac::reset();
  };
  fakemac::state().registryFails = true;
  unknown("no registry");
  fakemac::state().hasInputService = false;
  unknown("no service");
  fakemac::state().propertiesFail = true;
  unknown("no properties");
  fakemac::state().idleNanoseconds.reset();
  unknown("no such property");
  fakemac::state().idleIsText = true;
  unknown("a property that is no number");
}

TEST_F(MacFacts, MenuBarEventsGoOnAsTheHandlerSays) {
  MacDesktopFacts facts;
  EventAnswer answer = EventAnswer::NotHandled;
  ASSERT_TRUE(facts.installMenuBarHandler([&](const MenuBarEvent&) { return answer; }));
  EXPECT_EQ(fakemac::deliver(kMenuEventClass, 2001), -9874);
  answer = EventAnswer::Handled;
  EXPECT_EQ(fakemac::deliver(kMenuEventClass, 2000), 0);
  EXPECT_EQ(fakemac::deliver(kMenuEventClass, 2002), -9874) << "another kind";
  EXPECT_EQ(fakemac::deliver(fourCharCode("appl"), 2000), -9874) << "another class";
}

TEST_F(MacFacts, AHandlerThatCannotBeInstalledIsGivenBack) {
  fakemac::state().refusesHandlers = true;
  EXPECT_FALSE(desktop.installMenuBarHandler([](const MenuBarEvent&) { return EventAnswer::NotHandled; }));
  EXPECT_EQ(fakemac::liveObjects(), 0);
}

TEST_F(MacFacts, AnExceptionOfThePasteboardIsUnknown) {
  fakemac::state().raisesExceptions = true;
  EXPECT_EQ(desktop.clipboardChangeCount(), std::nullopt);
}

TEST_F(MacFacts, TheTintIsTheSystemsNumber) {
  EXPECT_EQ(desktop.controlTint(), kBlueControlTint);
  fakemac::state().controlTint = 6;
  EXPECT_EQ(desktop.controlTint(), kGraphiteControlTint);
}

TEST_F(MacFacts, VersionsAreThoseOfGestaltEachByItself) {
  EXPECT_EQ(system.majorVersion(), 10);
  EXPECT_EQ(system.minorVersion(), 13);
  EXPECT_EQ(system.bugfixVersion(), 6);
  EXPECT_EQ(system.packedVersion(), 0x1096);
  fakemac::state().gestalt.erase(0x73797332);
  EXPECT_EQ(system.majorVersion(), 10);
  EXPECT_EQ(system.minorVersion(), std::nullopt);
  fakemac::state().gestalt.clear();
  EXPECT_EQ(system.majorVersion(), std::nullopt);
  EXPECT_EQ(system.packedVersion(), std::nullopt);
  EXPECT_GT(system.frameworkVersion(), 0);
}

TEST_F(MacFacts, ADebuggerIsSeenInTheKernelsRecordOfThisProcess) {
  fakemac::state().isDebugged = true;
  EXPECT_FALSE(system.isDebuggerAttached()) << "the kernel has no record";
  fakemac::start({.name = "Test", .pid = ::getpid()});
  EXPECT_TRUE(system.isDebuggerAttached());
  fakemac::state().isDebugged = false;
  EXPECT_FALSE(system.isDebuggerAttached());
}

TEST_F(MacFacts, AFileSystemHasANameAndAMissingPathAStatus) {
  EXPECT_EQ(system.fileSystemOf("/").status, 0);
  EXPECT_EQ(system.fileSystemOf("/").typeName, Text("apfs"));
  EXPECT_LT(system.fileSystemOf("/no/such/file").status, 0);
  EXPECT_EQ(system.fileSystemOf("/no/such/file").typeName, Text());
}

TEST_F(MacFacts, ThemeChangesAreToldToTheLastHandlerAlone) {
  int first = 0;
  int second = 0;
  {
    MacInterfaceStyleSetting style;
    style.installChangeHandler([&] { ++first; });
    style.installChangeHandler([&] { ++second; });
    fakemac::postDistributed("AppleInterfaceThemeChangedNotification");
    fakemac::postDistributed("AppleColorPreferencesChangedNotification");
  }
  fakemac::postDistributed("AppleInterfaceThemeChangedNotification");
  EXPECT_EQ(first, 0);
  EXPECT_EQ(second, 1);
}

}  // namespace
}  // namespace halvorn
