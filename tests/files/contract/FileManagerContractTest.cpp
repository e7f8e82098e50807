// What every file manager answers, the one in memory and the one on the disk.
#include "tests/files/contract/FileWorlds.h"
#include "tests/support/FailureText.h"

#include <set>

namespace halvorn {
namespace {

class FileManagerContract : public testing::TestWithParam<NamedFileWorld> {
 protected:
  Text path(const std::string& name) const { return world->at(name); }
  FileManager& files() { return world->files(); }
  // What the operation came to, without the place of the world: "File exists: there (make)".
  std::string told(const std::optional<FileFailure>& failure) {
    std::string text = textOf(failure);
    const std::string top = world->at("");
    for (auto at = text.find(top); at != std::string::npos; at = text.find(top)) text.erase(at, top.size());
    return text;
  }
  std::string copying(const std::string& from, const std::string& to) {
    return told(files().copyItem(path(from), path(to)));
  }
  std::string removing(const std::string& name) { return told(files().removeItem(path(name))); }
  std::string contents(const std::string& name) {
    return files().readFile(path(name), 1000).value_or("(none)");
  }

  std::unique_ptr<FileWorld> world = GetParam().make();
};

TEST_P(FileManagerContract, ExistenceTestsFollowLinks) {
  world->addFile("file", "x");
  world->addLink("link", "file");
  world->addLink("broken", "nowhere");
  world->addLink("loop", "loop");
  EXPECT_TRUE(files().fileExists(path("file")));
  EXPECT_TRUE(files().fileExists(path("link")));
  EXPECT_FALSE(files().fileExists(path("broken")));
  EXPECT_FALSE(files().fileExists(path("loop")));
  EXPECT_FALSE(files().fileExists(path("missing")));
  EXPECT_FALSE(files().fileExists(""));
}

TEST_P(FileManagerContract, ALinkToAFolderIsAFolder) {
  world->addFolder("folder");
  world->addFile("file", "x");
  world->addLink("link", "folder");
  EXPECT_TRUE(files().isDirectory(path("folder")));
  EXPECT_TRUE(files().isDirectory(path("link")));
  EXPECT_FALSE(files().isDirectory(path("file")));
  EXPECT_FALSE(files().isDirectory(path("missing")));
}

TEST_P(FileManagerContract, NothingIsWritableWhereNothingIs) {
  world->addFile("file", "x");
  EXPECT_TRUE(files().isWritable(path("file")));
  EXPECT_FALSE(files().isWritable(path("missing")));
}

TEST_P(FileManagerContract, AListingHoldsHiddenEntriesButNotTheFolderItself) {
  world->addFile("folder/.hidden", "");
  world->addFile("folder/shown", "");
  world->addFile("folder/inner/deep", "");
  const auto names = files().contentsOfDirectory(path("folder"));
  ASSERT_TRUE(names);
  EXPECT_EQ(std::set<Text>(names->begin(), names->end()), (std::set<Text>{".hidden", "inner", "shown"}));
  EXPECT_FALSE(files().contentsOfDirectory(path("folder/shown")));
  EXPECT_FALSE(files().contentsOfDirectory(path("missing")));
}

TEST_P(FileManagerContract, ReadingTakesRegularFilesUpToTheLimit) {
  world->addFile("file", "12345");
  world->addFolder("folder");
  world->addPipe("pipe");
  world->addLink("link", "file");
  EXPECT_EQ(files().readFile(path("file"), 5), "12345");
  EXPECT_EQ(files().readFile(path("file"), 4), std::nullopt);
  EXPECT_EQ(files().readFile(path("link"), 5), "12345");
  EXPECT_EQ(files().readFile(path("folder"), 5), std::nullopt);
  EXPECT_EQ(files().readFile(path("pipe"), 5), std::nullopt);
  EXPECT_EQ(files().readFile(path("missing"), 5), std::nullopt);
}

TEST_P(FileManagerContract, ACopyHoldsEverythingAndLeavesTheOriginal) {
  world->addFile("from/a/deep", "deep");
  world->addFile("from/top", "top");
  world->addLink("from/link", "top");
  EXPECT_EQ(told(files().copyItem(path("from"), path("to"))), "");
  EXPECT_EQ(contents("to/a/deep"), "deep");
  EXPECT_EQ(contents("to/link"), "top");
  EXPECT_EQ(contents("from/top"), "top");
}

TEST_P(FileManagerContract, ACopyOfALinkIsALink) {
  world->addFile("file", "x");
  world->addLink("link", "file");
  EXPECT_EQ(told(files().copyItem(path("link"), path("copy"))), "");
  EXPECT_EQ(told(files().removeItem(path("file"))), "");
  EXPECT_FALSE(files().fileExists(path("copy")));
}

TEST_P(FileManagerContract, ACopyRefusesATargetThatIsThere) {
  world->addFile("file", "new");
  world->addFile("there", "old");
  world->addFolder("folder");
  world->addLink("broken", "nowhere");
  EXPECT_EQ(copying("file", "there"), "File exists: there (make)");
  EXPECT_EQ(copying("file", "folder"), "File exists: folder (make)");
  EXPECT_EQ(copying("folder", "there"), "File exists: there (make)");
  EXPECT_EQ(copying("file", "broken"), "File exists: broken (make)") << "a link to nowhere counts";
  EXPECT_EQ(contents("there"), "old");
  EXPECT_FALSE(files().fileExists(path("nowhere")));
}

TEST_P(FileManagerContract, ACopyFailsWithoutAnOriginalOrAFolderToPutItIn) {
  world->addFile("file", "x");
  const std::string noPath = "the path is empty or has a NUL in it:  (reach)";
  EXPECT_EQ(copying("missing", "to"), "No such file or directory: missing (look)");
  EXPECT_EQ(copying("missing/from", "to"), "No such file or directory: missing/from (reach)");
  EXPECT_EQ(copying("file", "missing/to"), "No such file or directory: missing/to (reach)");
  EXPECT_EQ(copying("file", "file/to"), "Not a directory: file/to (reach)");
  EXPECT_EQ(told(files().copyItem(path("file"), "")), noPath);
  EXPECT_EQ(told(files().copyItem("", path("to"))), noPath);
}

TEST_P(FileManagerContract, ACopyIntoItselfIsRefusedAndMakesNothing) {
  world->addFile("from/inner/file", "x");
  EXPECT_EQ(copying("from", "from/inner/to"), "it would lie inside of what is copied: from/inner/to (make)");
  EXPECT_EQ(copying("from", "from/inner"), "it would lie inside of what is copied: from/inner (make)");
  EXPECT_EQ(copying("from", "from"), "File exists: from (make)");
  EXPECT_FALSE(files().fileExists(path("from/inner/to")));
  EXPECT_EQ(contents("from/inner/file"), "x");
}

TEST_P(FileManagerContract, WhatLooksLikeTheSameFolderByNameIsNotInside) {
  world->addFile("from/file", "x");
  world->addFolder("from2");
  EXPECT_EQ(told(files().copyItem(path("from"), path("from2/to"))), "");
  EXPECT_EQ(contents("from2/to/file"), "x");
}

TEST_P(FileManagerContract, InsideIsTheItemItselfAndAllBelowByWhatIsOnDisk) {
  world->addFile("a/b/file", "x");
  world->addFolder("other");
  world->addLink("link", "a");
  EXPECT_TRUE(files().isInside(path("a"), path("a")));
  EXPECT_TRUE(files().isInside(path("a/b/file"), path("a")));
  EXPECT_TRUE(files().isInside(path("link/b/file"), path("a")));
  EXPECT_FALSE(files().isInside(path("a"), path("a/b")));
  EXPECT_FALSE(files().isInside(path("link"), path("a"))) << "the link itself stands outside";
  EXPECT_FALSE(files().isInside(path("other"), path("a")));
  EXPECT_FALSE(files().isInside(path("missing"), path("a")));
  EXPECT_FALSE(files().isInside(path("a"), path("missing")));
}

TEST_P(FileManagerContract, ARemovalTakesTheWholeTreeAndFollowsNoLink) {
  world->addFile("outside/file", "x");
  world->addFile("folder/a/b/deep", "x");
  world->addFile("folder/.hidden", "x");
  world->addLink("folder/link", world->at("outside"));
  world->addLink("top", "outside");
  EXPECT_EQ(told(files().removeItem(path("folder"))), "");
  EXPECT_FALSE(files().fileExists(path("folder")));
  EXPECT_EQ(told(files().removeItem(path("top"))), "");
  EXPECT_EQ(contents("outside/file"), "x");
  EXPECT_EQ(removing("missing"), "No such file or directory: missing (remove)");
  EXPECT_EQ(removing("missing/file"), "No such file or directory: missing/file (reach)");
}

TEST_P(FileManagerContract, ANameThatIsTooLongIsNamedWithTheReason) {
  world->addFile("file", "x");
  const std::string name(256, 'n');
  EXPECT_EQ(copying("file", name), "File name too long: " + name + " (make)");
}

TEST_P(FileManagerContract, WhereThisPersonMayNotWriteNothingIsCopiedOrRemoved) {
  world->addFile("file", "x");
  world->addFile("closed/file", "kept");
  world->close("closed");
  world->asOrdinaryPerson([&] {
    EXPECT_EQ(copying("file", "closed/new"), "Permission denied: closed/new (make)");
    EXPECT_EQ(removing("closed/file"), "Permission denied: closed/file (remove)");
  });
  EXPECT_EQ(contents("closed/file"), "kept");
}

TEST_P(FileManagerContract, TheFailureNamesTheVeryItemDeepInTheTree) {
  world->addFile("from/a/b/secret", "x");
  world->hide("from/a/b/secret");
  world->asOrdinaryPerson(
      [&] { EXPECT_EQ(copying("from", "to"), "Permission denied: from/a/b/secret (open)"); });
}

TEST_P(FileManagerContract, ACreatedFileWasNotThereBefore) {
  EXPECT_TRUE(files().createEmptyFile(path("new")));
  EXPECT_EQ(contents("new"), "");
  EXPECT_FALSE(files().createEmptyFile(path("new")));
  world->addLink("broken", "nowhere");
  EXPECT_FALSE(files().createEmptyFile(path("broken")));
  EXPECT_FALSE(files().createEmptyFile(path("missing/new")));
}

TEST_P(FileManagerContract, OnlyExistingFilesOpenForReadingAndWriting) {
  world->addFile("file", "x");
  world->addFolder("folder");
  EXPECT_TRUE(files().opensForReadingAndWriting(path("file")));
  EXPECT_FALSE(files().opensForReadingAndWriting(path("folder")));
  EXPECT_FALSE(files().opensForReadingAndWriting(path("missing")));
}

TEST_P(FileManagerContract, NamesMayHoldAnyBytes) {
  for (const std::string name :
       {"a b", "line\nbreak", "\xE4\xFF", "%s 'q' \"d\"", "-rf", "\xF0\x9F\x8D\x8F"}) {
    world->addFile("from/" + name, name);
    EXPECT_EQ(told(files().copyItem(path("from/" + name), path("to " + name))), "");
    EXPECT_EQ(contents("to " + name), name);
  }
  EXPECT_EQ(files().contentsOfDirectory(path("from"))->size(), 6u);
}

INSTANTIATE_TEST_SUITE_P(All, FileManagerContract, testing::ValuesIn(fileWorlds()),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace halvorn
