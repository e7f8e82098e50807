#include "train/InstallFunction.h"

#include <gtest/gtest.h>

#include "tests/fakes/FakeFileChangeNotices.h"
#include "tests/fakes/FakeFileManager.h"
#include "tests/fakes/FakeTrash.h"
#include "tests/fakes/FaultyFileManager.h"
#include "tests/fakes/RecordingLog.h"

namespace halvorn {
namespace {

using Strings = std::vector<std::string>;

class InstallFunction : public testing::Test {
 protected:
  InstallFunction() {
    disk.addFile("/Volumes/NAS/Nas.app/Contents/Info.plist", "version 2");
    disk.addFolder("/Applications");
  }
  void addOldCopy() { disk.addFile("/Applications/Nas.app/Contents/Info.plist", "version 1"); }
  InstallServices services() { return {.files = files, .trash = trash, .notices = notices, .log = log}; }
  InstallResult install(const OptionalText& wrapper = std::nullopt,
                        const Text& destination = "/Applications/Nas.app") {
    return InstallApplication(services(), "/Volumes/NAS/Nas.app", destination, wrapper);
  }
  // What the log says where the copy would be made in what it is made from, or the other way round.
  static Strings refusal(const std::string& target, const std::string& line) {
    return {"CAUSE -- what is copied and what is replaced lie one in the other: " + target + " (make)",
            line + target};
  }
  std::string contents(const std::string& path) {
    const auto* node = disk.node(path);
    return node == nullptr ? "(none)" : node->contents;
  }

