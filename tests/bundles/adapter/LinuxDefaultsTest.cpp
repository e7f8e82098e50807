#include <gtest/gtest.h>

#include "Platform/bundles/linux/LinuxDefaults.h"
#include "Platform/session/linux/XdgFolders.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class DefaultsOnDisk : public testing::Test {
 protected:
  void domain(const std::string& name, const std::string& list) {
    putFile(folder_ / (name + ".plist"), list);
  }
  LinuxDefaults defaults(const std::vector<Text>& arguments = {"program"}) {
    const XdgFolders folders(Environment(
        Environment::Variables{{"HOME", "/nonexistent"}, {"XDG_CONFIG_HOME", folder_.path().string()}}));
    return LinuxDefaults(folders, "com.example.installer", arguments);
  }
  TemporaryFolder folder_;
};

TEST_F(DefaultsOnDisk, AnswerFromTheProgramsFileThenFromTheOneForAll) {
  domain("com.example.installer", infoPlist("<key>nosound</key><true/>"));
  domain(".GlobalPreferences", "{ nosound = NO; AppleInterfaceStyle = Dark; }");
  EXPECT_TRUE(defaults().boolForKey("nosound"));
  EXPECT_EQ(defaults().objectForKey("AppleInterfaceStyle"), PropertyValue("Dark"));
  EXPECT_EQ(defaults().objectForKey("missing"), std::nullopt);
}

TEST_F(DefaultsOnDisk, TheCommandLineWins) {
  domain("com.example.installer", infoPlist("<key>nosound</key><true/>"));
  EXPECT_FALSE(defaults({"program", "-nosound", "NO"}).boolForKey("nosound"));
  EXPECT_TRUE(defaults({"program", "-soundLog", "NO", "-soundLog", "YES"}).boolForKey("soundLog"));
  EXPECT_EQ(defaults({"program", "-list", "(a, b)"}).objectForKey("list"),
            PropertyValue(PropertyArray{"a", "b"}));
  EXPECT_EQ(defaults({"program", "-text", "a b (c"}).objectForKey("text"), PropertyValue("a b (c"));
  EXPECT_TRUE(defaults({"program", "-nosound", "-other", "NO"}).boolForKey("nosound"))
      << "a key without value";
  EXPECT_TRUE(defaults({"-nosound", "NO"}).boolForKey("nosound")) << "the program's own path is no key";
}

TEST_F(DefaultsOnDisk, AnotherProgramsDomainIsReadFromItsFileAlone) {
  domain("com.apple.sound.beep", "{ volume = <*R0.5>; }");
  const LinuxDefaults withArgument = defaults({"program", "-volume", "1"});
  EXPECT_EQ(withArgument.objectForKey("volume", "com.apple.sound.beep"), PropertyValue(0.5));
  EXPECT_EQ(withArgument.objectForKey("volume", "com.apple.other"), std::nullopt);
  domain(".GlobalPreferences", "{ a = b; }");
  EXPECT_EQ(withArgument.objectForKey("a", "NSGlobalDomain"), PropertyValue("b"));
}

TEST_F(DefaultsOnDisk, ADomainIsNoPath) {
  putFile(folder_ / "sub/evil.plist", "{ a = b; }");
  domain(".hidden", "{ a = b; }");
  for (const char* const name : {"sub/evil", "../x", "", ".hidden", "."}) {
    EXPECT_EQ(defaults().objectForKey("a", name), std::nullopt) << name;
  }
}

TEST_F(DefaultsOnDisk, ABrokenFileCountsAsMissing) {
  domain("com.example.installer", "<plist><dict>");
  EXPECT_EQ(defaults().objectForKey("a"), std::nullopt);
}

TEST_F(DefaultsOnDisk, AChangeIsSeenAtTheNextQuestion) {
  const LinuxDefaults asked = defaults();
  EXPECT_EQ(asked.objectForKey("a"), std::nullopt);
  domain("com.example.installer", "{ a = b; }");
  EXPECT_EQ(asked.objectForKey("a"), PropertyValue("b"));
}

}  // namespace
}  // namespace halvorn
