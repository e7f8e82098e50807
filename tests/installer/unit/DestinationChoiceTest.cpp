#include "Sources/DestinationChoice.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/fakes/FakeFileManager.h"
#include "tests/fakes/FakeProcesses.h"
#include "tests/fakes/FakeSearchPaths.h"
#include "tests/fakes/FakeWorkspace.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using Lines = std::vector<std::string>;

class DestinationChoiceTest : public testing::Test {
 protected:
  FakeApplication& start(const char* name, const char (&code)[5], const OptionalText& path) {
    return fake.applications.start({.name = name, .signature = fourCharCode(code), .path = path});
  }
  void loginItems(std::vector<OptionalText> items) { workspace.loginItemPaths = std::move(items); }

  FakeProcesses fake;
  FakeFileManager files;
  FakeSearchPaths searchPaths;
  FakeWorkspace workspace;
  std::vector<Text> codes;
  bool hasCodes = true;
  std::uint32_t random = 0xA0;
  DestinationChoice choice{{.processes = fake.processes,
                            .files = files,
                            .searchPaths = searchPaths,
                            .workspace = workspace,
                            .log = fake.log,
                            .productCodes = [this] { return hasCodes ? &codes : nullptr; },
                            .randomNumber = [this] { return random++; }}};
};

using FindPreferredDestination = DestinationChoiceTest;

TEST_F(FindPreferredDestination, ALoginItemOfThatNameIsWhereThePersonKeepsTheProduct) {
  loginItems({Text("/opt/Other.app"), Text("/opt/Foo.app")});
  codes = {"FOOO"};
  start("Foo", "FOOO", Text("/home/anna/Foo.app"));
  EXPECT_EQ(choice.findPreferredDestinationFor("Foo"), Text("/opt/Foo.app"));
  EXPECT_EQ(fake.log.lines(), Lines{"autolaunch = /opt/Foo.app"});
}

TEST_F(FindPreferredDestination, WithoutALoginItemARunningCopyIsIt) {
  codes = {"FOOO"};
  start("Foo", "FOOO", Text("/home/anna/Foo.app"));
  EXPECT_EQ(choice.findPreferredDestinationFor("Foo"), Text("/home/anna/Foo.app"));
  EXPECT_EQ(fake.log.lines(), Lines{"autolaunch = (null)"});
}

TEST_F(FindPreferredDestination, ALoginItemInTheTrashIsPassedOverForARunningCopy) {
  loginItems({Text("/home/anna/.local/share/Trash/files/Foo.app")});
  codes = {"FOOO"};
  EXPECT_EQ(choice.findPreferredDestinationFor("Foo"), std::nullopt);
  start("Foo", "FOOO", Text("/home/anna/Foo.app"));
  EXPECT_EQ(choice.findPreferredDestinationFor("Foo"), Text("/home/anna/Foo.app"));
}

using AutoLaunchPath = DestinationChoiceTest;

TEST_F(AutoLaunchPath, TheFirstItemWhoseFileNameBeginsWithTheNameIsTaken) {
  loginItems({Text("/Foo/Other.app"), Text("/opt/FooBar.app"), Text("/opt/Foo.app")});
  EXPECT_EQ(choice.autoLaunchPathFor("Foo"), Text("/opt/FooBar.app"));
  EXPECT_EQ(choice.autoLaunchPathFor("foo"), std::nullopt);
  EXPECT_EQ(choice.autoLaunchPathFor("Foo.app"), Text("/opt/Foo.app"));
}

TEST_F(AutoLaunchPath, AnEmptyNameIsTheBeginningOfNoItem) {
  loginItems({Text("/opt/Foo.app")});
  EXPECT_EQ(choice.autoLaunchPathFor(""), std::nullopt);
}

TEST_F(AutoLaunchPath, ItemsThatDoNotResolveAreSkipped) {
  loginItems({std::nullopt, Text("/opt/Foo.app")});
  EXPECT_EQ(choice.autoLaunchPathFor("Foo"), Text("/opt/Foo.app"));
}

TEST_F(AutoLaunchPath, WithoutAListThereIsNone) {
  workspace.loginItemPaths = std::nullopt;
  EXPECT_EQ(choice.autoLaunchPathFor("Foo"), std::nullopt);
}

using PathToProcessToReplace = DestinationChoiceTest;

TEST_F(PathToProcessToReplace, WithoutProductCodesThereIsNone) {
  start("Foo", "FOOO", Text("/opt/Foo.app"));
  hasCodes = false;
  EXPECT_EQ(choice.pathToProcessToReplace(), std::nullopt);
  hasCodes = true;
  EXPECT_EQ(choice.pathToProcessToReplace(), std::nullopt) << "an empty list";
}