  FakeFileManager disk;
  FaultyFileManager files{disk};
  FakeTrash trash{disk};
  FakeFileChangeNotices notices;
  RecordingLog log;
};

TEST_F(InstallFunction, NoWrapperMeansTrashCopyAndNoticeOnly) {
  addOldCopy();
  EXPECT_EQ(install(), InstallResult::Installed);
  EXPECT_EQ(disk.calls, (Strings{"recycle Nas.app", "copy /Volumes/NAS/Nas.app -> /Applications/Nas.app"}));
  EXPECT_EQ(notices.paths, Strings{"/Applications/Nas.app"});
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 2");
  EXPECT_EQ(log.lines(), Strings{});
}

TEST_F(InstallFunction, NothingAtTheDestinationMeansNoTrashOperation) {
  EXPECT_EQ(install(), InstallResult::Installed);
  EXPECT_TRUE(trash.operations.empty());
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 2");
}

TEST_F(InstallFunction, TheTrashIsAskedOnceWithTheParentFolderAndTheLastComponent) {
  addOldCopy();
  EXPECT_EQ(install(), InstallResult::Installed);
  ASSERT_EQ(trash.operations.size(), 1u);
  EXPECT_EQ(trash.operations[0],
            (FakeTrash::Operation{.sourceFolder = "/Applications", .names = {"Nas.app"}}));
  EXPECT_EQ(trash.trashed.at("/Applications/Nas.app/Contents/Info.plist").contents, "version 1");
}

TEST_F(InstallFunction, ATrashFailureLogsBothMessagesInOrderAndCopiesNothing) {
  addOldCopy();
  trash.refuses = true;
  EXPECT_EQ(install(), InstallResult::NotTrashed);
  EXPECT_EQ(log.lines(), (Strings{"CAUSE -- Permission denied: /Applications/Nas.app (move)",
                                  "ERROR -- Could not trash '/Applications/Nas.app'",
                                  "ERROR -- Could not trash existing /Applications/Nas.app"}));
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 1");
  EXPECT_EQ(disk.calls, Strings{"recycle Nas.app"});
  EXPECT_EQ(notices.paths, Strings{});
}

TEST_F(InstallFunction, AFailedCopyOfTheApplicationGivesTwoAndIsNotRolledBack) {
  addOldCopy();
  files.copiesThatFail = {"/Applications/Nas.app"};
  EXPECT_EQ(install(), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(),
            (Strings{"CAUSE -- No space left on device: /Applications/Nas.app/deep/within (write)",
                     "ERROR -- Could not copy myself to /Applications/Nas.app"}));
  EXPECT_EQ(trash.trashed.at("/Applications/Nas.app/Contents/Info.plist").contents, "version 1");
  EXPECT_EQ(disk.node("/Applications/Nas.app"), nullptr);
  EXPECT_EQ(notices.paths, Strings{});
}

TEST_F(InstallFunction, ACopyThatIsForeseenToFailMovesNothing) {
  addOldCopy();
  disk.addFile("/Volumes/NAS/Extras/Licence", "licence 2");
  files.copiesForeseenToFail = {"/Applications/Nas.app"};
  EXPECT_EQ(install(Text("/Volumes/NAS/Extras")), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(), (Strings{"CAUSE -- Too many open files: /Applications/Nas.app (make)",
                                  "ERROR -- Could not copy myself to /Applications/Nas.app"}));
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 1");
  EXPECT_EQ(disk.calls, Strings{});
}

TEST_F(InstallFunction, WhatIsForeseenIsWhatTheInstallationFailsAt) {
  EXPECT_EQ(obstacleToInstalling(files, "/Volumes/NAS/Nas.app", "/Applications/Nas.app"), std::nullopt);
  const auto obstacle = obstacleToInstalling(files, "/Volumes/NAS/Nas.app", "/Volumes/NAS/Nas.app/In.app");
  ASSERT_TRUE(obstacle);
  EXPECT_EQ(obstacle->path, Text("/Volumes/NAS/Nas.app/In.app"));
  EXPECT_EQ(install(std::nullopt, "/Volumes/NAS/Nas.app/In.app"), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines().front(),
            "CAUSE -- " + obstacle->reason.bytes() + ": /Volumes/NAS/Nas.app/In.app (make)");
}

TEST_F(InstallFunction, AFailedCopyOfAnAuxiliaryItemSaysWhy) {
  disk.addFile("/Volumes/NAS/Extras/Licence", "licence 2");
  files.copiesThatFail = {"/Applications/Licence"};
  EXPECT_EQ(install(Text("/Volumes/NAS/Extras")), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(),
            (Strings{"CAUSE -- No space left on device: /Applications/Licence/deep/within (write)",
                     "ERROR -- Could not copy auxiliary item to /Applications/Licence"}));
}

TEST_F(InstallFunction, ACauseIsOneLineWhateverTheNamesHold) {
  const Text destination = "/Applications/N\nERROR -- forged";
  files.copiesThatFail = {destination.bytes()};
  EXPECT_EQ(install(std::nullopt, destination), InstallResult::CopyFailed);
  ASSERT_EQ(log.lines().size(), 2u);
  for (const std::string& line : log.lines()) EXPECT_EQ(line.find('\n'), std::string::npos) << line;
}

TEST_F(InstallFunction, TheResultsAreTheStatusesThatTheToolExitsWith) {
  EXPECT_EQ(static_cast<int>(InstallResult::Installed), 0);
  EXPECT_EQ(static_cast<int>(InstallResult::NotTrashed), 1);
  EXPECT_EQ(static_cast<int>(InstallResult::CopyFailed), 2);
}

TEST_F(InstallFunction, ASourceThatIsTheDestinationIsRefusedAndLosesNothing) {
  const Text path = "/Volumes/NAS/Nas.app";
  EXPECT_EQ(InstallApplication(services(), path, path), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(), refusal("/Volumes/NAS/Nas.app", "ERROR -- Could not copy myself to "));
  EXPECT_EQ(disk.calls, Strings{});
}

TEST_F(InstallFunction, ASourceInsideTheDestinationIsRefusedAndLosesNothing) {
  disk.addFile("/Applications/Nas.app/Contents/Resources/Nas.app/Contents/Info.plist", "inner");
  const auto before = disk.tree("/Applications");
  const auto status = InstallApplication(services(), "/Applications/Nas.app/Contents/Resources/Nas.app",
                                         "/Applications/Nas.app");
  EXPECT_EQ(status, InstallResult::CopyFailed);
  EXPECT_EQ(disk.tree("/Applications"), before);
  EXPECT_EQ(log.lines(), refusal("/Applications/Nas.app", "ERROR -- Could not copy myself to "));
}

TEST_F(InstallFunction, ADestinationInsideTheSourceIsRefusedAlsoWhenItIsNotThereYet) {
  EXPECT_EQ(install(std::nullopt, "/Volumes/NAS/Nas.app/Contents/Nas.app"), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(),
            refusal("/Volumes/NAS/Nas.app/Contents/Nas.app", "ERROR -- Could not copy myself to "));
  EXPECT_EQ(disk.calls, Strings{});
}

TEST_F(InstallFunction, ASourceReachedThroughALinkIntoTheDestinationIsRefused) {
  addOldCopy();
  disk.addLink("/Volumes/Link", "/Applications");
  const auto status = InstallApplication(services(), "/Volumes/Link/Nas.app", "/Applications/Nas.app");
  EXPECT_EQ(status, InstallResult::CopyFailed);
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 1");
  EXPECT_EQ(disk.calls, Strings{});
}

class InstallFunctionWithWrapper : public InstallFunction {
 protected:
  InstallFunctionWithWrapper() {
    disk.addFile("/Volumes/NAS/Extras/.hidden", "hidden 2");
    disk.addFile("/Volumes/NAS/Extras/Docs/Read me.txt", "docs 2");
    disk.addFile("/Volumes/NAS/Extras/Licence", "licence 2");
  }
  InstallResult installWrapped(const Text& destination = "/Applications/Nas.app") {
    return install(Text("/Volumes/NAS/Extras"), destination);
  }
};

TEST_F(InstallFunctionWithWrapper, EachTopLevelEntryGoesIntoTheDestinationsParentFolderBeforeTheApplication) {
  EXPECT_EQ(installWrapped(), InstallResult::Installed);
  EXPECT_EQ(disk.calls, (Strings{"copy /Volumes/NAS/Extras/.hidden -> /Applications/.hidden",
                                 "copy /Volumes/NAS/Extras/Docs -> /Applications/Docs",
                                 "copy /Volumes/NAS/Extras/Licence -> /Applications/Licence",
                                 "copy /Volumes/NAS/Nas.app -> /Applications/Nas.app"}));
  EXPECT_EQ(notices.paths, (Strings{"/Applications/.hidden", "/Applications/Docs", "/Applications/Licence",
                                    "/Applications/Nas.app"}));
  EXPECT_EQ(contents("/Applications/Docs/Read me.txt"), "docs 2");
}

TEST_F(InstallFunctionWithWrapper, AnItemOfTheSameNameIsRemovedForGoodAndReplaced) {
  disk.addFile("/Applications/Licence", "licence 1");
  EXPECT_EQ(installWrapped(), InstallResult::Installed);
  EXPECT_EQ(contents("/Applications/Licence"), "licence 2");
  EXPECT_TRUE(trash.operations.empty());
  EXPECT_EQ(log.lines(), Strings{});
}

TEST_F(InstallFunctionWithWrapper, WhatWouldBeReplacedIsToldAndStays) {
  addOldCopy();
  disk.addFile("/Applications/Licence", "licence 1");
  disk.addFile("/Applications/Stranger", "");
  const Replacements replaced = replacementsOf(files, "/Applications/Nas.app", Text("/Volumes/NAS/Extras"));
  EXPECT_EQ(replaced.trashed, Text("/Applications/Nas.app"));
  EXPECT_EQ(replaced.removed, std::vector<Text>{"/Applications/Licence"});
  EXPECT_TRUE(replacementsOf(files, "/Applications/Nas.app", std::nullopt).removed.empty());
  EXPECT_EQ(replacementsOf(files, "/Applications/Other.app", std::nullopt).trashed, std::nullopt);
  EXPECT_EQ(disk.calls, Strings{});
}

TEST_F(InstallFunctionWithWrapper, ARemovalThatFailsIsLoggedAndTheCopyOntoWhatIsLeftGivesTwo) {
  disk.addFile("/Applications/Docs/Read me.txt", "docs 1");
  files.removalsThatFail = {"/Applications/Docs"};
  EXPECT_EQ(installWrapped(), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(), (Strings{"CAUSE -- Operation not permitted: /Applications/Docs/deep/within (remove)",
                                  "ERROR -- Could not delete /Applications/Docs",
                                  "CAUSE -- File exists: /Applications/Docs (make)",
                                  "ERROR -- Could not copy auxiliary item to /Applications/Docs"}));
  EXPECT_EQ(contents("/Applications/Docs/Read me.txt"), "docs 1");
  EXPECT_EQ(contents("/Applications/.hidden"), "hidden 2") << "items already copied stay";
  EXPECT_EQ(disk.node("/Applications/Licence"), nullptr) << "the first failure ends the installation";
  EXPECT_EQ(disk.node("/Applications/Nas.app"), nullptr);
  EXPECT_EQ(notices.paths, Strings{"/Applications/.hidden"});
}

TEST_F(InstallFunctionWithWrapper, ALinkToNowhereAtTheTargetCountsAsAbsentSoTheCopyFails) {
  disk.addLink("/Applications/Licence", "/nowhere");
  EXPECT_EQ(installWrapped(), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(), (Strings{"CAUSE -- File exists: /Applications/Licence (make)",
                                  "ERROR -- Could not copy auxiliary item to /Applications/Licence"}));
  EXPECT_EQ(contents("/Applications/Licence"), "/nowhere");
}

TEST_F(InstallFunctionWithWrapper, AMissingParentFolderBecomesACopyOfTheWholeWrapper) {
  EXPECT_EQ(installWrapped("/Applications/Nas/Nas.app"), InstallResult::Installed);
  EXPECT_EQ(disk.calls, (Strings{"copy /Volumes/NAS/Extras -> /Applications/Nas",
                                 "copy /Volumes/NAS/Nas.app -> /Applications/Nas/Nas.app"}));
  EXPECT_EQ(notices.paths, (Strings{"/Applications/Nas", "/Applications/Nas/Nas.app"}));
  EXPECT_EQ(contents("/Applications/Nas/Docs/Read me.txt"), "docs 2");
}

TEST_F(InstallFunctionWithWrapper, ASameNamedCopyThatCameWithTheWholeWrapperIsTrashedAndReplaced) {
  disk.addFile("/Volumes/NAS/Extras/Nas.app/Contents/Info.plist", "from the wrapper");
  EXPECT_EQ(installWrapped("/Applications/Nas/Nas.app"), InstallResult::Installed);
  EXPECT_EQ(trash.trashed.at("/Applications/Nas/Nas.app/Contents/Info.plist").contents, "from the wrapper");
  EXPECT_EQ(contents("/Applications/Nas/Nas.app/Contents/Info.plist"), "version 2");
}

TEST_F(InstallFunctionWithWrapper,
       AnItemThatBearsTheDestinationsNameReplacesTheOldCopyAndIsThenTrashedItself) {
  addOldCopy();
  disk.addFile("/Volumes/NAS/Extras/Nas.app/Contents/Info.plist", "from the wrapper");
  EXPECT_EQ(installWrapped(), InstallResult::Installed);
  EXPECT_EQ(trash.trashed.at("/Applications/Nas.app/Contents/Info.plist").contents, "from the wrapper");
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 2");
}

TEST_F(InstallFunctionWithWrapper, AWrapperThatCannotBeCopiedWholeGivesTwo) {
  files.copiesThatFail = {"/Applications/Nas"};
  EXPECT_EQ(installWrapped("/Applications/Nas/Nas.app"), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(), (Strings{"CAUSE -- No space left on device: /Applications/Nas/deep/within (write)",
                                  "ERROR -- Could not copy wrapper to /Applications/Nas"}));
  EXPECT_EQ(notices.paths, Strings{});
}

TEST_F(InstallFunctionWithWrapper, AListingThatFailsCountsAsEmpty) {
  files.listingsThatFail = {"/Volumes/NAS/Extras"};
  EXPECT_EQ(installWrapped(), InstallResult::Installed);
  EXPECT_EQ(disk.calls, Strings{"copy /Volumes/NAS/Nas.app -> /Applications/Nas.app"});
  EXPECT_EQ(log.lines(), Strings{});
}

TEST_F(InstallFunctionWithWrapper, AWrapperThatIsTheTargetFolderIsRefusedBeforeAnyItemIsRemoved) {
  const auto before = disk.tree("/Volumes/NAS/Extras");
  EXPECT_EQ(installWrapped("/Volumes/NAS/Extras/Nas.app"), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(),
            refusal("/Volumes/NAS/Extras/.hidden", "ERROR -- Could not copy auxiliary item to "));
  EXPECT_EQ(disk.tree("/Volumes/NAS/Extras"), before);
  EXPECT_EQ(disk.calls, Strings{});
}

TEST_F(InstallFunctionWithWrapper, AnItemWhoseReplacementWouldRemoveTheWrapperIsRefused) {
  disk.addFile("/Applications/Docs/Extras/Docs/Read me.txt", "docs 2");
  EXPECT_EQ(install(Text("/Applications/Docs/Extras")), InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(), refusal("/Applications/Docs", "ERROR -- Could not copy auxiliary item to "));
  EXPECT_EQ(contents("/Applications/Docs/Extras/Docs/Read me.txt"), "docs 2");
}

TEST_F(InstallFunctionWithWrapper, AnItemWhoseReplacementWouldRemoveTheSourceIsRefused) {
  disk.addFile("/Applications/Docs/Nas.app/Contents/Info.plist", "version 2");
  const auto status = InstallApplication(services(), "/Applications/Docs/Nas.app", "/Applications/Nas.app",
                                         Text("/Volumes/NAS/Extras"));
  EXPECT_EQ(status, InstallResult::CopyFailed);
  EXPECT_EQ(log.lines(), refusal("/Applications/Docs", "ERROR -- Could not copy auxiliary item to "));
  EXPECT_EQ(contents("/Applications/Docs/Nas.app/Contents/Info.plist"), "version 2");
}

TEST_F(InstallFunctionWithWrapper, AnItemThatHoldsItsOwnTargetIsRefused) {
  disk.addFile("/Volumes/NAS/Extras/Docs/Docs/old", "old");
  EXPECT_EQ(installWrapped("/Volumes/NAS/Extras/Docs/Nas.app"), InstallResult::CopyFailed);
  EXPECT_EQ(contents("/Volumes/NAS/Extras/Docs/Docs/old"), "old");
}

TEST_F(InstallFunctionWithWrapper, WrapperItemsStayWhenTheTrashRefuses) {
  addOldCopy();
  trash.refuses = true;
  EXPECT_EQ(installWrapped(), InstallResult::NotTrashed);
  EXPECT_EQ(contents("/Applications/Licence"), "licence 2");
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 1");
}

}  // namespace
}  // namespace halvorn
