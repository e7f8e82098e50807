// The permanent removal on a real disk.
#include "tests/files/adapter/CopyScene.h"
#include "tests/support/FailureText.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/SampleTrees.h"

namespace halvorn {
namespace {

class TreeRemoval : public CopyScene {};

TEST_F(TreeRemoval, EverythingInAFolderGoes) {
  SampleTrees::makeDeep(at("tree"), 12, 3);
  ASSERT_EQ(::mkfifo(at("tree/pipe").c_str(), 0600), 0);
  EXPECT_EQ(textOf(files.removeItem(at("tree"))), "");
  EXPECT_FALSE(exists("tree"));
}

TEST_F(TreeRemoval, LinksAreRemovedAndWhatTheyLeadToStays) {
  addFile("outside/file", "kept");
  addFolder("tree");
  addLink("tree/folder", at("outside"));
  addLink("tree/file", at("outside/file"));
  addLink("tree/up", "..");
  EXPECT_EQ(textOf(files.removeItem(at("tree"))), "");
  EXPECT_EQ(contents("outside/file"), "kept");
}

TEST_F(TreeRemoval, ASlashAtTheEndOfALinkDoesNotLeadThroughIt) {
  addFile("outside/file", "kept");
  addLink("link", at("outside"));
  EXPECT_EQ(textOf(files.removeItem(at("link") + "/")), "");
  EXPECT_FALSE(exists("link"));
  EXPECT_EQ(contents("outside/file"), "kept");
}

TEST_F(TreeRemoval, AFurtherNameOfAFileKeepsTheFile) {
  addFile("outside", "kept");
  addFolder("tree");
  ASSERT_EQ(::link(at("outside").c_str(), at("tree/name").c_str()), 0);
  EXPECT_EQ(textOf(files.removeItem(at("tree"))), "");
  EXPECT_EQ(contents("outside"), "kept");
}

TEST_F(TreeRemoval, NothingInItGoesWhenTheFolderItStandsInIsClosed) {
  addFile("closed/file", "kept");
  ASSERT_EQ(::chmod(at("closed").c_str(), 0555), 0);
  const OrdinaryUser user(at(""));
  EXPECT_EQ(textOf(files.removeItem(at("closed/file"))),
            "Permission denied: " + at("closed/file") + " (remove)");
  EXPECT_EQ(contents("closed/file"), "kept");
  ASSERT_EQ(::chmod(at("closed").c_str(), 0755), 0);
}

TEST_F(TreeRemoval, WhatCannotBeRemovedIsSaidAndTheRestGoes) {
  addFile("tree/closed/file", "kept");
  addFile("tree/open/file");
  ASSERT_EQ(::chmod(at("tree/closed").c_str(), 0555), 0);
  const OrdinaryUser user(at(""));
  EXPECT_EQ(textOf(files.removeItem(at("tree"))),
            "Permission denied: " + at("tree/closed/file") + " (remove)");
  EXPECT_EQ(contents("tree/closed/file"), "kept");
  EXPECT_FALSE(exists("tree/open"));
  ASSERT_EQ(::chmod(at("tree/closed").c_str(), 0755), 0);
}

TEST_F(TreeRemoval, AnEmptyFolderThatMayNotBeReadGoesToo) {
  addFolder("tree/closed");
  ASSERT_EQ(::chmod(at("tree/closed").c_str(), 0), 0);
  EXPECT_EQ(textOf(files.removeItem(at("tree"))), "");
  EXPECT_FALSE(exists("tree"));
}

TEST_F(TreeRemoval, PathsThatNameNoItemInAFolderRemoveNothing) {
  addFile("folder/file", "kept");
  for (const std::string& path : {std::string("/"), std::string(""), at("folder/."), at("folder/..")}) {
    EXPECT_NE(textOf(files.removeItem(path)), "") << path;
  }
  EXPECT_EQ(contents("folder/file"), "kept");
}

}  // namespace
}  // namespace halvorn