TEST_F(PathToProcessToReplace, TheFirstCodeComesBeforeTheOthers) {
  codes = {"FOOO", "SECO"};
  start("Second", "SECO", Text("/opt/Second.app"));
  EXPECT_EQ(choice.pathToProcessToReplace(), Text("/opt/Second.app"));
  start("Foo", "FOOO", Text("/opt/Foo.app"));
  start("Foo", "FOOO", Text("/home/anna/Foo.app"));
  EXPECT_EQ(choice.pathToProcessToReplace(), Text("/opt/Foo.app"));
}

TEST_F(PathToProcessToReplace, WithOneCodeTheSecondPassIsSkipped) {
  int lists = 0;
  fake.applications.onList = [&] { ++lists; };
  codes = {"FOOO"};
  EXPECT_EQ(choice.pathToProcessToReplace(), std::nullopt);
  EXPECT_EQ(lists, 1);
  codes = {"FOOO", "SECO"};
  EXPECT_EQ(choice.pathToProcessToReplace(), std::nullopt);
  EXPECT_EQ(lists, 3);
}

TEST_F(PathToProcessToReplace, TheSecondPassTakesAnyCodeOfTheList) {
  codes = {"NONE", "SECO", "THRD"};
  start("Third", "THRD", Text("/opt/Third.app"));
  start("Second", "SECO", Text("/opt/Second.app"));
  EXPECT_EQ(choice.pathToProcessToReplace(), Text("/opt/Third.app"));
}

TEST_F(PathToProcessToReplace, ThisProgramItselfIsNeverChosen) {
  codes = {"InSt"};
  EXPECT_EQ(choice.pathToProcessToReplace(), std::nullopt);
  codes = {"NONE", "InSt"};
  EXPECT_EQ(choice.pathToProcessToReplace(), std::nullopt);
  start("Installer", "InSt", Text("/opt/Installer.app"));
  EXPECT_EQ(choice.pathToProcessToReplace(), Text("/opt/Installer.app")) << "another one with that signature";
}

TEST_F(PathToProcessToReplace, ACopyOnTheProductsOwnVolumeIsSkipped) {
  codes = {"FOOO"};
  start("Foo", "FOOO", Text("/Volumes/Foo-Install/Foo.app"));
  EXPECT_EQ(choice.pathToProcessToReplace(), std::nullopt);
  start("Foo", "FOOO", Text("/opt/Foo.app"));
  EXPECT_EQ(choice.pathToProcessToReplace(), Text("/opt/Foo.app"));
}

TEST_F(PathToProcessToReplace, AProcessWithoutAPathEndsTheSearch) {
  codes = {"FOOO", "SECO"};
  start("Foo", "FOOO", std::nullopt);
  start("Foo", "FOOO", Text("/opt/Foo.app"));
  start("Second", "SECO", Text("/opt/Second.app"));
  EXPECT_EQ(choice.pathToProcessToReplace(), std::nullopt);
}

TEST_F(PathToProcessToReplace, ACodeThatIsNoneNamesNobody) {
  codes = {"toolong", "????x"};
  start("Foo", "FOOO", Text("/opt/Foo.app"));
  EXPECT_EQ(choice.pathToProcessToReplace(), std::nullopt);
}

