// The Trash by the freedesktop rules, held against the desktop's own tools.
#include "Platform/files/linux/trash/XdgTrash.h"

#include <cstdlib>
#include <memory>

#include "tests/fakes/FakeClock.h"
#include "tests/files/adapter/CopyScene.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FailureText.h"
#include "tests/support/OrdinaryUser.h"

namespace halvorn {
namespace {

class XdgTrash : public CopyScene {
 protected:
  XdgTrash() { owner.dataFolder = at("data"); }
  bool recycle(const std::string& folderName, const std::string& name) {
    return refusal(folderName, name).empty();
  }
  // Why it was not recycled.
  std::string refusal(const std::string& folderName, const std::string& name) {
    return textOf(halvorn::XdgTrash(clock, owner, LinksInTheWay::Followed).recycle(at(folderName), {name}));
  }
  std::string information(const std::string& name) const {
    return contents("data/Trash/info/" + name + ".trashinfo");
  }

  FakeClock clock;
  Person owner = personOfThisProcess();
};

TEST_F(XdgTrash, TheHomeTrashIsMadeForItsOwnerAlone) {
  addFile("apps/Nas.app/file", "old");
  EXPECT_TRUE(recycle("apps", "Nas.app"));
  EXPECT_EQ(contents("data/Trash/files/Nas.app/file"), "old");
  EXPECT_FALSE(exists("apps/Nas.app"));
  for (const char* path : {"data/Trash", "data/Trash/files", "data/Trash/info"})
    EXPECT_EQ(mode(path), 0700u) << path;
  EXPECT_EQ(mode("data/Trash/info/Nas.app.trashinfo"), 0600u);
}

TEST_F(XdgTrash, TheInformationHoldsTheEncodedPathAndTheLocalTime) {
  ASSERT_EQ(::setenv("TZ", "Etc/GMT-3", 1), 0);
  ::tzset();
  addFile("apps/N a%s.\xC3\xA4\xFF\n", "old");
  EXPECT_TRUE(recycle("apps", "N a%s.\xC3\xA4\xFF\n"));
  const std::string parent = std::filesystem::canonical(at("apps"));
  // 1 700 000 000 is 22:13:20 in Greenwich.
  EXPECT_EQ(information("N a%s.\xC3\xA4\xFF\n"),
            "[Trash Info]\nPath=" + parent + "/N%20a%25s.%C3%A4%FF%0A\nDeletionDate=2023-11-15T01:13:20\n");
  ASSERT_EQ(::unsetenv("TZ"), 0);
  ::tzset();
}

// Who names no folder means the one that the program works in, and not the root of everything.
TEST_F(XdgTrash, AnItemWithoutAFolderIsTheCurrentFoldersOwn) {
  addFile("apps/Nas.app/file", "old");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(at("apps"));
  const std::string why =
      textOf(halvorn::XdgTrash(clock, owner, LinksInTheWay::Followed).recycle("", {"Nas.app"}));
  std::filesystem::current_path(before);
  EXPECT_EQ(why, "");
  EXPECT_EQ(contents("data/Trash/files/Nas.app/file"), "old");
  EXPECT_FALSE(exists("apps/Nas.app"));
}

TEST_F(XdgTrash, NothingInTheTrashIsOverwritten) {
  for (const char* version : {"1", "2", "3"}) {
    addFile("apps/Nas.app/file", version);
    EXPECT_TRUE(recycle("apps", "Nas.app"));
  }
  EXPECT_EQ(contents("data/Trash/files/Nas.app/file"), "1");
  EXPECT_EQ(contents("data/Trash/files/Nas 2.app/file"), "2");
  EXPECT_EQ(contents("data/Trash/files/Nas 3.app/file"), "3");
  EXPECT_EQ(information("Nas 3.app"), information("Nas.app"));
}

TEST_F(XdgTrash, AnItemWithoutInformationInTheTrashKeepsItsName) {
  addFile("data/Trash/files/Nas.app/file", "stray");
  ::chmod(at("data/Trash/files").c_str(), 0700);
  addFile("apps/Nas.app/file", "old");
  EXPECT_TRUE(recycle("apps", "Nas.app"));
  EXPECT_EQ(contents("data/Trash/files/Nas.app/file"), "stray");
  EXPECT_EQ(contents("data/Trash/files/Nas 2.app/file"), "old");
  EXPECT_FALSE(exists("data/Trash/info/Nas.app.trashinfo")) << "no information without an item";
}

TEST_F(XdgTrash, AnInformationWithoutItemIsNotOverwritten) {
  addFile("data/Trash/info/Nas.app.trashinfo", "of another");
  addFile("apps/Nas.app/file", "old");
  EXPECT_TRUE(recycle("apps", "Nas.app"));
  EXPECT_EQ(information("Nas.app"), "of another");
  EXPECT_EQ(contents("data/Trash/files/Nas 2.app/file"), "old");
}

TEST_F(XdgTrash, ANameTooLongForItsInformationIsShortenedInTheTrashOnly) {
  const std::string name = std::string(251, 'n') + ".app";
  addFile("apps/" + name, "old");
  EXPECT_TRUE(recycle("apps", name));
  EXPECT_EQ(contents("data/Trash/files/" + name.substr(0, 245)), "old");
  EXPECT_NE(information(name.substr(0, 245)).find(name), std::string::npos);
}

TEST_F(XdgTrash, ALinkIsTrashedItself) {
  addFile("outside/file", "kept");
  addFolder("apps");
  addLink("apps/Nas.app", at("outside"));
  EXPECT_TRUE(recycle("apps", "Nas.app"));
  EXPECT_TRUE(S_ISLNK(facts("data/Trash/files/Nas.app").st_mode));
  EXPECT_EQ(contents("outside/file"), "kept");
}

TEST_F(XdgTrash, AFolderItsOwnerMayNotWriteGoesAndCanComeBack) {
  addFile("apps/Nas.app/file", "old");
  ASSERT_EQ(::chmod(at("apps/Nas.app").c_str(), 0555), 0);
  EXPECT_TRUE(recycle("apps", "Nas.app"));
  EXPECT_EQ(::rename(at("data/Trash/files/Nas.app").c_str(), at("apps/Nas.app").c_str()), 0);
  (void)::chmod(at("apps/Nas.app").c_str(), 0755);
}

TEST_F(XdgTrash, WhatCannotBeMovedStaysAndLeavesNoInformation) {
  addFile("apps/Nas.app/file", "old");
  ASSERT_EQ(::chmod(at("apps").c_str(), 0555), 0);
  const OrdinaryUser user(at(""));
  owner.user = ::geteuid();
  owner.group = ::getegid();
  EXPECT_EQ(refusal("apps", "Nas.app"), "Permission denied: " + at("apps/Nas.app") + " (move)");
  EXPECT_EQ(contents("apps/Nas.app/file"), "old");
  EXPECT_TRUE(std::filesystem::is_empty(at("data/Trash/info")));
  ASSERT_EQ(::chmod(at("apps").c_str(), 0755), 0);
}

TEST_F(XdgTrash, AFolderOfTheTrashThatIsALinkReceivesNothing) {
  addFolder("elsewhere");
  addFolder("data/Trash");
  addLink("data/Trash/files", at("elsewhere"));
  addFile("apps/Nas.app/file", "old");
  (void)recycle("apps", "Nas.app");
  EXPECT_TRUE(std::filesystem::is_empty(at("elsewhere")));
}

TEST_F(XdgTrash, NamesThatAreNoNamesAreRefused) {
  addFile("apps/Nas.app/file", "old");
  for (const char* name : {"", ".", "..", "Nas.app/file", "../apps", "/"})
    EXPECT_FALSE(recycle("apps", name)) << name;
  EXPECT_EQ(contents("apps/Nas.app/file"), "old");
}

// The desktop's tools list and restore what is in the home Trash, and nothing of
// this machine's user is touched.
class XdgTrashOutside : public XdgTrash {
 protected:
  CommandResult run(std::vector<std::string> command) const {
    std::vector<std::string> whole = {"/usr/bin/env",       "-i",
                                      "PATH=/usr/bin:/bin", "LANG=C.UTF-8",
                                      "HOME=" + at(""),     "XDG_DATA_HOME=" + at("data"),
                                      "GIO_USE_VFS=local"};
    whole.insert(whole.end(), command.begin(), command.end());
    return runCommand(whole);
  }
  static bool has(const char* program) { return ::access(program, X_OK) == 0; }
};

TEST_F(XdgTrashOutside, TrashCliListsAndRestoresIt) {
  if (!has("/usr/bin/trash-list")) GTEST_SKIP() << "trash-cli is not installed";
  addFile("apps/N \xC3\xA4%.app/file", "old");
  ASSERT_TRUE(recycle("apps", "N \xC3\xA4%.app"));
  const std::string path = std::filesystem::canonical(at("apps")).string() + "/N \xC3\xA4%.app";
  const CommandResult listed = run({"/usr/bin/trash-list"});
  EXPECT_NE(listed.output.find(path), std::string::npos) << listed.output;
  const CommandResult restored = run({"/bin/sh", "-c", "echo 0 | /usr/bin/trash-restore '" + path + "'"});
  EXPECT_EQ(contents("apps/N \xC3\xA4%.app/file"), "old") << restored.output;
  EXPECT_TRUE(std::filesystem::is_empty(at("data/Trash/info")));
}

TEST_F(XdgTrashOutside, TheInformationIsTheOneTheDesktopWrites) {
  if (!has("/usr/bin/gio")) GTEST_SKIP() << "gio is not installed";
  const std::string name = "N \xC3\xA4%.app";
  addFile("apps/" + name + "/file", "old");
  const CommandResult trashed = run({"/usr/bin/gio", "trash", at("apps/" + name)});
  if (trashed.status != 0) GTEST_SKIP() << "gio does not trash here: " << trashed.output;
  const std::string theirs = information(name);
  ASSERT_FALSE(theirs.empty());
  addFile("apps/" + name + "/file", "old");
  ASSERT_TRUE(recycle("apps", name));
  const std::string ours = information("N \xC3\xA4% 2.app");
  const auto withoutTime = [](const std::string& text) {
    return text.substr(0, text.find("DeletionDate=") + 13);
  };
  EXPECT_EQ(withoutTime(ours), withoutTime(theirs));
  EXPECT_EQ(ours.size(), theirs.size());
}

}  // namespace
}  // namespace halvorn
