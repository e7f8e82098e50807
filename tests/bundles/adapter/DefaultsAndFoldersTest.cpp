#include <gtest/gtest.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <filesystem>

#include "Platform/bundles/linux/LinuxDefaults.h"
#include "Platform/rights/posix/Accounts.h"
#include "Platform/session/linux/LinuxSystemFacts.h"
#include "Platform/session/linux/XdgFolders.h"
#include "Platform/session/linux/XdgSearchPaths.h"
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

TEST(XdgFolders, FollowTheVariablesThatAreAbsolute) {
  const XdgFolders given(Environment(Environment::Variables{{"HOME", "/h"},
                                                            {"XDG_CONFIG_HOME", "/c"},
                                                            {"XDG_DATA_HOME", "relative"},
                                                            {"XDG_CONFIG_DIRS", "/one:two::/three"}}));
  EXPECT_EQ(given.home(), "/h");
  EXPECT_EQ(given.configHome(), "/c");
  EXPECT_EQ(given.dataHome(), "/h/.local/share");
  EXPECT_EQ(given.configFolders(), (std::vector<std::string>{"/one", "/three"}));
  EXPECT_EQ(XdgFolders(Environment(Environment::Variables{{"HOME", "/h"}})).configFolders(),
            std::vector<std::string>{"/etc/xdg"});
}

TEST(XdgFolders, TheHomeFolderComesFromThePasswordDatabaseWhenNobodyNamesIt) {
  const auto account = accountWithUid(::getuid());
  const std::string home = account && account->home.starts_with('/') ? account->home : "/";
  EXPECT_EQ(XdgFolders(Environment()).home(), home);
  EXPECT_EQ(XdgFolders(Environment(Environment::Variables{{"HOME", "relative"}})).home(), home);
}

TEST(XdgSearchPaths, KnowTheHomeFolderOfEveryAccount) {
  const XdgSearchPaths paths(XdgFolders(Environment(Environment::Variables{{"HOME", "/home/anna"}})));
  EXPECT_EQ(paths.homeFolderOf("root"), Text("/root"));
  EXPECT_EQ(paths.homeFolderOf(Text(std::u16string(u"root\0x", 6))), std::nullopt);
}

TEST(XdgSearchPaths, NameTheApplicationsFolders) {
  const TemporaryFolder folder;
  const XdgFolders folders(Environment(Environment::Variables{{"HOME", "/home/anna"}}));
  const Text shared(folder / "Applications");
  const XdgSearchPaths paths(folders, shared);
  EXPECT_EQ(paths.homeFolder(), Text("/home/anna"));
  EXPECT_EQ(paths.userApplicationsFolders(), std::vector<Text>{"/home/anna/Applications"});
  EXPECT_EQ(paths.localApplicationsFolders(), std::vector<Text>{"/opt"});
  std::filesystem::create_directory(folder / "Applications");
  EXPECT_EQ(paths.localApplicationsFolders(), (std::vector<Text>{"/opt", shared}));
}

TEST(XdgSearchPaths, NameTheFoldersOfMountedVolumes) {
  const XdgSearchPaths paths(XdgFolders(Environment{}));
  const std::vector<Text> folders = paths.volumeFolders();
  ASSERT_FALSE(folders.empty());
  EXPECT_EQ(folders.front(), Text("/Volumes"));
  const auto account = accountWithUid(::getuid());
  if (!account) GTEST_SKIP() << "this user has no name";
  EXPECT_EQ(folders.size(), 3u);
  EXPECT_EQ(folders.at(1), Text("/media/" + account->name));
  EXPECT_EQ(folders.at(2), Text("/run/media/" + account->name));
}

TEST(LinuxSystemFacts, TellsTheKernelsThreeNumbers) {
  const struct {
    const char* release;
    std::optional<int> major, minor, bugfix;
  } cases[] = {
      {"6.1.90", 6, 1, 90},
      {"6.1.0-21-amd64", 6, 1, 0},
      {"6.12-rc3", 6, 12, std::nullopt},
      {"7", 7, std::nullopt, std::nullopt},
      {"", {}, {}, {}},
      {"x.y.z", {}, {}, {}},
      {"6.1.x", 6, 1, {}},
      {"99999999999.1.1", {}, {}, {}},
      {"-6.1.1", {}, {}, {}},
  };
  for (const auto& c : cases) {
    const LinuxSystemFacts info{Text(c.release)};
    EXPECT_EQ(info.majorVersion(), c.major) << c.release;
    EXPECT_EQ(info.minorVersion(), c.minor) << c.release;
    EXPECT_EQ(info.bugfixVersion(), c.bugfix) << c.release;
    EXPECT_EQ(info.packedVersion(), std::nullopt);
  }
}

TEST(LinuxSystemFacts, TellsThoseOfThisKernel) {
  utsname names = {};
  ASSERT_EQ(::uname(&names), 0);
  const LinuxSystemFacts info;
  const std::string version =
      std::to_string(info.majorVersion().value()) + "." + std::to_string(info.minorVersion().value());
  EXPECT_TRUE(std::string(names.release).starts_with(version)) << names.release;
  EXPECT_TRUE(info.bugfixVersion());
}

}  // namespace
}  // namespace halvorn
