// Bundles, settings, texts and the workspace: the same cases against what a test writes down and against what lies on a disk.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/LinuxDefaults.h"
#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/bundles/linux/launching/LinuxWorkspace.h"
#include "Platform/session/linux/XdgFolders.h"
#include "Platform/session/linux/XdgSearchPaths.h"
#include "tests/fakes/FakeBundles.h"
#include "tests/fakes/FakeDefaults.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/fakes/FakeSearchPaths.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

// A desktop with one bundle, Foo.app (CFBundleSignature FOOO, resource Foo.icns, program Foo), a German table
// with one text, settings of two domains, a login item of the bundle and one whose program is gone.
class FakeWorld {
 public:
  FakeWorld() {
    bundles_.setInfo(bundle(), {{"CFBundleExecutable", "Foo"}, {"CFBundleSignature", "FOOO"}});
    bundles_.addResource(bundle(), "Foo.icns");
    bundles_.propertyLists["/home/anna/.config/com.example.other.plist"] = {{"volume", 0.5}};
    bundles_.bundles[bundle()].executable = bundle() + Text("/Contents/Linux/Foo");
    strings_.translations["Quit"] = "Beenden";
    defaults_.values = {{"nosound", true}, {"count", 0}};
    defaults_.domains["com.example.other"] = {{"volume", 0.5}};
    workspace_.loginItemPaths = {bundle(), std::nullopt};
  }
  Text bundle() const { return "/home/anna/Foo.app"; }
  Text home() const { return "/home/anna"; }
  const Bundles& bundles() { return bundles_; }
  const LocalizedStrings& strings() { return strings_; }
  const Defaults& defaults() { return defaults_; }
  const SearchPaths& searchPaths() { return searchPaths_; }
  Workspace& workspace() { return workspace_; }

 private:
  FakeBundles bundles_;
  FakeLocalizedStrings strings_;
  FakeDefaults defaults_;
  FakeSearchPaths searchPaths_;
  FakeWorkspace workspace_;
};

class RealWorld {
 public:
  RealWorld() {
    const std::string foo = bundle().bytes();
    putFile(foo + "/Contents/Info.plist",
            infoPlist(plistEntry("CFBundleExecutable", "Foo") + plistEntry("CFBundleSignature", "FOOO")));
    putFile(foo + "/Contents/Resources/Foo.icns", "icns");
    putFile(foo + "/Contents/Resources/de.lproj/Localizable.strings", "\"Quit\" = \"Beenden\";");
    putFile(foo + "/Contents/Linux/Foo", "#!/bin/sh\n", Executable::Yes);
    putFile(folder_ / ".config/example.plist",
            infoPlist("<key>nosound</key><true/><key>count</key><integer>0</integer>"));
    putFile(folder_ / ".config/com.example.other.plist", infoPlist("<key>volume</key><real>0.5</real>"));
    putFile(folder_ / ".config/autostart/a.desktop",
            "[Desktop Entry]\nExec=" + foo + "/Contents/Linux/Foo\n");
    putFile(folder_ / ".config/autostart/b.desktop", "[Desktop Entry]\nExec=/nonexistent\n");
    strings_ = std::make_unique<LinuxLocalizedStrings>(bundle(), std::vector<Text>{"de"});
  }
  Text bundle() const { return Text(folder_ / "Foo.app"); }
  Text home() const { return folder_.path().string(); }
  const Bundles& bundles() { return bundles_; }
  const LocalizedStrings& strings() { return *strings_; }
  const Defaults& defaults() { return defaults_; }
  const SearchPaths& searchPaths() { return searchPaths_; }
  Workspace& workspace() { return workspace_; }

 private:
  TemporaryFolder folder_;
  Environment environment_{Environment::Variables{
      {"HOME", folder_.path().string()}, {"XDG_CONFIG_DIRS", "/nonexistent"}, {"PATH", "/nonexistent"}}};
  XdgFolders folders_{environment_};
  LinuxBundles bundles_{"/usr/bin/test", {}};
  std::unique_ptr<LinuxLocalizedStrings> strings_;
  LinuxDefaults defaults_{folders_, "example", {}};
  XdgSearchPaths searchPaths_{folders_};
  Launcher launcher_{environment_, folders_};
  LinuxWorkspace workspace_{bundles_, folders_, environment_, launcher_, {}};
};

template <typename World>
class BundlesContract : public testing::Test {
 protected:
  World world;
};
using Worlds = testing::Types<FakeWorld, RealWorld>;
TYPED_TEST_SUITE(BundlesContract, Worlds);

