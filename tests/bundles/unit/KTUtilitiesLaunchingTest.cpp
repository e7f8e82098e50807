#include "KTStuff/KTClasses/KTUtilitiesLaunching.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "tests/fakes/FakeDefaults.h"
#include "tests/fakes/FakeDesktopFacts.h"
#include "tests/fakes/FakeInterfaceStyleSetting.h"
#include "tests/fakes/FakeLaunchContext.h"
#include "tests/fakes/FakeLocalizedDates.h"
#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/FakeProcesses.h"
#include "tests/fakes/FakeSearchPaths.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/fakes/NamedImages.h"

namespace halvorn {
namespace {

using Lines = std::vector<std::string>;

class KTUtilitiesLaunchingTest : public testing::Test {
 protected:
  void runFrom(const char* bundlePath) { fake.bundles.mainBundle = bundlePath; }

  FakeProcesses fake;
  FakeMainThread mainThread;
  FakeDesktopFacts desktopFacts;
  FakeDefaults defaults;
  FakeInterfaceStyleSetting style;
  NamedImages images;
  FakeSystemFacts systemFacts;
  FakeLocalizedDates dates;
  FakeSearchPaths searchPaths;
  FakeLaunchContext launchContext;
  KTUtilitiesVersions versions{fake.bundles, systemFacts, fake.unicode, dates, fake.log};
  KTUtilitiesDesktop desktop{versions,
                             {.processes = fake.processes,
                              .notifications = fake.notifications,
                              .mainThread = mainThread,
                              .desktop = desktopFacts,
                              .defaults = defaults,
                              .interfaceStyle = style,
                              .system = systemFacts,
                              .bundles = fake.bundles,
                              .images = images,
                              .log = fake.log}};
  KTUtilitiesLaunching utilities{desktop,
                                 {.processes = fake.processes,
                                  .bundles = fake.bundles,
                                  .files = fake.files,
                                  .searchPaths = searchPaths,
                                  .items = fake.items,
                                  .launchContext = launchContext,
                                  .tasks = fake.tasks,
                                  .clock = fake.clock,
                                  .log = fake.log}};
};

using DistributionDisk = KTUtilitiesLaunchingTest;

TEST_F(DistributionDisk, IsAVolumeWithALaunchLock) {
  runFrom("/Volumes/Foo/Foo.app");
  fake.files.addFile("/Volumes/Foo/launchlock");
  EXPECT_TRUE(utilities.runningFromDistributionDisk());
  EXPECT_TRUE(utilities.installationMode());
}

TEST_F(DistributionDisk, BundleDeepInsideTheVolumeCountsToo) {
  runFrom("/Volumes/Foo 2.1/Tools/Deep/Foo.app");
  fake.files.addFile("/Volumes/Foo 2.1/launchlock");
  EXPECT_TRUE(utilities.runningFromDistributionDisk());
}

TEST_F(DistributionDisk, VolumeWithoutALaunchLockIsNone) {
  runFrom("/Volumes/Foo/Foo.app");
  EXPECT_FALSE(utilities.runningFromDistributionDisk());
  EXPECT_FALSE(utilities.installationMode());
}

TEST_F(DistributionDisk, LaunchLockOfAnotherVolumeDoesNotCount) {
  runFrom("/Volumes/Foo/Foo.app");
  fake.files.addFile("/Volumes/Bar/launchlock");
  fake.files.addFile("/Volumes/Foo/Foo.app/launchlock");
  EXPECT_FALSE(utilities.runningFromDistributionDisk());
}

TEST_F(DistributionDisk, PathWithFewerThanThreeComponentsIsNone) {
  fake.files.addFile("/Volumes/launchlock");
  for (const char* const path : {"/Volumes", "/Volumes/", "/", ""}) {
    runFrom(path);
    EXPECT_FALSE(utilities.runningFromDistributionDisk()) << path;
    EXPECT_FALSE(utilities.installationMode()) << path;
  }
}

TEST_F(DistributionDisk, PathElsewhereIsNone) {
  fake.files.addFile("/Applications/Foo/launchlock");
  fake.files.addFile("/Volumes2/Foo/launchlock");
  for (const char* const path :
       {"/Applications/Foo/Foo.app", "/Volumes2/Foo/Foo.app", "Volumes/Foo/Foo.app"}) {
    runFrom(path);
    EXPECT_FALSE(utilities.runningFromDistributionDisk()) << path;
  }
}

TEST_F(DistributionDisk, LiesInAnyFolderOfVolumes) {
  searchPaths.volumes = {"/Volumes", "/media/anna"};
  runFrom("/media/anna/Foo/Foo.app");
  EXPECT_FALSE(utilities.runningFromDistributionDisk());
  fake.files.addFile("/media/anna/Foo/launchlock");
  EXPECT_TRUE(utilities.runningFromDistributionDisk());
}

using InstallationMode = KTUtilitiesLaunchingTest;

TEST_F(InstallationMode, HoldsForATranslocatedBundle) {
  runFrom("/private/var/folders/x/AppTranslocation/1234/d/Foo.app");
  EXPECT_TRUE(utilities.installationMode());
}

TEST_F(InstallationMode, HoldsForABundleInATemporaryFolder) {
  runFrom("/private/var/tmp/Foo.app");
  EXPECT_TRUE(utilities.installationMode());
  runFrom("/var/tmp/x/Foo.app");
  EXPECT_TRUE(utilities.installationMode());
}

TEST_F(InstallationMode, ComparesTheCase) {
  runFrom("/x/apptranslocation/Foo.app");
  EXPECT_FALSE(utilities.installationMode());
  runFrom("/Var/Tmp/Foo.app");
  EXPECT_FALSE(utilities.installationMode());
}

TEST_F(InstallationMode, DoesNotHoldForAnInstalledBundle) {
  runFrom("/Applications/Foo.app");
  EXPECT_FALSE(utilities.installationMode());
}

using ResolvedAlias = KTUtilitiesLaunchingTest;

TEST_F(ResolvedAlias, IsWhereItLeads) {
  fake.items.aliasTargets["/home/anna/Foo alias"] = "/Applications/Foo.app";
  EXPECT_EQ(utilities.resolvedAlias("/home/anna/Foo alias"), Text("/Applications/Foo.app"));
}

TEST_F(ResolvedAlias, OfAnythingElseIsThePathItself) {
  const Text path = "/home/anna/plain.txt";
  EXPECT_TRUE(utilities.resolvedAlias(path).isSameObject(path));
}

using WasLaunched = KTUtilitiesLaunchingTest;

TEST_F(WasLaunched, ByTheProcessWithThatCreator) {
  launchContext.launcher = PropertyDictionary{{"FileCreator", "MACS"}};
  EXPECT_TRUE(utilities.wasLaunchedByProcess("MACS"));
  EXPECT_FALSE(utilities.wasLaunchedByProcess("macs"));
  EXPECT_FALSE(utilities.wasLaunchedByProcess("MAC"));
  EXPECT_FALSE(utilities.wasLaunchedAsLoginItem());
}

TEST_F(WasLaunched, AsLoginItemWhenTheLoginWindowDidIt) {
  launchContext.launcher = PropertyDictionary{{"FileCreator", "lgnw"}};
  EXPECT_TRUE(utilities.wasLaunchedAsLoginItem());
}

TEST_F(WasLaunched, ByNobodyWhenTheLauncherIsUnknown) {
  EXPECT_FALSE(utilities.wasLaunchedByProcess("MACS"));
  EXPECT_FALSE(utilities.wasLaunchedByProcess(""));
  EXPECT_FALSE(utilities.wasLaunchedAsLoginItem());
}

TEST_F(WasLaunched, ByNobodyWhenTheLauncherHasNoCreator) {
  launchContext.launcher =
      PropertyDictionary{{"CFBundleIdentifier", "com.example.shell"}, {"FileCreator", 5}};
  EXPECT_FALSE(utilities.wasLaunchedByProcess(""));
  EXPECT_FALSE(utilities.wasLaunchedByProcess("5"));
}

using OpenFile = KTUtilitiesLaunchingTest;

TEST_F(OpenFile, StartsTheOpenToolWithThePathAlone) {
  utilities.openFile("/home/anna/a b.txt");
  ASSERT_EQ(fake.tasks.forgotten.size(), 1u);
  EXPECT_EQ(fake.tasks.forgotten[0].executable, Text("/usr/bin/open"));
  EXPECT_EQ(fake.tasks.forgotten[0].arguments, std::vector<Text>{"/home/anna/a b.txt"});
}

// A desktop with an editor in front, and a helper that takes the front some time after it was opened.
class LaunchMicro : public KTUtilitiesLaunchingTest {
 protected:
  LaunchMicro() {
    fake.applications.front = editor.number;
    fake.tasks.onLaunchAndForget = [this] { opensAt_ = fake.clock.monotonicSeconds(); };
    fake.clock.onAdvance = [this](double now) {
      if (opensAt_ && secondsToFront && now >= *opensAt_ + *secondsToFront) {
        opensAt_.reset();
        fake.applications.front = micro.number;
      }
    };
  }
  // How often somebody slept a millisecond.
  std::ptrdiff_t polls() { return std::count(fake.clock.slept.begin(), fake.clock.slept.end(), 0.001); }

