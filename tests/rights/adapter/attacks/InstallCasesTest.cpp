// The same cases of installing, with the rights of an ordinary person and with those of the administrator, in
// either way that a person gets them.
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <sstream>

#include "Platform/rights/posix/CopiedLine.h"
#include "tests/rights/adapter/attacks/AttackScene.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

enum class Level { Person, Administrator, AdministratorBySudo };

class InstallCases : public testing::TestWithParam<Level> {
 protected:
  void SetUp() override {
    if (const auto reason = PolkitWorld::missing()) GTEST_SKIP() << *reason;
    world_ = std::make_unique<PolkitWorld>(PolkitWorldParts{.bus = false});
    scene_ = std::make_unique<AttackScene>(*world_, AttackedTool{.path = KT_TRAIN}, "/opt/scene");
    scene_->addProduct(source());
    scene_->addFolder(at("target"), 0755, owner());
  }

  [[nodiscard]] std::string at(const std::string& name) const { return *scene_ / name; }
  [[nodiscard]] std::string source() const { return at("source/Nas.app"); }
  [[nodiscard]] std::string destination() const { return at("target/Nas.app"); }
  [[nodiscard]] std::string trash() const { return world_->homeFolder() + "/.local/share/Trash"; }
  // Of what stands at the destination before, and of what is installed.
  [[nodiscard]] uid_t owner() const {
    return GetParam() == Level::Person ? AttackScene::person : AttackScene::root;
  }

  struct Result {
    int status = 0;
    std::vector<std::string> log;  // without time and program
  };
  Result install(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{KT_TRAIN};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const bool isPerson = GetParam() == Level::Person;
    const CommandResult run =
        isPerson ? runCommand(world_->asPerson(command), {.environment = world_->personsEnvironment()})
                 : runCommand(command, {.environment = GetParam() == Level::Administrator
                                                           ? AttackScene::pkexecEnvironment()
                                                           : AttackScene::sudoEnvironment()});
    Result result{.status = run.status, .log = {}};
    std::istringstream lines(run.output);
    for (std::string line; std::getline(lines, line);) {
      const std::size_t text = line.find("] ");
      result.log.push_back(text == std::string::npos ? line : line.substr(text + 2));
    }
    return result;
  }
  using Lines = std::vector<std::string>;

  void addOldCopy(const std::string& path) { scene_->addFile(path + "/Contents/old", "old", 0644, owner()); }
  [[nodiscard]] bool isInstalled() const {
    return bytesOf(destination() + "/Contents/Info.plist") == "<plist/>" &&
           !fs::exists(destination() + "/Contents/old");
  }
  [[nodiscard]] int trashed() const {
    return fs::exists(trash() + "/files")
               ? static_cast<int>(
                     std::distance(fs::directory_iterator(trash() + "/files"), fs::directory_iterator()))
               : 0;
  }

  std::unique_ptr<PolkitWorld> world_;
  std::unique_ptr<AttackScene> scene_;
};

// To whoever gave the rights, that is; a person's own run says nothing of it.
TEST_P(InstallCases, HowMuchHasBeenCopiedIsToldOnTheWay) {
  constexpr std::size_t kBig = 20U << 20;
  scene_->addFile(source() + "/Contents/big", std::string(kBig, 'x'), 0644, owner());
  const Result result = install({source(), destination()});
  EXPECT_EQ(result.status, 0);
  std::uint64_t most = 0;
  for (const std::string& line : result.log) most = std::max(most, bytesInCopiedLine(line).value_or(0));
  if (GetParam() == Level::Person) {
    EXPECT_EQ(most, 0U);
  } else {
    EXPECT_GE(most, kBig - kToldEachBytes);
    EXPECT_LT(most, kBig + kToldEachBytes);
  }
}

INSTANTIATE_TEST_SUITE_P(AllLevels, InstallCases,
                         testing::Values(Level::Person, Level::Administrator, Level::AdministratorBySudo),
                         [](const auto& level) {
                           if (level.param == Level::Person) return "AsThePerson";
                           return level.param == Level::Administrator ? "AsTheAdministrator"
                                                                      : "AsTheAdministratorThroughSudo";
                         });