TEST_F(DestinationChoiceTest, SomeFoldersAreUnsupported) {
  searchPaths.volumes = {"/Volumes", "/media/anna", "/run/media/anna"};
  const struct {
    OptionalText path;
    bool isUnsupported;
    const char* reason;
  } cases[] = {
      {std::nullopt, false, "no path is not unsupported"},
      {Text(""), false, "nor an empty one"},
      {Text("/opt/Foo.app"), false, "a plain place"},
      {Text("/home/wyn/build/Foo.app"), true, "a development build"},
      {Text("/home/wyn/Foo.app"), false, "no build"},
      {Text("/wyn/buildings/Foo.app"), true, "parts of a text, not components"},
      {Text("/x/build/wyn/Foo.app"), true, "in any order"},
      {Text("/home/anna/build/Foo.app"), false, "somebody else's build"},
      {Text("/home/WYN/Build/Foo.app"), false, "case counts"},
      {Text("/Volumes/Foo-Install/Foo.app"), true, "an installation volume"},
      {Text("/Volumes/Foo/Foo.app"), false, "another volume"},
      {Text("/x/Volumes/y/Foo-Installer.app"), true, "anywhere in the path"},
      {Text("/opt/Foo-Install/Foo.app"), false, "no volume"},
      {Text("/media/anna/Foo-Install/Foo.app"), true, "where this system mounts"},
      {Text("/run/media/anna/Foo-Install/Foo.app"), true, "or there"},
      {Text("/x/media/anna/Foo-Install/Foo.app"), false, "these only at the start"},
      {Text("/media/bert/Foo-Install/Foo.app"), false, "another person's"},
      {Text("/home/anna/.local/share/Trash/files/Foo.app"), true, "the Trash"},
      {Text("/home/anna/.Trash/Foo.app"), true, "the Trash elsewhere"},
      {Text("/mnt/.Trash/1000/files/Foo.app"), true, "a volume's Trash"},
      {Text("/mnt/.Trash-1000/files/Foo.app"), true, "a volume's other Trash"},
      {Text("/home/anna/Trash.app"), false, "a product of that name"},
      {Text("/home/anna/Trash"), false, "the Trash itself is no place in it"},
  };
  for (const auto& c : cases) EXPECT_EQ(choice.isInUnsupportedFolder(c.path), c.isUnsupported) << c.reason;
}

using ApplicationsDirectory = DestinationChoiceTest;

TEST_F(ApplicationsDirectory, TheLastSharedFolderIsTakenWhenItCanBeWritten) {
  searchPaths.localApplications = {"/opt", "/Applications"};
  files.addFolder("/opt");
  files.addFolder("/Applications");
  EXPECT_EQ(choice.applicationsDirectory(), Text("/Applications"));
  EXPECT_EQ(fake.log.lines(), Lines{});
}

TEST_F(ApplicationsDirectory, WhereTheSystemNamesNoSharedFolderItIsTheUsualOne) {
  searchPaths.localApplications = {};
  files.addFolder("/Applications");
  EXPECT_EQ(choice.applicationsDirectory(), Text("/Applications"));
}

TEST_F(ApplicationsDirectory, ThePersonsOwnIsTakenWhereTheSharedOneCannotBeWritten) {
  files.addFolder("/Applications");
  files.node("/Applications")->isWritable = false;
  files.addFolder("/home/anna/Applications");
  EXPECT_EQ(choice.applicationsDirectory(), Text("/home/anna/Applications"));
  EXPECT_EQ(fake.log.lines(), (Lines{"Can't write to /Applications, checking ~/Applications",
                                     "User applicationsDirectory: /home/anna/Applications"}));
}

TEST_F(ApplicationsDirectory, TheSharedOneIsReturnedWhenThePersonsOwnIsMissing) {
  files.addFolder("/Applications");
  files.node("/Applications")->isWritable = false;
  EXPECT_EQ(choice.applicationsDirectory(), Text("/Applications"));
  EXPECT_TRUE(files.calls.empty()) << "no folder is made";
}

TEST_F(ApplicationsDirectory, TheSharedOneIsReturnedWhenThePersonsOwnCannotBeWritten) {
  files.addFolder("/home/anna/Applications");
  files.node("/home/anna/Applications")->isWritable = false;
  EXPECT_EQ(choice.applicationsDirectory(), Text("/Applications")) << "it does not even exist";
}

TEST_F(ApplicationsDirectory, WithoutAFolderOfThePersonsOwnTheLogSaysSo) {
  searchPaths.userApplications.clear();
  EXPECT_EQ(choice.applicationsDirectory(), Text("/Applications"));
  EXPECT_EQ(fake.log.lines().back(), "User applicationsDirectory: (null)");
}

using CanWriteToPath = DestinationChoiceTest;

TEST_F(CanWriteToPath, AnItemThatCannotBeWrittenDecides) {
  files.addFolder("/Applications/Foo.app");
  EXPECT_TRUE(choice.canWriteToPath("/Applications/Foo.app"));
  files.node("/Applications/Foo.app")->isWritable = false;
  EXPECT_FALSE(choice.canWriteToPath("/Applications/Foo.app"));
  EXPECT_EQ(fake.log.lines(), Lines{"Cannot write to item /Applications/Foo.app"});
}

TEST_F(CanWriteToPath, TheFolderMustBeWritableToo) {
  files.addFolder("/Applications/Foo.app");
  files.node("/Applications")->isWritable = false;
  EXPECT_FALSE(choice.canWriteToPath("/Applications/Foo.app"));
  EXPECT_EQ(fake.log.lines(), Lines{"Cannot write to folder /Applications"});
}

