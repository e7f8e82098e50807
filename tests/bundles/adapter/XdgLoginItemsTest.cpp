#include "Platform/bundles/linux/launching/XdgLoginItems.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "Platform/bundles/linux/launching/DesktopEntry.h"
#include "Platform/session/linux/XdgFolders.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

using Items = std::vector<OptionalText>;

class XdgLoginItemsTest : public testing::Test {
 protected:
  Items items() const {
    const Environment environment(
        Environment::Variables{{"HOME", folder_ / "home"},
                               {"XDG_CONFIG_HOME", folder_ / "config"},
                               {"XDG_CONFIG_DIRS", (folder_ / "one") + ":" + (folder_ / "two")},
                               {"XDG_CURRENT_DESKTOP", "Halvorn:GNOME"},
                               {"PATH", folder_ / "bin"}});
    return XdgLoginItems(XdgFolders(environment), environment).snapshot().value();
  }
  void entry(const std::string& folder, const std::string& name, const std::string& lines) const {
    putFile(folder_ / (folder + "/autostart/" + name),
            "[Desktop Entry]\nType=Application\nName=x\n" + lines + "\n");
  }
  std::string program(const std::string& path) const {
    return putFile(folder_ / path, "#!/bin/sh\n", Executable::Yes);
  }
  OptionalText path(const std::string& name) const { return Text(folder_ / name); }
  // A bundle whose program is found in PATH by that name, as distributions install them.
  OptionalText bundleInPath(const std::string& name) const {
    const std::string target = program("opt/" + name + ".app/" + name);
    fs::create_directories(folder_ / "bin");
    fs::create_symlink(target, folder_ / ("bin/" + name));
    return path("opt/" + name + ".app");
  }

  TemporaryFolder folder_;
};

TEST_F(XdgLoginItemsTest, WithoutFoldersTheListIsEmpty) { EXPECT_EQ(items(), Items{}); }

TEST_F(XdgLoginItemsTest, AnItemIsTheBundleAroundItsProgramAndWithoutABundleItDoesNotResolve) {
  program("opt/Foo.app/Contents/Linux/Foo");
  program("opt/Flat.app/Flat");
  program("opt/tool");
  entry("config", "a.desktop", "Exec=" + (folder_ / "opt/Foo.app/Contents/Linux/Foo") + " --hidden %U");
  entry("config", "b.desktop", "Exec=" + (folder_ / "opt/Flat.app/Flat"));
  entry("config", "c.desktop", "Exec=" + (folder_ / "opt/tool"));
  EXPECT_EQ(items(), (Items{path("opt/Foo.app"), path("opt/Flat.app"), std::nullopt}));
}

TEST_F(XdgLoginItemsTest, ThePersonsEntriesComeFirstAndHideTheSystems) {
  const auto a = bundleInPath("a"), b = bundleInPath("b"), c = bundleInPath("c"), d = bundleInPath("d");
  entry("two", "b.desktop", "Exec=d");
  entry("two", "0.desktop", "Exec=d");
  entry("one", "b.desktop", "Exec=b");
  entry("one", "c.desktop", "Exec=c");
  entry("config", "z.desktop", "Exec=a");
  entry("config", "c.desktop", "Hidden=true");
  entry("config", "notes.txt", "Exec=a");
  EXPECT_EQ(items(), (Items{a, b, d}));
}

TEST_F(XdgLoginItemsTest, EntriesForOtherDesktopsAreNotInTheList) {
  const auto a = bundleInPath("a");
  entry("config", "a.desktop", "Exec=a\nOnlyShowIn=KDE;");
  entry("config", "b.desktop", "Exec=a\nNotShowIn=KDE;GNOME;");
  EXPECT_EQ(items(), Items{});
  entry("config", "c.desktop", "Exec=a\nOnlyShowIn=KDE;GNOME;");
  EXPECT_EQ(items(), (Items{a}));
}

