// The Trash of the home folder, which the tool fills: its own rules, on this system's calls.
#include "Platform/files/mac/HomeTrash.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <set>

#include "tests/fakes/FakeClock.h"
#include "tests/support/FailureText.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

class HomeTrashTest : public testing::Test {
 protected:
  HomeTrashTest() {
    std::filesystem::create_directories(folder / "home");
    person.user = ::geteuid();
    person.group = ::getegid();
    person.home = folder / "home";
  }
  HomeTrash trash() { return HomeTrash(clock, person, LinksInTheWay::Followed); }
  std::string recycled(const std::string& name) {
    std::string text = textOf(trash().recycle(folder / "Applications", {name}));
    const std::string top = folder / "";
    if (const auto at = text.find(top); at != std::string::npos) text.erase(at, top.size());
    return text;
  }
  std::set<std::string> names() const {
    std::set<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "home/.Trash"))
      all.insert(entry.path().filename().string());
    return all;
  }
  void addProduct(const std::string& contents) {
    putFile(folder / "Applications/Sample.app/Contents/file", contents);
  }

  TemporaryFolder folder;
  FakeClock clock;
  Person person;
};

TEST_F(HomeTrashTest, WhatIsThrownAwayLiesThereUnderItsName) {
  addProduct("old");
  EXPECT_EQ(recycled("Sample.app"), "");
  EXPECT_EQ(contentsOf(folder / "home/.Trash/Sample.app/Contents/file"), "old");
  EXPECT_FALSE(std::filesystem::exists(folder / "Applications/Sample.app"));
}

TEST_F(HomeTrashTest, AMissingTrashIsMadeForThePersonAlone) {
  addProduct("old");
  EXPECT_EQ(recycled("Sample.app"), "");
  struct stat facts {};
  ASSERT_EQ(::stat((folder / "home/.Trash").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777U, 0700U);
}

TEST_F(HomeTrashTest, ANameThatIsTakenGetsTheTimeAndThenANumberBeforeItsExtension) {
  for (const char* contents : {"1", "2", "3"}) {
    addProduct(contents);
    EXPECT_EQ(recycled("Sample.app"), "");
  }
  const std::set<std::string> all = names();
  ASSERT_EQ(all.size(), 3U);
  EXPECT_TRUE(all.count("Sample.app"));
  for (const std::string& name : all) {
    EXPECT_TRUE(name.starts_with("Sample") && name.ends_with(".app")) << name;
  }
  EXPECT_EQ(contentsOf(folder / "home/.Trash/Sample.app/Contents/file"), "1") << "nothing is written over";
}

TEST_F(HomeTrashTest, ATrashThatIsALinkIsNotUsedAndTheItemStays) {
  addProduct("old");
  std::filesystem::create_directories(folder / "elsewhere");
  std::filesystem::create_symlink(folder / "elsewhere", folder / "home/.Trash");
  EXPECT_EQ(recycled("Sample.app"), "the person's Trash cannot be used: Applications/Sample.app (move)");
  EXPECT_TRUE(std::filesystem::exists(folder / "Applications/Sample.app/Contents/file"));
  EXPECT_TRUE(std::filesystem::is_empty(folder / "elsewhere"));
}

TEST_F(HomeTrashTest, WithoutAHomeThereIsNoTrash) {
  addProduct("old");
  person.home.clear();
  EXPECT_EQ(recycled("Sample.app"), "the person's Trash cannot be used: Applications/Sample.app (move)");
  EXPECT_TRUE(trash().reach(0).empty());
}

TEST_F(HomeTrashTest, WhatIsNotThereIsNamed) {
  addProduct("old");
  EXPECT_EQ(recycled("Missing.app"), "No such file or directory: Applications/Missing.app (look)");
  EXPECT_EQ(textOf(trash().recycle(folder / "nowhere", {"Sample.app"})),
            "No such file or directory: " + (folder / "nowhere/Sample.app") + " (reach)");
}

TEST_F(HomeTrashTest, OneThatCannotBeThrownAwayDoesNotKeepTheOthers) {
  addProduct("old");
  const auto failure = trash().recycle(folder / "Applications", {"Missing.app", "Sample.app"});
  EXPECT_TRUE(failure);
  EXPECT_EQ(names(), std::set<std::string>{"Sample.app"});
}

TEST_F(HomeTrashTest, ALinkIsThrownAwayItselfAndNotWhatItLeadsTo) {
  addProduct("old");
  std::filesystem::create_symlink("Sample.app", folder / "Applications/Link.app");
  EXPECT_EQ(recycled("Link.app"), "");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "home/.Trash/Link.app"));
  EXPECT_TRUE(std::filesystem::exists(folder / "Applications/Sample.app/Contents/file"));
}

TEST_F(HomeTrashTest, TheTrashIsWithinReach) {
  EXPECT_EQ(trash().reach(0).size(), 1U);
  EXPECT_TRUE(std::filesystem::is_directory(folder / "home/.Trash"));
}

}  // namespace
}  // namespace halvorn
