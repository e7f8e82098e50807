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
  std::int32_t install(const OptionalText& wrapper = std::nullopt,
                       const Text& destination = "/Applications/Nas.app") {
    return InstallApplication(services(), "/Volumes/NAS/Nas.app", destination, wrapper);
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
  EXPECT_EQ(install(), 0);
  EXPECT_EQ(disk.calls, (Strings{"recycle Nas.app", "copy /Volumes/NAS/Nas.app -> /Applications/Nas.app"}));
  EXPECT_EQ(notices.paths, Strings{"/Applications/Nas.app"});
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 2");
  EXPECT_EQ(log.lines(), Strings{});
}

TEST_F(InstallFunction, NothingAtTheDestinationMeansNoTrashOperation) {
  EXPECT_EQ(install(), 0);
  EXPECT_TRUE(trash.operations.empty());
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 2");
}

TEST_F(InstallFunction, TheTrashIsAskedOnceWithTheParentFolderAndTheLastComponent) {
  addOldCopy();
  EXPECT_EQ(install(), 0);
  ASSERT_EQ(trash.operations.size(), 1u);
  EXPECT_EQ(trash.operations[0],
            (FakeTrash::Operation{.sourceFolder = "/Applications", .names = {"Nas.app"}}));
  EXPECT_EQ(trash.trashed.at("/Applications/Nas.app/Contents/Info.plist").contents, "version 1");
}

TEST_F(InstallFunction, ATrashFailureLogsBothMessagesInOrderAndCopiesNothing) {
  addOldCopy();
  trash.refuses = true;
  EXPECT_EQ(install(), 1);
  EXPECT_EQ(log.lines(), (Strings{"ERROR -- Could not trash '/Applications/Nas.app'",
                                  "ERROR -- Could not trash existing /Applications/Nas.app"}));
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 1");
  EXPECT_EQ(disk.calls, Strings{"recycle Nas.app"});
  EXPECT_EQ(notices.paths, Strings{});
}

TEST_F(InstallFunction, AFailedCopyOfTheApplicationGivesTwoAndIsNotRolledBack) {
  addOldCopy();
  files.copiesThatFail = {"/Applications/Nas.app"};
  EXPECT_EQ(install(), 2);
  EXPECT_EQ(log.lines(), Strings{"ERROR -- Could not copy myself to /Applications/Nas.app"});
  EXPECT_EQ(trash.trashed.at("/Applications/Nas.app/Contents/Info.plist").contents, "version 1");
  EXPECT_EQ(disk.node("/Applications/Nas.app"), nullptr);
  EXPECT_EQ(notices.paths, Strings{});
}

TEST_F(InstallFunction, ASourceThatIsTheDestinationIsRefusedAndLosesNothing) {
  const Text path = "/Volumes/NAS/Nas.app";
  EXPECT_EQ(InstallApplication(services(), path, path), 2);
  EXPECT_EQ(log.lines(), Strings{"ERROR -- Could not copy myself to /Volumes/NAS/Nas.app"});
  EXPECT_EQ(disk.calls, Strings{});
}

TEST_F(InstallFunction, ASourceInsideTheDestinationIsRefusedAndLosesNothing) {
  disk.addFile("/Applications/Nas.app/Contents/Resources/Nas.app/Contents/Info.plist", "inner");
  const auto before = disk.tree("/Applications");
  const auto status = InstallApplication(services(), "/Applications/Nas.app/Contents/Resources/Nas.app",
                                         "/Applications/Nas.app");
  EXPECT_EQ(status, 2);
  EXPECT_EQ(disk.tree("/Applications"), before);
  EXPECT_EQ(log.lines(), Strings{"ERROR -- Could not copy myself to /Applications/Nas.app"});
}

TEST_F(InstallFunction, ADestinationInsideTheSourceIsRefusedAlsoWhenItIsNotThereYet) {
  EXPECT_EQ(install(std::nullopt, "/Volumes/NAS/Nas.app/Contents/Nas.app"), 2);
  EXPECT_EQ(log.lines(), Strings{"ERROR -- Could not copy myself to /Volumes/NAS/Nas.app/Contents/Nas.app"});
  EXPECT_EQ(disk.calls, Strings{});
}