  FakeApplication& editor = fake.applications.start({.name = "Editor"});
  FakeApplication& micro = fake.applications.start({.name = "Micro"});
  std::optional<double> secondsToFront = 0.0295;
  Text microPath = fake.bundles.addResource(fake.bundles.mainBundle, "Micro.app");

 private:
  std::optional<double> opensAt_;
};

TEST_F(LaunchMicro, OpensTheHelperOfTheMainBundle) {
  utilities.launchMicro(LeaveFocus::No);
  ASSERT_EQ(fake.tasks.forgotten.size(), 1u);
  EXPECT_EQ(fake.tasks.forgotten[0].executable, Text("/usr/bin/open"));
  EXPECT_EQ(fake.tasks.forgotten[0].arguments, std::vector<Text>{microPath});
}

TEST_F(LaunchMicro, GivesTheFocusBackAndLogsThePolls) {
  utilities.launchMicro(LeaveFocus::No);
  EXPECT_EQ(fake.applications.front, editor.number);
  EXPECT_EQ(editor.requests, (Lines{"wake", "wake", "front window", "front window", "wake"}));
  EXPECT_EQ(fake.log.lines(), Lines{"wait count (Micro) = 30"});
  EXPECT_EQ(polls(), 30);
}

TEST_F(LaunchMicro, ThePollsAreLoggedBeforeTheFocusSteps) {
  Lines requestsWhenLogged = {"never logged"};
  fake.log.onLine = [&] { requestsWhenLogged = editor.requests; };
  utilities.launchMicro(LeaveFocus::No);
  EXPECT_EQ(requestsWhenLogged, Lines{});
  EXPECT_EQ(editor.requests.size(), 5u);
}

TEST_F(LaunchMicro, WakesTwiceOneMicrosecondApart) {
  utilities.launchMicro(LeaveFocus::No);
  EXPECT_EQ(std::count(fake.clock.slept.begin(), fake.clock.slept.end(), 1e-6), 1);
}

TEST_F(LaunchMicro, LeavingTheFocusDoesNotAskForItBeforeTheEnd) {
  utilities.launchMicro(LeaveFocus::Yes);
  EXPECT_EQ(editor.requests, (Lines{"wake", "wake", "front window", "wake"}));
  EXPECT_EQ(polls(), 30 + 500) << "the second wait goes to its limit";
  EXPECT_EQ(fake.log.lines(), Lines{"wait count (Micro) = 30"});
}

TEST_F(LaunchMicro, HelperThatNeverComesGives500AndTheFocusStepsRunAnyway) {
  secondsToFront.reset();
  utilities.launchMicro(LeaveFocus::No);
  EXPECT_EQ(fake.log.lines(), Lines{"wait count (Micro) = 500"});
  EXPECT_EQ(editor.requests, (Lines{"wake", "wake", "front window", "front window", "wake"}));
  EXPECT_EQ(polls(), 500);
}

TEST_F(LaunchMicro, HelperThatIsThereAtOnceNeedsNoPoll) {
  secondsToFront = 0;
  fake.tasks.onLaunchAndForget = [this] { fake.applications.front = micro.number; };
  utilities.launchMicro(LeaveFocus::No);
  EXPECT_EQ(fake.log.lines(), Lines{"wait count (Micro) = 0"});
}

TEST_F(LaunchMicro, InFullScreenModeReturnsAtOnce) {
  (void)desktop.fullScreenMode();
  desktopFacts.hideMenuBar();
  utilities.launchMicro(LeaveFocus::No);
  EXPECT_TRUE(fake.tasks.forgotten.empty());
  EXPECT_TRUE(fake.log.lines().empty());
  EXPECT_TRUE(editor.requests.empty());
  EXPECT_TRUE(fake.clock.slept.empty());
}

TEST_F(LaunchMicro, WithoutTheResourceIsLoggedAndTheFrontIsSetAllTheSame) {
  fake.bundles.bundles.clear();
  utilities.launchMicro(LeaveFocus::No);
  EXPECT_EQ(fake.log.lines(), Lines{"** Error while running Micro: the application has no such resource"});
  EXPECT_TRUE(fake.tasks.forgotten.empty());
  EXPECT_EQ(editor.requests, (Lines{"front window", "wake"}));
}

TEST_F(LaunchMicro, ExceptionIsLoggedAndTheFrontIsSetAllTheSame) {
  fake.tasks.onLaunchAndForget = [] { throw std::runtime_error("no more processes"); };
  utilities.launchMicro(LeaveFocus::No);
  EXPECT_EQ(fake.log.lines(), Lines{"** Error while running Micro: no more processes"});
  EXPECT_EQ(editor.requests, (Lines{"front window", "wake"}));
}

TEST_F(LaunchMicro, ExceptionOfAnotherKindIsPassedOnAfterTheFrontIsSet) {
  struct Other {};
  fake.tasks.onLaunchAndForget = [] { throw Other(); };
  EXPECT_THROW(utilities.launchMicro(LeaveFocus::No), Other);
  EXPECT_TRUE(fake.log.lines().empty());
  EXPECT_EQ(editor.requests, (Lines{"front window", "wake"}));
}

TEST_F(LaunchMicro, WithNobodyInFrontGivesTheFrontToNobody) {
  fake.applications.front.reset();
  utilities.launchMicro(LeaveFocus::No);
  EXPECT_EQ(fake.log.lines(), Lines{"wait count (Micro) = 30"});
  EXPECT_TRUE(editor.requests.empty());
}

TEST_F(LaunchMicro, OnADesktopThatTellsOfNoFrontStopsAfterItsPolls) {
  fake.applications.front.reset();
  secondsToFront.reset();
  utilities.launchMicro(LeaveFocus::No);
  EXPECT_EQ(fake.log.lines(), Lines{"wait count (Micro) = 500"});
  EXPECT_EQ(polls(), 500);
}

}  // namespace
}  // namespace halvorn