TEST_P(InstallCases, NothingAtTheDestinationMeansNoTrashOperation) {
  const Result result = install({source(), destination()});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.log, Lines{});
  EXPECT_TRUE(isInstalled());
  EXPECT_FALSE(fs::exists(trash()));
}

TEST_P(InstallCases, WhatIsInstalledBelongsToWhoeverInstalled) {
  ASSERT_EQ(install({source(), destination()}).status, 0);
  EXPECT_EQ(
      findBelow(destination(), [&](const std::string& path) { return factsOf(path)->st_uid != owner(); }),
      std::nullopt);
}

TEST_P(InstallCases, AnExistingCopyGoesToTheTrashOfThePerson) {
  addOldCopy(destination());
  EXPECT_EQ(install({source(), destination()}).status, 0);
  EXPECT_TRUE(isInstalled());
  EXPECT_EQ(bytesOf(trash() + "/files/Nas.app/Contents/old"), "old");
  EXPECT_TRUE(
      bytesOf(trash() + "/info/Nas.app.trashinfo").starts_with("[Trash Info]\nPath=" + destination() + "\n"))
      << bytesOf(trash() + "/info/Nas.app.trashinfo");
  EXPECT_EQ(findBelow(trash(),
                      [](const std::string& path) { return factsOf(path)->st_uid != AttackScene::person; }),
            std::nullopt);
}

// Put back by the person, with the desktop's own tools, into a folder that is the person's by then.
TEST_P(InstallCases, TrashCliListsTheOldCopyAndRestoresItForThePerson) {
  if (!programExists("trash-list")) GTEST_SKIP() << "trash-cli is not installed";
  addOldCopy(destination());
  ASSERT_EQ(install({source(), destination()}).status, 0);
  const auto asPerson = [&](const std::vector<std::string>& command) {
    return runCommand(world_->asPerson(command), {.environment = world_->personsEnvironment()});
  };
  EXPECT_NE(asPerson({"trash-list"}).output.find(destination()), std::string::npos);
  fs::remove_all(destination());
  ASSERT_EQ(::chown(at("target").c_str(), AttackScene::person, AttackScene::person), 0);
  const auto restored = asPerson({"sh", "-c", "echo 0 | trash-restore '" + destination() + "'"});
  EXPECT_EQ(bytesOf(destination() + "/Contents/old"), "old") << restored.output;
  EXPECT_EQ(trashed(), 0);
  EXPECT_EQ(asPerson({"rm", "-r", destination()}).status, 0) << "not the person's to throw away";
}

TEST_P(InstallCases, GioListsTheOldCopyAndRestoresItForThePerson) {
  addOldCopy(destination());
  ASSERT_EQ(install({source(), destination()}).status, 0);
  const auto asPerson = [&](std::vector<std::string> command) {
    command.insert(command.begin(), {"dbus-run-session", "--"});
    return runCommand(world_->asPerson(command), {.environment = world_->personsEnvironment()});
  };
  if (!programExists("gio") || !programExists("dbus-run-session")) GTEST_SKIP() << "gio is not installed";
  const auto listed = asPerson({"gio", "trash", "--list"});
  if (listed.status != 0) GTEST_SKIP() << "no trash:/// here (gvfs is not installed): " << listed.output;
  EXPECT_NE(listed.output.find(destination()), std::string::npos) << listed.output;
  fs::remove_all(destination());
  ASSERT_EQ(::chown(at("target").c_str(), AttackScene::person, AttackScene::person), 0);
  const auto restored = asPerson({"gio", "trash", "--restore", "trash:///Nas.app"});
  EXPECT_EQ(bytesOf(destination() + "/Contents/old"), "old") << restored.output;
}