TEST_F(InstallFunction, ASourceReachedThroughALinkIntoTheDestinationIsRefused) {
  addOldCopy();
  disk.addLink("/Volumes/Link", "/Applications");
  const auto status = InstallApplication(services(), "/Volumes/Link/Nas.app", "/Applications/Nas.app");
  EXPECT_EQ(status, 2);
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
  std::int32_t installWrapped(const Text& destination = "/Applications/Nas.app") {
    return install(Text("/Volumes/NAS/Extras"), destination);
  }
};

TEST_F(InstallFunctionWithWrapper, EachTopLevelEntryGoesIntoTheDestinationsParentFolderBeforeTheApplication) {
  EXPECT_EQ(installWrapped(), 0);
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
  EXPECT_EQ(installWrapped(), 0);
  EXPECT_EQ(contents("/Applications/Licence"), "licence 2");
  EXPECT_TRUE(trash.operations.empty());
  EXPECT_EQ(log.lines(), Strings{});
}

TEST_F(InstallFunctionWithWrapper, ARemovalThatFailsIsLoggedAndTheCopyOntoWhatIsLeftGivesTwo) {
  disk.addFile("/Applications/Docs/Read me.txt", "docs 1");
  files.removalsThatFail = {"/Applications/Docs"};
  EXPECT_EQ(installWrapped(), 2);
  EXPECT_EQ(log.lines(), (Strings{"ERROR -- Could not delete /Applications/Docs",
                                  "ERROR -- Could not copy auxiliary item to /Applications/Docs"}));
  EXPECT_EQ(contents("/Applications/Docs/Read me.txt"), "docs 1");
  EXPECT_EQ(contents("/Applications/.hidden"), "hidden 2") << "items already copied stay";
  EXPECT_EQ(disk.node("/Applications/Licence"), nullptr) << "the first failure ends the installation";
  EXPECT_EQ(disk.node("/Applications/Nas.app"), nullptr);
  EXPECT_EQ(notices.paths, Strings{"/Applications/.hidden"});
}

TEST_F(InstallFunctionWithWrapper, ALinkToNowhereAtTheTargetCountsAsAbsentSoTheCopyFails) {
  disk.addLink("/Applications/Licence", "/nowhere");
  EXPECT_EQ(installWrapped(), 2);
  EXPECT_EQ(log.lines(), Strings{"ERROR -- Could not copy auxiliary item to /Applications/Licence"});
  EXPECT_EQ(contents("/Applications/Licence"), "/nowhere");
}

TEST_F(InstallFunctionWithWrapper, AMissingParentFolderBecomesACopyOfTheWholeWrapper) {
  EXPECT_EQ(installWrapped("/Applications/Nas/Nas.app"), 0);
  EXPECT_EQ(disk.calls, (Strings{"copy /Volumes/NAS/Extras -> /Applications/Nas",
                                 "copy /Volumes/NAS/Nas.app -> /Applications/Nas/Nas.app"}));
  EXPECT_EQ(notices.paths, (Strings{"/Applications/Nas", "/Applications/Nas/Nas.app"}));
  EXPECT_EQ(contents("/Applications/Nas/Docs/Read me.txt"), "docs 2");
}

TEST_F(InstallFunctionWithWrapper, ASameNamedCopyThatCameWithTheWholeWrapperIsTrashedAndReplaced) {
  disk.addFile("/Volumes/NAS/Extras/Nas.app/Contents/Info.plist", "from the wrapper");
  EXPECT_EQ(installWrapped("/Applications/Nas/Nas.app"), 0);
  EXPECT_EQ(trash.trashed.at("/Applications/Nas/Nas.app/Contents/Info.plist").contents, "from the wrapper");
  EXPECT_EQ(contents("/Applications/Nas/Nas.app/Contents/Info.plist"), "version 2");
}