TEST_F(XdgLoginItemsTest, AnEntryThatStartsNothingDoesNotResolve) {
  entry("config", "a.desktop", "Exec=" + (folder_ / "missing/program"));
  entry("config", "b.desktop", "Exec=missing");
  entry("config", "c.desktop", "Exec=\"open");
  entry("config", "d.desktop", "");
  entry("config", "e.desktop", "Exec=" + folder_.path().string());
  putFile(folder_ / "config/autostart/f.desktop", "no entry");
  fs::create_directories(folder_ / "config/autostart/g.desktop");
  EXPECT_EQ(items(), Items(7, std::nullopt));
}

TEST_F(XdgLoginItemsTest, ALinkStandsForTheProgramItLeadsTo) {
  program("opt/Foo.app/Contents/Linux/Foo");
  fs::create_directories(folder_ / "bin");
  fs::create_symlink(folder_ / "opt/Foo.app/Contents/Linux/Foo", folder_ / "bin/foo");
  entry("config", "a.desktop", "Exec=foo");
  EXPECT_EQ(items(), (Items{path("opt/Foo.app")}));
}

TEST_F(XdgLoginItemsTest, QuotedProgramsAndThoseBehindEnvAreFound) {
  program("o p\"t/F$o.app/Contents/Linux/F`o");
  const std::string quoted = escapedValue(quotedForExec(folder_ / "o p\"t/F$o.app/Contents/Linux/F`o"));
  entry("config", "a.desktop", "Exec=" + quoted + " --x");
  entry("config", "b.desktop", "Exec=env LANG=C -i " + quoted);
  EXPECT_EQ(items(), (Items{path("o p\"t/F$o.app"), path("o p\"t/F$o.app")}));
}

TEST(DesktopEntry, ExecIsSplitByItsQuotingRules) {
  const struct {
    const char* exec;
    std::vector<std::string> arguments;
  } cases[] = {
      {"a b  c", {"a", "b", "c"}},
      {"\"a b\" c", {"a b", "c"}},
      {R"("a\"b\\c\$d\`e" f)", {"a\"b\\c$d`e", "f"}},
      {R"("a\b")", {"a\\b"}},
      {"a %U %f x%%y %%", {"a", "x%y", "%"}},
      {"\"\" a", {"", "a"}},
      {"\"open", {}},
      {"", {}},
      {"a%", {"a%"}},
  };
  for (const auto& c : cases) EXPECT_EQ(splitExec(c.exec), c.arguments) << c.exec;
  for (const char* const argument : {"a", "a b", "\"", "\\", "$(x)", "`", "%f", "a\nb", "'", ""}) {
    EXPECT_EQ(splitExec(quotedForExec(argument)), std::vector<std::string>{argument}) << argument;
  }
}

TEST(DesktopEntry, ValuesAreReadAsTheyWereWritten) {
  for (const char* const value : {"a", " a ", "a\nb", "a\\nb", "\t", "\\", "a\rb", "  ", "ü"}) {
    const auto entry = DesktopEntry::parse("[Desktop Entry]\nKey=" + escapedValue(value) + "\n");
    EXPECT_EQ(entry->value("Key"), value) << value;
  }
}

TEST(DesktopEntry, OnlyItsOwnGroupCounts) {
  const auto entry = DesktopEntry::parse(
      "Key=0\n# [Desktop Entry]\n[Desktop Action x]\nKey=1\n[Desktop Entry]\r\n Key = 2 "
      "\r\n[Other]\nKey=3\n");
  EXPECT_EQ(entry->value("Key"), "2");
  EXPECT_EQ(entry->value("Other"), std::nullopt);
  EXPECT_FALSE(DesktopEntry::parse("[Other]\nKey=1\n"));
  EXPECT_FALSE(DesktopEntry::parse(""));
}

TEST(DesktopEntry, NamesComeInThePersonsLanguage) {
  const auto entry = DesktopEntry::parse("[Desktop Entry]\nName=A\nName[de]=B\nName[de_AT]=C\n");
  EXPECT_EQ(entry->localizedValue("Name", {"de_AT"}), "C");
  EXPECT_EQ(entry->localizedValue("Name", {"fr", "de_CH"}), "B");
  EXPECT_EQ(entry->localizedValue("Name", {"fr"}), "A");
}

}  // namespace
}  // namespace halvorn
