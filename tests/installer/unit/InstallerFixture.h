// The whole installer on fakes: a product on a disk image, a desktop, and the
// controller with everything under it.
//
//   auto& controller = start({"-sourcePath", product});   // "/installer" stands in front by itself
//   window.installButton.click();
//   workers.runAll();       // the install worker
//   mainThread.runAll();    // what it posted
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Core/ByteCounter.h"
#include "KTStuff/CocoaExtensions/SoundExtensions.h"
#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "Sources/CompletionSound.h"
#include "Sources/DestinationChoice.h"
#include "Sources/InstallerWinController.h"
#include "tests/fakes/FakeAppearances.h"
#include "tests/fakes/FakeAuthorizer.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeDefaults.h"
#include "tests/fakes/FakeDesktopMessages.h"
#include "tests/fakes/FakeFileChangeNotices.h"
#include "tests/fakes/FakeInterfaceStyleSetting.h"
#include "tests/fakes/FakeItemClaims.h"
#include "tests/fakes/FakeItemSizes.h"
#include "tests/fakes/FakeLocalizedDates.h"
#include "tests/fakes/FakeLocalizedSizes.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/FakeProcesses.h"
#include "tests/fakes/FakeSearchPaths.h"
#include "tests/fakes/FakeSounds.h"
#include "tests/fakes/FakeStandardStreams.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/fakes/FakeTrash.h"
#include "tests/fakes/FakeWindow.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/TextPrinting.h"
#include "train/InstallFunction.h"

namespace halvorn {

class InstallerFixture : public ::testing::Test {
 protected:
  enum class Stubborn { QuitsAtSecondRequest, Forever };

  // Made and ended in one place: what the fakes are made of is compiled there, and not in every test.
  InstallerFixture();
  ~InstallerFixture() override;

  void SetUp() override;

  // A new installer with these arguments, start-up done. Earlier ones stay alive until the test ends.
  InstallerWinController& start(std::vector<Text> arguments);

  // A worker of its own, without window.
  InstallWorker& makeWorker(const std::vector<std::pair<Text, Text>>& arguments = {});

  FakeApplication& addRunning(const char* name, const char (&code)[5], Stubborn stubborn);

  void addBundleIcon(const char* fileName) {
    images.files[bundles.addResource(product, fileName)] = std::make_shared<FakeImage>(fileName);
  }

  [[nodiscard]] bool logHas(const std::string& line) const {
    const auto lines = log.lines();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }
  [[nodiscard]] bool logHasPrefix(const std::string& prefix) const {
    const auto lines = log.lines();
    return std::any_of(lines.begin(), lines.end(),
                       [&](const auto& line) { return line.starts_with(prefix); });
  }
  [[nodiscard]] std::vector<std::string> linesWith(const std::string& part) const {
    auto lines = log.lines();
    std::erase_if(lines, [&](const auto& line) { return line.find(part) == std::string::npos; });
    return lines;
  }
  [[nodiscard]] int doneSoundsPlayed() {
    workers.runAll();
    return static_cast<int>(sounds.callsOf("play Done").size());
  }
  [[nodiscard]] bool installerDid(const std::string& request) const {
    const auto& requests = processes.applications.requestsOfInstaller();
    return std::find(requests.begin(), requests.end(), request) != requests.end();
  }
  [[nodiscard]] bool installerCameToFront() const { return installerDid("front"); }
  [[nodiscard]] bool installerFrontWindowCameToFront() const { return installerDid("front window"); }

  const Text product = "/Volumes/NAS/Foo.app";
  Text toolPath;

  FakeClock clock;
  RecordingLog log;
  FakeProcesses processes{clock, log};
  FakeFileManager& files = processes.files;
  FakeBundles& bundles = processes.bundles;
  FakeTrash trash{files};
  FakeFileChangeNotices notices;
  FakeWorkspace workspace;
  FakeLocalizedStrings strings;
  FakeLocalizedDates dates;
  FakeDefaults defaults;
  FakeSystemFacts system;
  FakeStandardStreams streams;
  FakeSearchPaths searchPaths;
  FakeAuthorizer authorizer;
  FakeMainThread mainThread;
  FakeWorkers workers;
  Departure departure;
  FakeWindow window;
  FakeAppearances appearances;
  FakeInterfaceStyleSetting interfaceStyle;
  FakeHostApplication application;
  FakeAlerts alerts;
  FakeImages images;
  FakeScreenReader screenReader;
  FakeDesktopMessages messages;
  FakeNotices desktopNotices;
  ByteCounter copied;
  FakeItemSizes itemSizes;
  FakeLocalizedSizes sizes;
  // Without it each is alone in the world.
  bool installersKnowEachOther = false;
  FakeItemClaims::Claims claims;
  FakeAudioDevices devices;
  FakeSounds sounds{devices};
  LaunchInstalled launch = LaunchInstalled::Yes;

 private:
  struct Installer {
    Installer(InstallerFixture& fixture, std::vector<Text> argumentList);

    InstallServices install;
    std::unique_ptr<FakeItemClaims> claims;
    KTUtilitiesVersions versions;
    KTUtilitiesTheme theme;
    KTDynamicColorClass colors;
    DestinationChoice destinations;
    SoundExtensions soundExtensions;
    CompletionSound sound;
    InstallerServices services;
    InstallerWinController controller;

    ArgumentDictionary ownArguments;
    std::unique_ptr<InstallWorker> ownWorker;
  };

  std::vector<std::unique_ptr<Installer>> installers_;
};

}  // namespace halvorn
