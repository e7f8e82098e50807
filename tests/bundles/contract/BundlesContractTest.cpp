// Bundles, settings, texts and the workspace: the same cases against what a test writes down and against what lies on a disk.
#include <gtest/gtest.h>

#include <algorithm>

#include "BundleWorlds.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

template <typename World>
class BundlesContract : public testing::Test {
 protected:
  World world;
};
TYPED_TEST_SUITE(BundlesContract, Worlds);

TYPED_TEST(BundlesContract, ABundleHasInformationResourcesAndAProgram) {
  const Bundles& bundles = this->world.bundles();
  const Text bundle = this->world.bundle();
  EXPECT_EQ(bundles.infoDictionary(bundle),
            (PropertyDictionary{{"CFBundleExecutable", "Foo"}, {"CFBundleSignature", "FOOO"}}));
  EXPECT_EQ(bundles.pathForResource(bundle, "Foo", "icns"), bundle + Text("/Contents/Resources/Foo.icns"));
  EXPECT_EQ(bundles.pathForResource(bundle, "Foo.icns", ""), bundle + Text("/Contents/Resources/Foo.icns"));
  EXPECT_EQ(bundles.executablePath(bundle), this->world.program());
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