TEST_P(InstallCases, AMissingParentIsMadeFromTheWrapper) {
  scene_->addFile(at("wrapper/notes"), "notes", 0644, AttackScene::person);
  scene_->addFile(at("wrapper/.hidden"), "hidden", 0644, AttackScene::person);
  const std::string inFolder = at("target/Folder/Nas.app");
  EXPECT_EQ(install({source(), inFolder, at("wrapper")}).status, 0);
  EXPECT_EQ(bytesOf(at("target/Folder/notes")), "notes");
  EXPECT_EQ(bytesOf(at("target/Folder/.hidden")), "hidden");
  EXPECT_EQ(bytesOf(inFolder + "/Contents/Info.plist"), "<plist/>");
  EXPECT_EQ(trashed(), 0);
}

TEST_P(InstallCases, ACopyThatCameWithTheWrapperIsTrashed) {
  scene_->addFile(at("wrapper/Nas.app/Contents/old"), "old", 0644, AttackScene::person);
  const std::string inFolder = at("target/Folder/Nas.app");
  EXPECT_EQ(install({source(), inFolder, at("wrapper")}).status, 0);
  EXPECT_EQ(bytesOf(inFolder + "/Contents/Info.plist"), "<plist/>");
  EXPECT_EQ(bytesOf(trash() + "/files/Nas.app/Contents/old"), "old");
}

TEST_P(InstallCases, AnItemOfTheWrappersNameIsReplacedForGood) {
  scene_->addFile(at("wrapper/Extras/new"), "new", 0644, AttackScene::person);
  scene_->addFile(at("wrapper/.hidden"), "hidden", 0644, AttackScene::person);
  scene_->addFile(at("target/Extras/old"), "old", 0644, owner());
  scene_->addFile(at("target/Bystander/data"), "data", 0644, owner());
  EXPECT_EQ(install({source(), destination(), at("wrapper")}).status, 0);
  EXPECT_EQ(bytesOf(at("target/Extras/new")), "new");
  EXPECT_EQ(bytesOf(at("target/.hidden")), "hidden");
  EXPECT_FALSE(fs::exists(at("target/Extras/old")));
  EXPECT_EQ(bytesOf(at("target/Bystander/data")), "data");
  EXPECT_TRUE(isInstalled());
  EXPECT_EQ(trashed(), 0);
}

TEST_P(InstallCases, AnItemThatCannotBeDeletedGivesTwoMessagesAndStatusTwo) {
  scene_->addFile(at("wrapper/Extras/new"), "new", 0644, AttackScene::person);
  scene_->addFolder(at("target/Extras"), 0755, owner());
  // Where something is mounted nothing can be removed, by nobody.
  world_->mount("tmpfs", at("target/Extras"), "tmpfs", 0, "mode=777");
  addOldCopy(destination());
  const Result result = install({source(), destination(), at("wrapper")});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.log, (Lines{"CAUSE -- Device or resource busy: " + at("target/Extras") + " (remove)",
                               "ERROR -- Could not delete " + at("target/Extras"),
                               "CAUSE -- File exists: " + at("target/Extras") + " (make)",
                               "ERROR -- Could not copy auxiliary item to " + at("target/Extras")}));
  EXPECT_EQ(bytesOf(destination() + "/Contents/old"), "old");
  EXPECT_EQ(trashed(), 0);
}

TEST_P(InstallCases, ACopyThatCannotBeTrashedGivesTwoMessagesAndStatusOne) {
  scene_->addFolder(destination(), 0755, owner());
  world_->mount("tmpfs", destination(), "tmpfs", 0, "mode=777");
  const Result result = install({source(), destination()});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.log, (Lines{"CAUSE -- Device or resource busy: " + destination() + " (move)",
                               "ERROR -- Could not trash '" + destination() + "'",
                               "ERROR -- Could not trash existing " + destination()}));
  EXPECT_TRUE(fs::is_empty(destination()));
}

TEST_P(InstallCases, AMissingSourceGivesStatusTwo) {
  const Result result = install({at("source/Other.app"), destination()});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.log, (Lines{"CAUSE -- No such file or directory: " + at("source/Other.app") + " (look)",
                               "ERROR -- Could not copy myself to " + destination()}));
}

TEST_P(InstallCases, AWrapperThatCannotBeListedCountsAsEmpty) {
  EXPECT_EQ(install({source(), destination(), at("nothing")}).status, 0);
  EXPECT_TRUE(isInstalled());
}

