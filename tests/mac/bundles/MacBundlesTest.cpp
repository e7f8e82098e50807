// What is asked of the system's bundles, settings and texts, and what of their answers is not taken.
#include "BundleWorlds.h"

#include "tests/mac/MacTest.h"
#include "tests/support/TextPrinting.h"

#include <algorithm>

namespace halvorn {
namespace {

class MacBundlesTest : public MacTest {
 protected:
  Text app() const { return Text(folder / "Foo.app"); }
  std::string at(const std::string& path) const { return folder / "Foo.app/" + path; }
  TemporaryFolder folder;
  MacBundles bundles;
};

TEST_F(MacBundlesTest, TheMainBundleIsThatOfTheProgram) {
  putFile(at("Contents/Info.plist"), infoPlist(""));
  fakemac::state().mainBundlePath = folder / "Foo.app";
  EXPECT_EQ(bundles.mainBundlePath(), app());
}

TEST_F(MacBundlesTest, ABundleWithoutInformationHasNone) {
  std::filesystem::create_directories(at("Contents"));
  EXPECT_EQ(bundles.infoDictionary(app()), std::nullopt);
  putFile(at("Contents/Info.plist"), "neither this nor that <");
  EXPECT_EQ(bundles.infoDictionary(app()), std::nullopt);
}

TEST_F(MacBundlesTest, InformationOutsideOfTheBundleIsNotRead) {
  putFile(folder / "outside.plist", infoPlist(plistEntry("CFBundleName", "Foo")));
  std::filesystem::create_directories(at("Contents"));
  std::filesystem::create_symlink(folder / "outside.plist", at("Contents/Info.plist"));
  EXPECT_EQ(bundles.infoDictionary(app()), std::nullopt);
}

TEST_F(MacBundlesTest, InformationThatIsTooLargeIsNotRead) {
  putFile(at("Contents/Info.plist"), infoPlist(plistEntry("CFBundleName", "Foo")));
  ASSERT_NE(bundles.infoDictionary(app()), std::nullopt);
  std::filesystem::resize_file(at("Contents/Info.plist"), (std::size_t{16} << 20) + 1);
  EXPECT_EQ(bundles.infoDictionary(app()), std::nullopt);
}

TEST_F(MacBundlesTest, ResourcesOutsideOfTheBundleAreNoneOfIt) {
  putFile(folder / "outside.png", "x");
  putFile(at("Contents/Info.plist"), infoPlist(plistEntry("CFBundleExecutable", "Foo")));
  putFile(at("Contents/Resources/in.png"), "x");
  std::filesystem::create_directories(at("Contents/MacOS"));
  std::filesystem::create_symlink(folder / "outside.png", at("Contents/Resources/out.png"));
  std::filesystem::create_symlink(folder / "outside.png", at("Contents/MacOS/Foo"));
  EXPECT_EQ(bundles.pathForResource(app(), "in", "png"), Text(at("Contents/Resources/in.png")));
  EXPECT_EQ(bundles.pathForResource(app(), "out", "png"), std::nullopt);
  EXPECT_EQ(bundles.executablePath(app()), std::nullopt);
  EXPECT_EQ(bundles.resourcePaths(app()), std::vector<Text>{at("Contents/Resources/in.png")});
}

TEST_F(MacBundlesTest, ANeighbourWhoseNameBeginsWithTheBundlesIsOutsideOfIt) {
  putFile(at("Contents/Info.plist"), infoPlist(""));
  putFile(folder / "Foo.app.old/secret.png", "x");
  std::filesystem::create_directories(at("Contents/Resources"));
  std::filesystem::create_symlink(folder / "Foo.app.old/secret.png", at("Contents/Resources/near.png"));
  EXPECT_EQ(bundles.pathForResource(app(), "near", "png"), std::nullopt);
}

TEST_F(MacBundlesTest, ResourcesOfThePersonsLanguageComeFirst) {
  putFile(at("Contents/Info.plist"), infoPlist(""));
  putFile(at("Contents/Resources/Read Me.rtf"), "x");
  putFile(at("Contents/Resources/fr.lproj/Read Me.rtf"), "x");
  EXPECT_EQ(bundles.pathForResource(app(), "Read Me", "rtf"), Text(at("Contents/Resources/Read Me.rtf")));
  fakemac::state().languages = {"fr", "en"};
  EXPECT_EQ(bundles.pathForResource(app(), "Read Me", "rtf"),
            Text(at("Contents/Resources/fr.lproj/Read Me.rtf")));
}

TEST_F(MacBundlesTest, APropertyListMayBeOfAnyKindButADictionary) {
  putFile(folder / "old.plist", "{ name = \"Größe\"; list = (a, b); }");
  EXPECT_EQ(bundles.dictionaryAtPath(Text(folder / "old.plist")),
            (PropertyDictionary{{"name", "Größe"}, {"list", PropertyArray{"a", "b"}}}));
  putFile(folder / "array.plist", "<plist version=\"1.0\"><array/></plist>");
  EXPECT_EQ(bundles.dictionaryAtPath(Text(folder / "array.plist")), std::nullopt);
  putFile(folder / "cut.plist", "<plist version=\"1.0\"><dict><key>a</key>");
  EXPECT_EQ(bundles.dictionaryAtPath(Text(folder / "cut.plist")), std::nullopt);
  EXPECT_EQ(bundles.dictionaryAtPath(Text(folder.path().string())), std::nullopt);
}

TEST_F(MacBundlesTest, TextsOfOneLanguageAndOtherwiseTheKey) {
  putFile(at("Contents/Info.plist"), infoPlist(""));
  putFile(at("Contents/Resources/de.lproj/Localizable.strings"), "\"Quit\" = \"Beenden\"; \"OK\" = \"OK\";");
  const MacLocalizedStrings strings(app());
  EXPECT_EQ(strings.localized("Quit"), Text("Quit"));
  fakemac::state().languages = {"de"};
  EXPECT_EQ(strings.localized("Quit"), Text("Beenden"));
  fakemac::state().raisesExceptions = true;
  const Text key = "Quit";
  EXPECT_TRUE(strings.localized(key).isSameObject(key)) << "an exception is no translation";
}

TEST_F(MacBundlesTest, SettingsAreThoseThatTheProgramSees) {
  fakemac::state().domains = {{"", {{"list", "<array><string>a</string><true/></array>"}}},
                              {"com.example", {{"list", "<string>other</string>"}}}};
  const MacDefaults defaults;
  EXPECT_EQ(defaults.objectForKey("list"), PropertyValue(PropertyArray{"a", true}));
  EXPECT_EQ(defaults.objectForKey("list", "com.example"), PropertyValue("other"));
  fakemac::state().raisesExceptions = true;
  EXPECT_EQ(defaults.objectForKey("list"), std::nullopt);
}

}  // namespace
}  // namespace halvorn
