#include <gtest/gtest.h>

#include <filesystem>

#include "Platform/bundles/linux/DisplayNames.h"
#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "Platform/bundles/linux/PreferredLanguages.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using Languages = std::vector<Text>;

TEST(PreferredLanguages, ComeFromTheCommandLineElseFromTheEnvironment) {
  const struct {
    std::vector<Text> arguments;
    Environment::Variables variables;
    Languages languages;
    const char* reason;
  } cases[] = {
      {{"x"}, {}, {}, "nothing is said"},
      {{"x"}, {{"LANG", "de_DE.UTF-8"}}, {"de_DE"}, "LANG alone"},
      {{"x"}, {{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr_FR"}}, {"fr_FR"}, "LC_MESSAGES over LANG"},
      {{"x"}, {{"LC_MESSAGES", "fr_FR"}, {"LC_ALL", "it"}}, {"it"}, "LC_ALL over all"},
      {{"x"}, {{"LANG", "de"}, {"LC_ALL", ""}}, {"de"}, "empty is unset"},
      {{"x"}, {{"LANG", "de"}, {"LANGUAGE", "sv:nb@x::sv"}}, {"sv", "nb"}, "LANGUAGE is a list"},
      {{"x"}, {{"LANGUAGE", "sv"}}, {"sv"}, "LANGUAGE alone"},
      {{"x"},
       {{"LANG", "C.UTF-8"}, {"LANGUAGE", "sv"}},
       {"sv"},
       "C with an encoding is a locale like others"},
      {{"x"}, {{"LANG", "C"}, {"LANGUAGE", "sv"}}, {}, "C wants no translation"},
      {{"x"}, {{"LC_ALL", "POSIX"}, {"LANG", "de"}}, {}, "nor does POSIX"},
      {{"x"}, {{"LANG", "../../etc"}}, {}, "no path"},
      {{"x"}, {{"LANG", "sr_RS.UTF-8@latin"}}, {"sr_Latn_RS"}, "a script is kept"},
      {{"x"}, {{"LANG", "ca_ES@valencia"}}, {"ca_ES"}, "what is no script is not"},
      {{"x", "-AppleLanguages", "(de, en)"}, {{"LANG", "fr"}}, {"de", "en"}, "a list"},
      {{"x", "-AppleLanguages", "(\"de-AT\")"}, {{"LANG", "fr"}}, {"de-AT"}, "a quoted one"},
      {{"x", "-AppleLanguages", "de"}, {{"LANG", "fr"}}, {"de"}, "one without parentheses"},
      {{"x", "-AppleLanguages", "(de,", "en)", "-a", "b"}, {}, {"de", "en"}, "a list split at its blanks"},
      {{"x", "-AppleLanguages", "(de,", "en"}, {{"LANG", "fr"}}, {"fr"}, "a list without its end"},
      {{"x", "-a", "b", "-AppleLanguages", "(de)"}, {}, {"de"}, "anywhere"},
      {{"x", "-AppleLanguages", "((("}, {{"LANG", "fr"}}, {"fr"}, "not a list"},
      {{"x", "-AppleLanguages", "(\"../x\")"}, {{"LANG", "fr"}}, {"fr"}, "not a language"},
      {{"x", "-AppleLanguages"}, {{"LANG", "fr"}}, {"fr"}, "no value"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(preferredLanguages(c.arguments, Environment(c.variables)), c.languages) << c.reason;
  }
}

TEST(PreferredLanguages, BundlesMayNameALanguageInSeveralWays) {
  EXPECT_EQ(languageFolderNames("de_AT.UTF-8@euro"), (Languages{"de_AT", "de-AT", "de", "German"}));
  EXPECT_EQ(languageFolderNames("German"), (Languages{"German", "de"}));
  EXPECT_EQ(languageFolderNames("zh_TW"), (Languages{"zh_TW", "zh-TW", "zh-Hant", "zh"}));
  EXPECT_EQ(languageFolderNames("zh_CN"), (Languages{"zh_CN", "zh-CN", "zh-Hans", "zh"}));
  EXPECT_EQ(languageFolderNames("zh_HK"), (Languages{"zh_HK", "zh-HK", "zh-Hant", "zh_TW", "zh"}));
  EXPECT_EQ(languageFolderNames("sr_RS@latin"),
            (Languages{"sr_Latn_RS", "sr-Latn-RS", "sr_Latn", "sr-Latn", "sr"}));
  EXPECT_EQ(languageFolderNames("sr_RS"), (Languages{"sr_RS", "sr-RS", "sr"}));
  EXPECT_EQ(languageFolderNames("no_NO"), (Languages{"no_NO", "no-NO", "no", "nb"}));
  EXPECT_EQ(languageFolderNames("iw"), (Languages{"iw", "he"}));
  EXPECT_EQ(languageFolderNames("tl_PH"), (Languages{"tl_PH", "tl-PH", "tl", "fil"}));
  EXPECT_EQ(languageFolderNames("../x"), Languages{});
  EXPECT_EQ(fallbackLanguageFolderNames(Text("fr")), (Languages{"Base", "fr", "French", "en", "English"}));
}

class StringsOnDisk : public testing::Test {
 protected:
  void table(const std::string& language, const std::string& bytes, const std::string& name = "Localizable") {
    putFile(folder_ / ("Foo.app/Contents/Resources/" + language + ".lproj/" + name + ".strings"), bytes);
  }
  Text localized(const Languages& languages, const Text& key = "Quit") {
    return LinuxLocalizedStrings(Text(folder_ / "Foo.app"), languages).localized(key);
  }
  TemporaryFolder folder_;
};

TEST_F(StringsOnDisk, TheFirstLanguageWithATableIsTaken) {
  table("en", "\"Quit\" = \"Quit\";");
  table("de", "\"Quit\" = \"Beenden\";");
  EXPECT_EQ(localized({"de"}), Text("Beenden"));
  EXPECT_EQ(localized({"de_CH", "en"}), Text("Beenden"));
  EXPECT_EQ(localized({"fr", "de", "en"}), Text("Beenden"));
  EXPECT_EQ(localized({"en", "de"}), Text("Quit"));
  EXPECT_EQ(localized({}), Text("Quit"));
  EXPECT_EQ(localized({"ja"}), Text("Quit"));
}

TEST_F(StringsOnDisk, AKeyWithoutTranslationStandsForItself) {
  table("de", "\"Quit\" = \"Beenden\";");
  EXPECT_EQ(localized({"de"}, "Visit Archive"), Text("Visit Archive"));
  const Text key = "Install";
  EXPECT_TRUE(LinuxLocalizedStrings("/nonexistent.app", {"de"}).localized(key).isSameObject(key));
}

TEST_F(StringsOnDisk, PlaceholdersAndLineEndsComeThrough) {
  table(
      "de",
      R"("%1$@ cannot be running.\rQuit %1$@, then click \"Install\" again." = "%1$@ läuft.\r„%1$@“ beenden.";)");
  EXPECT_EQ(localized({"de"}, "%1$@ cannot be running.\rQuit %1$@, then click \"Install\" again."),
            Text("%1$@ läuft.\r„%1$@“ beenden."));
}

TEST_F(StringsOnDisk, ABrokenTableIsPassedOver) {
  table("en", "\"Quit\" = \"Quit!\";");
  for (const std::string& broken :
       {std::string("\"Quit\" = \"Beenden"), std::string("<plist><dict>"),
        "a = \"" + std::string(9UL * 1024 * 1024, 'x') + "\";", std::string("\xFF\xFEx")}) {
    table("de", broken);
    EXPECT_EQ(localized({"de"}), Text("Quit!")) << broken.substr(0, 20);
  }
}

TEST_F(StringsOnDisk, ATableOutsideTheBundleIsNotRead) {
  const std::string outside = putFile(folder_ / "outside.strings", "\"Quit\" = \"Fremd\";");
  std::filesystem::create_directories(folder_ / "Foo.app/Contents/Resources/de.lproj");
  std::filesystem::create_symlink(outside,
                                  folder_ / "Foo.app/Contents/Resources/de.lproj/Localizable.strings");
  EXPECT_EQ(localized({"de"}), Text("Quit"));
}

TEST_F(StringsOnDisk, ABundleIsShownUnderItsLocalizedName) {
  const LinuxBundles bundles("/usr/bin/test", {});
  const auto shown = [&](const std::string& name, const Languages& languages) {
    return displayNameOf(Text(folder_ / name), bundles, languages);
  };
  putFile(folder_ / "Foo.app/Contents/Info.plist", infoPlist(plistEntry("CFBundleDisplayName", "Foo")));
  table("de", "CFBundleDisplayName = \"Fu Föö\";", "InfoPlist");
  table("it", "CFBundleDisplayName = \"a/b\"; CFBundleName = \"a\\nb\";", "InfoPlist");
  EXPECT_EQ(shown("Foo.app", {"de"}), Text("Fu Föö"));
  EXPECT_EQ(shown("Foo.app", {"en"}), Text("Foo"));
  EXPECT_EQ(shown("Foo.app", {"it"}), Text("Foo")) << "a name must not look like a path";
  std::filesystem::copy(folder_ / "Foo.app", folder_ / "Foo 2.app", std::filesystem::copy_options::recursive);
  EXPECT_EQ(shown("Foo 2.app", {"de"}), Text("Foo 2")) << "renamed by the person";
}

TEST_F(StringsOnDisk, AFolderIsShownUnderTheNameItsOwnFileGives) {
  const LinuxBundles bundles("/usr/bin/test", {});
  putFile(folder_ / "music/.directory", "[Desktop Entry]\nName=Music\nName[de]=Musik\nIcon=x\n");
  putFile(folder_ / "evil/.directory", "[Desktop Entry]\nName=../../etc\n");
  putFile(folder_ / "file.app", "no bundle");
  EXPECT_EQ(displayNameOf(Text(folder_ / "music"), bundles, {"de_DE"}), Text("Musik"));
  EXPECT_EQ(displayNameOf(Text(folder_ / "music"), bundles, {"fr"}), Text("Music"));
  EXPECT_EQ(displayNameOf(Text(folder_ / "evil"), bundles, {}), Text("evil"));
  EXPECT_EQ(displayNameOf(Text(folder_ / "missing.app"), bundles, {}), Text("missing.app"));
  EXPECT_EQ(displayNameOf(Text(folder_ / "file.app"), bundles, {}), Text("file.app"));
}

}  // namespace
}  // namespace halvorn