TYPED_TEST(BundlesContract, ABundleHasInformationResourcesAndAProgram) {
  const Bundles& bundles = this->world.bundles();
  const Text bundle = this->world.bundle();
  EXPECT_EQ(bundles.infoDictionary(bundle),
            (PropertyDictionary{{"CFBundleExecutable", "Foo"}, {"CFBundleSignature", "FOOO"}}));
  EXPECT_EQ(bundles.pathForResource(bundle, "Foo", "icns"), bundle + Text("/Contents/Resources/Foo.icns"));
  EXPECT_EQ(bundles.pathForResource(bundle, "Foo.icns", ""), bundle + Text("/Contents/Resources/Foo.icns"));
  EXPECT_EQ(bundles.executablePath(bundle), bundle + Text("/Contents/Linux/Foo"));
  EXPECT_FALSE(bundles.mainBundlePath().isEmpty());
  const std::vector<Text> resources = bundles.resourcePaths(bundle);
  EXPECT_NE(std::find(resources.begin(), resources.end(), bundle + Text("/Contents/Resources/Foo.icns")),
            resources.end());
}

TYPED_TEST(BundlesContract, WhatIsNotThereHasNone) {
  const Bundles& bundles = this->world.bundles();
  EXPECT_EQ(bundles.infoDictionary("/nonexistent.app"), std::nullopt);
  EXPECT_EQ(bundles.executablePath("/nonexistent.app"), std::nullopt);
  EXPECT_EQ(bundles.pathForResource("/nonexistent.app", "Foo", "icns"), std::nullopt);
  EXPECT_EQ(bundles.pathForResource(this->world.bundle(), "Foo", "png"), std::nullopt);
  EXPECT_EQ(bundles.pathForResource(this->world.bundle(), "../Info", "plist"), std::nullopt);
  EXPECT_TRUE(bundles.resourcePaths("/nonexistent.app").empty());
}

TYPED_TEST(BundlesContract, APropertyListIsReadAndWhatIsNoneIsMissing) {
  const Bundles& bundles = this->world.bundles();
  EXPECT_EQ(bundles.dictionaryAtPath(this->world.home() + Text("/.config/com.example.other.plist")),
            (PropertyDictionary{{"volume", 0.5}}));
  EXPECT_EQ(bundles.dictionaryAtPath("/nonexistent.plist"), std::nullopt);
  EXPECT_EQ(bundles.dictionaryAtPath(this->world.bundle() + Text("/Contents/Resources/Foo.icns")),
            std::nullopt);
}

TYPED_TEST(BundlesContract, ATextIsTranslatedOrStandsForItself) {
  const LocalizedStrings& strings = this->world.strings();
  EXPECT_EQ(strings.localized("Quit"), Text("Beenden"));
  const Text key = "Install";
  EXPECT_TRUE(strings.localized(key).isSameObject(key));
}

TYPED_TEST(BundlesContract, SettingsKeepTheirKind) {
  const Defaults& defaults = this->world.defaults();
  EXPECT_EQ(defaults.objectForKey("nosound"), PropertyValue(true));
  EXPECT_TRUE(defaults.boolForKey("nosound"));
  EXPECT_EQ(defaults.objectForKey("count"), PropertyValue(0));
  EXPECT_FALSE(defaults.boolForKey("count"));
  EXPECT_FALSE(defaults.boolForKey("missing"));
  EXPECT_EQ(defaults.objectForKey("volume", "com.example.other"), PropertyValue(0.5));
  EXPECT_EQ(defaults.objectForKey("volume"), std::nullopt);
  EXPECT_EQ(defaults.objectForKey("volume", "com.example.missing"), std::nullopt);
}

TYPED_TEST(BundlesContract, LoginItemsComeInOrderAndMayFailToResolve) {
  EXPECT_EQ(this->world.workspace().loginItems(),
            (std::vector<OptionalText>{this->world.bundle(), std::nullopt}));
}

TYPED_TEST(BundlesContract, FoldersAreAbsoluteAndTheHomeFolderIsThePersons) {
  const SearchPaths& paths = this->world.searchPaths();
  EXPECT_EQ(paths.homeFolder(), this->world.home());
  EXPECT_EQ(paths.homeFolderOf("no such account"), std::nullopt);
  EXPECT_EQ(paths.homeFolderOf(""), std::nullopt);
  EXPECT_EQ(paths.userApplicationsFolders().back(), this->world.home() + Text("/Applications"));
  ASSERT_FALSE(paths.localApplicationsFolders().empty());
  EXPECT_TRUE(paths.localApplicationsFolders().back().hasPrefix("/"));
  EXPECT_EQ(paths.volumeFolders().front(), Text("/Volumes"));
  for (const Text& folder : paths.soundFolders()) EXPECT_TRUE(folder.hasPrefix("/"));
}

TYPED_TEST(BundlesContract, ABundleIsShownWithoutItsExtensionOpenedAndRegistered) {
  Workspace& workspace = this->world.workspace();
  const Text bundle = this->world.bundle();
  EXPECT_EQ(workspace.displayName(bundle), Text("Foo"));
  EXPECT_EQ(workspace.displayName(bundle + Text("/Contents")), Text("Contents"));
  EXPECT_TRUE(workspace.openFile(bundle));
  EXPECT_EQ(workspace.registerBundle(bundle), 0);
  EXPECT_TRUE(workspace.hasIcon(bundle));
}

}  // namespace
}  // namespace halvorn