TEST_F(CanWriteToPath, AFolderThatDoesNotExistYetIsDecidedOnTheNearestOneAboveIt) {
  files.addFolder("/Applications");
  EXPECT_TRUE(choice.canWriteToPath("/Applications/Wrapper/Inner/Foo.app"));
  files.node("/Applications")->isWritable = false;
  EXPECT_FALSE(choice.canWriteToPath("/Applications/Wrapper/Inner/Foo.app"));
  EXPECT_EQ(fake.log.lines(), Lines{"Cannot write to folder /Applications"});
}

TEST_F(CanWriteToPath, WhereNothingExistsTheRootDecides) {
  EXPECT_TRUE(choice.canWriteToPath("/a/b/c/Foo.app"));
  files.node("/")->isWritable = false;
  EXPECT_FALSE(choice.canWriteToPath("/a/b/c/Foo.app"));
  EXPECT_EQ(fake.log.lines(), Lines{"Cannot write to folder /"});
}

TEST_F(CanWriteToPath, APathWithoutAFolderCannotBeWritten) {
  EXPECT_FALSE(choice.canWriteToPath(""));
  EXPECT_FALSE(choice.canWriteToPath("Foo.app"));
  EXPECT_EQ(fake.log.lines(), (Lines{"Cannot write to folder ", "Cannot write to folder "}));
}

TEST_F(DestinationChoiceTest, CanWriteToFileOpensTheFile) {
  files.addFile("/file");
  files.addFolder("/folder");
  EXPECT_TRUE(choice.canWriteToFile("/file"));
  EXPECT_FALSE(choice.canWriteToFile("/folder"));
  EXPECT_FALSE(choice.canWriteToFile("/missing"));
  files.node("/file")->isReadable = false;
  EXPECT_FALSE(choice.canWriteToFile("/file"));
  EXPECT_TRUE(choice.canWriteToFileOrDirectory("/file"));
}

using CanWriteToDirectory = DestinationChoiceTest;

TEST_F(CanWriteToDirectory, AProbeFileIsMadeAndTakenAway) {
  files.addFolder("/folder");
  EXPECT_TRUE(choice.canWriteToDirectory("/folder"));
  EXPECT_EQ(files.calls, (Lines{"create /folder/temp-A0", "remove /folder/temp-A0"}));
}

TEST_F(CanWriteToDirectory, AnotherNameIsDrawnWhileOneIsTaken) {
  files.addFile("/folder/temp-A0", "mine");
  files.addFile("/folder/temp-A1", "mine");
  EXPECT_TRUE(choice.canWriteToDirectory("/folder"));
  EXPECT_EQ(files.calls.front(), "create /folder/temp-A2");
  EXPECT_EQ(files.node("/folder/temp-A0")->contents, "mine");
}

TEST_F(CanWriteToDirectory, AFolderThatTakesNoFileSaysNo) {
  files.addFolder("/folder");
  files.node("/folder")->isWritable = false;
  EXPECT_FALSE(choice.canWriteToDirectory("/folder"));
  EXPECT_FALSE(choice.canWriteToDirectory("/missing"));
}

using LocalizedPath = DestinationChoiceTest;

TEST_F(LocalizedPath, ShowsTheNamesOfTheFileBrowser) {
  workspace.displayNames["/Applications"] = "Programme";
  EXPECT_EQ(choice.localizedPath("/Applications/Foo.app"), Text("/Programme/Foo"));
}

TEST_F(LocalizedPath, ShowsTheHomeFolderAsATilde) {
  workspace.displayNames["/home/anna/Music"] = "Musik";
  EXPECT_EQ(choice.localizedPath("/home/anna/Music/Foo.app"), Text("~/Musik/Foo"));
  EXPECT_EQ(choice.localizedPath("/home/anna"), Text("~"));
  EXPECT_EQ(choice.localizedPath("/home/annabel/x"), Text("/home/annabel/x"));
}

TEST_F(LocalizedPath, ShortPathsStayAsTheyAre) {
  workspace.displayNames["/"] = "Computer";
  workspace.displayNames["/a"] = "Other";
  EXPECT_EQ(choice.localizedPath("/"), Text("/"));
  EXPECT_EQ(choice.localizedPath(""), Text(""));
  EXPECT_EQ(choice.recursiveLocalizedPath("/a"), Text("/a"));
  EXPECT_EQ(choice.recursiveLocalizedPath("~"), Text("~"));
}

}  // namespace
}  // namespace halvorn