TEST_P(InstallCases, AMissingParentWithoutAWrapperGivesStatusTwo) {
  const Result result = install({source(), at("target/Folder/Nas.app")});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.log,
            (Lines{"CAUSE -- No such file or directory: " + at("target/Folder/Nas.app") + " (reach)",
                   "ERROR -- Could not copy myself to " + at("target/Folder/Nas.app")}));
}

TEST_P(InstallCases, ALinkAtTheDestinationIsTrashedItself) {
  scene_->addFile(at("elsewhere/Nas.app/data"), "data", 0644, owner());
  scene_->addLink(destination(), at("elsewhere/Nas.app"), owner());
  EXPECT_EQ(install({source(), destination()}).status, 0);
  EXPECT_TRUE(isInstalled());
  EXPECT_TRUE(fs::is_symlink(trash() + "/files/Nas.app"));
  EXPECT_EQ(bytesOf(at("elsewhere/Nas.app/data")), "data");
}

TEST_P(InstallCases, ALinkToNowhereAtTheDestinationStandsInTheWay) {
  scene_->addLink(destination(), at("nowhere"), owner());
  const Result result = install({source(), destination()});
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(fs::is_symlink(destination()));
  EXPECT_FALSE(fs::exists(at("nowhere")));
}

TEST_P(InstallCases, ADestinationInsideTheSourceIsRefused) {
  const Result result = install({source(), source() + "/Contents/Nas.app"});
  EXPECT_NE(result.status, 0);
  EXPECT_FALSE(fs::exists(source() + "/Contents/Nas.app"));
}

// Modes, times, links, holes and attributes are those of the original, at both levels.
TEST_P(InstallCases, TheCopyIsTheOriginal) {
  scene_->addFile(source() + "/Contents/secret", "private", 0600, AttackScene::person);
  scene_->addFile(source() + "/Contents/readable", "readable", 0444, AttackScene::person);
  scene_->addFile(source() + "/Contents/program", "program", 0750, AttackScene::person);
  scene_->addLink(source() + "/Contents/link", "Linux/Nas", AttackScene::person);
  scene_->addLink(source() + "/Contents/nowhere", "/nowhere", AttackScene::person);
  fs::create_hard_link(source() + "/Contents/readable", source() + "/Contents/second");
  scene_->addFolder(source() + "/Contents/closed", 0500, AttackScene::person);
  scene_->addFile(source() + "/Contents/\xff\xfe\n", "name", 0644, AttackScene::person);
  ASSERT_EQ(::truncate((source() + "/Contents/program").c_str(), 3'000'000), 0);
  const auto touched = runCommand({"touch", "-h", "-d", "2001-02-03 04:05:06", source() + "/Contents/program",
                                   source() + "/Contents/link", source() + "/Contents", source()});
  ASSERT_EQ(touched.status, 0) << touched.output;
  ASSERT_EQ(install({source(), destination()}).status, 0);

  for (const auto& entry : fs::recursive_directory_iterator(source())) {
    const std::string original = entry.path();
    const std::string copy = destination() + original.substr(source().size());
    const auto wanted = factsOf(original);
    const auto found = factsOf(copy);
    ASSERT_TRUE(found) << copy;
    EXPECT_EQ(found->st_mode, wanted->st_mode) << copy;
    EXPECT_EQ(found->st_mtim.tv_sec, wanted->st_mtim.tv_sec) << copy;
    EXPECT_EQ(found->st_mtim.tv_nsec, wanted->st_mtim.tv_nsec) << copy;
    if (S_ISREG(wanted->st_mode)) {
      EXPECT_EQ(bytesOf(copy), bytesOf(original)) << copy;
      EXPECT_EQ(found->st_nlink, wanted->st_nlink) << copy;
    }
    if (S_ISLNK(wanted->st_mode)) {
      EXPECT_EQ(fs::read_symlink(copy), fs::read_symlink(original));
    }
  }
  EXPECT_LT(factsOf(destination() + "/Contents/program")->st_blocks, 1000) << "the hole was filled";
}

}  // namespace
}  // namespace halvorn
