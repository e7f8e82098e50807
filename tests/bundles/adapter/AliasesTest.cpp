#include "Platform/bundles/linux/Aliases.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class Aliases : public testing::Test {
 protected:
  std::string at(const std::string& name) const { return fs::canonical(folder.path()).string() + "/" + name; }
  void write(const std::string& name, const std::string& text) const { std::ofstream(at(name)) << text; }
  void writeEntry(const std::string& name, const std::string& url) const {
    write(name, "[Desktop Entry]\nType=Link\nName=x\nURL=" + url + "\n");
  }
  OptionalText target(const std::string& name) const { return targetOfAlias(at(name)); }

  TemporaryFolder folder;
};

TEST_F(Aliases, PlainFilesFoldersAndMissingFilesAreNone) {
  write("plain", "");
  fs::create_directory(at("folder"));
  EXPECT_EQ(target("plain"), std::nullopt);
  EXPECT_EQ(target("folder"), std::nullopt);
  EXPECT_EQ(target("missing"), std::nullopt);
  EXPECT_EQ(targetOfAlias(""), std::nullopt);
  EXPECT_EQ(targetOfAlias(Text(std::u16string(u"/tmp\0x", 6))), std::nullopt);
}

TEST_F(Aliases, LinksLeadToTheirTarget) {
  write("target", "");
  fs::create_symlink("target", at("relative"));
  fs::create_symlink(at("target"), at("absolute"));
  fs::create_symlink("relative", at("chain"));
  for (const char* const name : {"relative", "absolute", "chain"}) {
    EXPECT_EQ(target(name), Text(at("target"))) << name;
  }
}

TEST_F(Aliases, LinkToAFolderMayEndInASlash) {
  fs::create_directory(at("folder"));
  fs::create_symlink("folder", at("link"));
  EXPECT_EQ(target("link/"), Text(at("folder")));
}

TEST_F(Aliases, BrokenLinksAndCirclesLeadNowhere) {
  fs::create_symlink("missing", at("broken"));
  fs::create_symlink("circle2", at("circle1"));
  fs::create_symlink("circle1", at("circle2"));
  writeEntry("entry1.desktop", at("entry2.desktop"));
  writeEntry("entry2.desktop", at("entry1.desktop"));
  writeEntry("gone.desktop", "file://" + at("missing"));
  for (const char* const name : {"broken", "circle1", "entry1.desktop", "gone.desktop"}) {
    EXPECT_EQ(target(name), std::nullopt) << name;
  }
}

TEST_F(Aliases, DesktopEntriesOfTheTypeLinkLeadToTheirUrl) {
  write("ziel mit ü", "");
  struct Row {
    const char* name;
    std::string url;
  };
  const Row rows[] = {
      {"path.desktop", at("ziel mit ü")},
      {"url.desktop", "file://" + at("ziel%20mit%20%C3%BC")},
      {"local.desktop", "file://localhost" + at("ziel%20mit%20ü")},
      {"short.desktop", "file:" + at("ziel mit ü")},
  };
  for (const Row& row : rows) {
    writeEntry(row.name, row.url);
    EXPECT_EQ(target(row.name), Text(at("ziel mit ü"))) << row.name;
  }
}

TEST_F(Aliases, EntriesAndLinksMayAlternate) {
  write("target", "");
  writeEntry("entry.desktop", "file://" + at("link"));
  fs::create_symlink("target", at("link"));
  fs::create_symlink("entry.desktop", at("start"));
  EXPECT_EQ(target("start"), Text(at("target")));
}

TEST_F(Aliases, EntriesThatLeadOffThisComputerAreNone) {
  for (const char* const url :
       {"https://example.com/", "file://server/share", "file:relative", "", "file:///a%00b"}) {
    writeEntry("web.desktop", url);
    EXPECT_EQ(target("web.desktop"), std::nullopt) << url;
  }
}

TEST_F(Aliases, OtherEntriesAndOtherFilesAreNone) {
  write("target", "");
  write("program.desktop", "[Desktop Entry]\nType=Application\nURL=" + at("target") + "\nExec=true\n");
  write("broken.desktop", "Type=Link\nURL=" + at("target") + "\n");
  write("named.txt", "[Desktop Entry]\nType=Link\nURL=" + at("target") + "\n");
  for (const char* const name : {"program.desktop", "broken.desktop", "named.txt"}) {
    EXPECT_EQ(target(name), std::nullopt) << name;
  }
}

TEST_F(Aliases, NamesThatAreNotUtf8AreKept) {
  write("target\xFC", "");
  fs::create_symlink("target\xFC", at("link\xFC"));
  const OptionalText found = target("link\xFC");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->bytes(), at("target\xFC"));
}

}  // namespace
}  // namespace halvorn
