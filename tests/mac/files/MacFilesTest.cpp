// How the engine, the workspace and Foundation are asked, and what becomes of their answers.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Platform/files/mac/MacFileChangeNotices.h"
#include "Platform/files/mac/MacFileManager.h"
#include "Platform/files/mac/MacSearchPaths.h"
#include "Platform/files/mac/MacTrash.h"
#include "tests/mac/MacTest.h"
#include "tests/support/FailureText.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class MacFiles : public MacTest {
 protected:
  MacFiles() { fakemac::state().trashFolder = folder / ".Trash"; }
  std::string told(const std::optional<FileFailure>& failure) const {
    std::string text = textOf(failure);
    const std::string top = folder / "";
    for (auto at = text.find(top); at != std::string::npos; at = text.find(top)) text.erase(at, top.size());
    return text;
  }
  TemporaryFolder folder;
  MacFileManager files;
  MacTrash trash;
};

constexpr std::uint32_t kAll = 0xF;  // lists, mode and times, attributes, data
constexpr std::uint32_t kRecursive = 1U << 15;
constexpr std::uint32_t kExclusive = 1U << 17;
constexpr std::uint32_t kNoLinks = 3U << 18;
constexpr std::uint32_t kClone = 1U << 24;

TEST_F(MacFiles, ACopyIsOneCallOfTheEngineThatClonesAndTakesAllMetadata) {
  putFile(folder / "Nas.app/Contents/a", "a");
  putFile(folder / "Nas.app/Contents/b/c", "c");
  EXPECT_EQ(told(files.copyItem(folder / "Nas.app", folder / "New.app")), "");
  EXPECT_EQ(fakemac::state().copyFlags,
            std::vector<std::uint32_t>{kAll | kRecursive | kExclusive | kNoLinks | kClone});
  EXPECT_EQ(contentsOf(folder / "New.app/Contents/b/c"), "c");
}

TEST_F(MacFiles, AFolderThatIsThereIsNotCopiedInto) {
  putFile(folder / "Nas.app/file", "new");
  std::filesystem::create_directories(folder / "there");
  EXPECT_EQ(told(files.copyItem(folder / "Nas.app", folder / "there")), "File exists: there (make)");
  EXPECT_TRUE(std::filesystem::is_empty(folder / "there"));
  EXPECT_TRUE(fakemac::state().copyFlags.empty()) << "the engine is not asked";
}

TEST_F(MacFiles, ModesAndTimesAreThoseOfTheOriginal) {
  const std::string file = putFile(folder / "from/tool", "x", Executable::Yes);
  const timespec times[] = {{1'000'000'000, 5}, {1'100'000'000, 7}};
  ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
  EXPECT_EQ(told(files.copyItem(folder / "from", folder / "to")), "");
  struct stat facts {};
  ASSERT_EQ(::stat((folder / "to/tool").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777U, 0755U);
  EXPECT_EQ(facts.st_mtim.tv_sec, 1'100'000'000);
}

TEST_F(MacFiles, TheEngineStopsAtTheFirstThatItCannotCopy) {
  putFile(folder / "from/secret", "x");
  ASSERT_EQ(::chmod((folder / "from/secret").c_str(), 0), 0);
  const OrdinaryUser user(folder / "");
  EXPECT_EQ(told(files.copyItem(folder / "from", folder / "to")), "Permission denied: from/secret (open)");
  EXPECT_EQ(fakemac::liveObjects(), 0) << "the engine's state is given back";
}

TEST_F(MacFiles, ALinkThatCannotBeFollowedIsNoUnreadableOriginal) {
  std::filesystem::create_directories(folder / "closed");
  std::filesystem::create_symlink("nowhere", folder / "link");
  ASSERT_EQ(::chmod((folder / "closed").c_str(), 0555), 0);
  const OrdinaryUser user(folder / "");
  EXPECT_EQ(told(files.copyItem(folder / "link", folder / "closed/link")),
            "Permission denied: closed/link (make)");
}

TEST_F(MacFiles, EachNameIsARecycleOperationOfItsOwn) {
  putFile(folder / "Applications/A.app/file", "a");
  putFile(folder / "Applications/B.app/file", "b");
  EXPECT_EQ(told(trash.recycle(folder / "Applications", {"A.app", "B.app"})), "");
  EXPECT_EQ(fakemac::state().recycleOperations, 2);
  EXPECT_EQ(contentsOf(folder / ".Trash/B.app/file"), "b");
}

TEST_F(MacFiles, WhatTheWorkspaceRefusesWithoutAReasonIsToldSo) {
  putFile(folder / "Applications/A.app/file", "a");
  fakemac::state().refusesRecycling = true;
  EXPECT_EQ(told(trash.recycle(folder / "Applications", {"A.app"})),
            "the workspace did not move it to the Trash: Applications/A.app (move)");
  fakemac::state().refusesRecycling = false;
  fakemac::state().raisesExceptions = true;
  EXPECT_EQ(told(trash.recycle(folder / "Applications", {"A.app"})),
            "the workspace did not move it to the Trash: Applications/A.app (move)");
  EXPECT_TRUE(std::filesystem::exists(folder / "Applications/A.app/file"));
}

TEST_F(MacFiles, OfSeveralThatStayTheFirstReasonIsTold) {
  putFile(folder / "Applications/B.app/file", "b");
  fakemac::state().refusesRecycling = true;
  EXPECT_EQ(told(trash.recycle(folder / "Applications", {"gone.app", "B.app"})),
            "No such file or directory: Applications/gone.app (look)");
}

TEST_F(MacFiles, TheWorkspaceIsToldOfEachChangeAndMayNotCare) {
  MacFileChangeNotices notices;
  notices.noteFileSystemChanged("/Applications/Größe.app");
  EXPECT_EQ(fakemac::state().changesNoted, std::vector<std::string>{"/Applications/Größe.app"});
  fakemac::state().raisesExceptions = true;
  notices.noteFileSystemChanged("/Applications");
}

TEST_F(MacFiles, FoldersAreTheSystemsAndThePersons) {
  fakemac::state().homeFolder = "/Users/anna";
  const MacSearchPaths paths;
  EXPECT_EQ(paths.homeFolder(), Text("/Users/anna"));
  EXPECT_EQ(paths.localApplicationsFolders(), std::vector<Text>{"/Applications"});
  EXPECT_EQ(paths.userApplicationsFolders(), std::vector<Text>{"/Users/anna/Applications"});
  EXPECT_EQ(paths.volumeFolders(), std::vector<Text>{"/Volumes"});
  EXPECT_EQ(paths.soundFolders(), std::vector<Text>{});
}

TEST_F(MacFiles, TheHomeOfAnAccountIsKnownToTheSystem) {
  const MacSearchPaths paths;
  EXPECT_EQ(paths.homeFolderOf("root"), Text(::getpwnam("root")->pw_dir));
  EXPECT_EQ(paths.homeFolderOf("no such account"), std::nullopt);
}

}  // namespace
}  // namespace halvorn