TEST_F(InstallFunctionWithWrapper,
       AnItemThatBearsTheDestinationsNameReplacesTheOldCopyAndIsThenTrashedItself) {
  addOldCopy();
  disk.addFile("/Volumes/NAS/Extras/Nas.app/Contents/Info.plist", "from the wrapper");
  EXPECT_EQ(installWrapped(), 0);
  EXPECT_EQ(trash.trashed.at("/Applications/Nas.app/Contents/Info.plist").contents, "from the wrapper");
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 2");
}

TEST_F(InstallFunctionWithWrapper, AWrapperThatCannotBeCopiedWholeGivesTwo) {
  files.copiesThatFail = {"/Applications/Nas"};
  EXPECT_EQ(installWrapped("/Applications/Nas/Nas.app"), 2);
  EXPECT_EQ(log.lines(), Strings{"ERROR -- Could not copy wrapper to /Applications/Nas"});
  EXPECT_EQ(notices.paths, Strings{});
}

TEST_F(InstallFunctionWithWrapper, AListingThatFailsCountsAsEmpty) {
  files.listingsThatFail = {"/Volumes/NAS/Extras"};
  EXPECT_EQ(installWrapped(), 0);
  EXPECT_EQ(disk.calls, Strings{"copy /Volumes/NAS/Nas.app -> /Applications/Nas.app"});
  EXPECT_EQ(log.lines(), Strings{});
}

TEST_F(InstallFunctionWithWrapper, AWrapperThatIsTheTargetFolderIsRefusedBeforeAnyItemIsRemoved) {
  const auto before = disk.tree("/Volumes/NAS/Extras");
  EXPECT_EQ(installWrapped("/Volumes/NAS/Extras/Nas.app"), 2);
  EXPECT_EQ(log.lines(), Strings{"ERROR -- Could not copy auxiliary item to /Volumes/NAS/Extras/.hidden"});
  EXPECT_EQ(disk.tree("/Volumes/NAS/Extras"), before);
  EXPECT_EQ(disk.calls, Strings{});
}

TEST_F(InstallFunctionWithWrapper, AnItemWhoseReplacementWouldRemoveTheWrapperIsRefused) {
  disk.addFile("/Applications/Docs/Extras/Docs/Read me.txt", "docs 2");
  EXPECT_EQ(install(Text("/Applications/Docs/Extras")), 2);
  EXPECT_EQ(log.lines(), Strings{"ERROR -- Could not copy auxiliary item to /Applications/Docs"});
  EXPECT_EQ(contents("/Applications/Docs/Extras/Docs/Read me.txt"), "docs 2");
}

TEST_F(InstallFunctionWithWrapper, AnItemWhoseReplacementWouldRemoveTheSourceIsRefused) {
  disk.addFile("/Applications/Docs/Nas.app/Contents/Info.plist", "version 2");
  const auto status = InstallApplication(services(), "/Applications/Docs/Nas.app", "/Applications/Nas.app",
                                         Text("/Volumes/NAS/Extras"));
  EXPECT_EQ(status, 2);
  EXPECT_EQ(log.lines(), Strings{"ERROR -- Could not copy auxiliary item to /Applications/Docs"});
  EXPECT_EQ(contents("/Applications/Docs/Nas.app/Contents/Info.plist"), "version 2");
}

TEST_F(InstallFunctionWithWrapper, AnItemThatHoldsItsOwnTargetIsRefused) {
  disk.addFile("/Volumes/NAS/Extras/Docs/Docs/old", "old");
  EXPECT_EQ(installWrapped("/Volumes/NAS/Extras/Docs/Nas.app"), 2);
  EXPECT_EQ(contents("/Volumes/NAS/Extras/Docs/Docs/old"), "old");
}

TEST_F(InstallFunctionWithWrapper, WrapperItemsStayWhenTheTrashRefuses) {
  addOldCopy();
  trash.refuses = true;
  EXPECT_EQ(installWrapped(), 1);
  EXPECT_EQ(contents("/Applications/Licence"), "licence 2");
  EXPECT_EQ(contents("/Applications/Nas.app/Contents/Info.plist"), "version 1");
}

}  // namespace
}  // namespace halvorn
