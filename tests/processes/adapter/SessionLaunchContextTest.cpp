#include "Platform/processes/linux/proc/SessionLaunchContext.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/fakes/FakeApplications.h"
#include "tests/fakes/FakeClock.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class LaunchContextOfASession : public testing::Test {
 protected:
  static constexpr std::int32_t parent = 4321;

  void writeUnit(const std::string& process, const std::string& line) const {
    fs::create_directories(folder.path() / process);
    std::ofstream(folder.path() / process / "cgroup") << line << "\n";
  }
  OptionalText creator(const Environment& environment = Environment()) {
    const SessionLaunchContext context(applications, environment, folder.path().string(),
                                       [] { return parent; });
    const auto information = context.launcherInformation();
    return information ? textForKey(*information, "FileCreator") : std::nullopt;
  }

  TemporaryFolder folder;
  FakeClock clock;
  FakeApplications applications{clock};
};

TEST_F(LaunchContextOfASession, CreatorIsTheSignatureOfTheParent) {
  applications.start({.name = "Launcher", .signature = fourCharCode("LNCH"), .pid = parent});
  EXPECT_EQ(creator(), Text("LNCH"));
}

TEST_F(LaunchContextOfASession, ParentThatIsNoApplicationIsUnknown) { EXPECT_EQ(creator(), std::nullopt); }

TEST_F(LaunchContextOfASession, ParentWhoseInformationIsMissingIsUnknown) {
  applications.start({.name = "Launcher", .pid = parent, .informationFails = true});
  EXPECT_EQ(creator(), std::nullopt);
}

TEST_F(LaunchContextOfASession, WhatTheParentSaysOfItselfIsThereToo) {
  applications.start({.name = "Launcher", .pid = parent, .identifier = "com.example.launcher"});
  const SessionLaunchContext context(applications, Environment(), folder.path().string(),
                                     [] { return parent; });
  const auto information = context.launcherInformation();
  ASSERT_TRUE(information);
  EXPECT_EQ(textForKey(*information, "CFBundleIdentifier"), Text("com.example.launcher"));
}

// What the library's own opener starts is no child of the launcher; the parent is the system's first process.
class LaunchContextOfASessionWithoutAParent : public LaunchContextOfASession {
 protected:
  static constexpr std::int32_t launcher = 4400;
  static constexpr std::int32_t own = 4500;

  LaunchContextOfASessionWithoutAParent() {
    applications.start({.name = "Launcher", .signature = fourCharCode("LNCH"), .pid = launcher});
    applications.current = applications.start({.name = "Launched", .pid = own}).number;
  }
  OptionalText creatorWithMark(const std::string& mark) {
    return creator(Environment({{"HALVORN_LAUNCHED_BY", mark}}));
  }
};

TEST_F(LaunchContextOfASessionWithoutAParent, TheLibrarysOwnOpenerIsKnownByItsMark) {
  EXPECT_EQ(creatorWithMark("0000004500 4400"), Text("LNCH"));
}

TEST_F(LaunchContextOfASessionWithoutAParent, AMarkInheritedFromTheProgramThatWasLaunchedTellsNothing) {
  EXPECT_EQ(creatorWithMark("0000004499 4400"), std::nullopt);
}

TEST_F(LaunchContextOfASessionWithoutAParent, WhoeverHasTheIdOfALauncherThatIsGoneIsNotTheLauncher) {
  applications.start({.name = "Later", .signature = fourCharCode("LATE"), .pid = 4600});
  EXPECT_EQ(creatorWithMark("0000004500 4600"), std::nullopt);
  EXPECT_EQ(creatorWithMark("0000004500 4700"), std::nullopt);
}

TEST_F(LaunchContextOfASessionWithoutAParent, AMarkThatCannotBeReadTellsNothing) {
  for (const char* mark : {"", "x", "0000004500", "0000004500 x", "-1 -1", "99999999999999999999 4400"}) {
    EXPECT_EQ(creatorWithMark(mark), std::nullopt) << mark;
  }
}

TEST_F(LaunchContextOfASession, SessionManagerIsTheLoginWindow) {
  const std::string sockets = "local/host:@/tmp/.ICE-unix/4321,unix/host:/tmp/.ICE-unix/";
  EXPECT_EQ(creator(Environment(Environment::Variables{{"SESSION_MANAGER", sockets + "4321"}})),
            Text("lgnw"));
  EXPECT_EQ(creator(Environment(Environment::Variables{{"SESSION_MANAGER", sockets + "43210"}})),
            std::nullopt);
  EXPECT_EQ(creator(Environment(Environment::Variables{{"SESSION_MANAGER", ""}})), std::nullopt);
}

TEST_F(LaunchContextOfASession, UnitOfAnAutostartEntryIsTheLoginWindow) {
  writeUnit("self", "0::/user.slice/user-1000.slice/user@1000.service/app.slice/app-foo@autostart.service");
  writeUnit(std::to_string(parent), "0::/user.slice/user-1000.slice/user@1000.service/init.scope");
  EXPECT_EQ(creator(), Text("lgnw"));
}

TEST_F(LaunchContextOfASession, ChildOfAnAutostartedProgramWasNotStartedAtLogin) {
  const std::string unit = "0::/user.slice/user@1000.service/app.slice/app-foo@autostart.service";
  writeUnit("self", unit);
  writeUnit(std::to_string(parent), unit);
  applications.start({.name = "Foo", .signature = fourCharCode("FooA"), .pid = parent});
  EXPECT_EQ(creator(), Text("FooA"));
}

TEST_F(LaunchContextOfASession, OtherUnitsAreNoLogin) {
  writeUnit("self", "0::/user.slice/user@1000.service/app.slice/app-gnome-foo-123.scope");
  EXPECT_EQ(creator(), std::nullopt);
}

}  // namespace
}  // namespace halvorn
