#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "Platform/rights/posix/Accounts.h"
#include "Platform/session/linux/XdgFolders.h"
#include "Platform/session/linux/XdgSearchPaths.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

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

}  // namespace
}  // namespace halvorn
