// What every Trash does, the one in memory and the one on the disk.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>

#include "Platform/files/linux/trash/XdgTrash.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeTrash.h"
#include "tests/support/FailureText.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

class World {
 public:
  virtual ~World() = default;
  virtual Trash& trash() = 0;
  virtual FileManager& files() = 0;
  virtual std::string folder() const = 0;
  virtual void addFile(const std::string& path, const std::string& contents) = 0;
  // What lies in the Trash as having come from that path; empty when nothing does.
  virtual std::string trashedContents(const std::string& path) = 0;
  // Does the work while this person may not change the folder.
  virtual void whereNothingMayBeTakenOut(const std::function<void()>& work) = 0;
};

class FakeWorld : public World {
 public:
  Trash& trash() override { return trash_; }
  FileManager& files() override { return files_; }
  std::string folder() const override { return "/Applications"; }
  void addFile(const std::string& path, const std::string& contents) override {
    files_.addFile(path, contents);
  }
  std::string trashedContents(const std::string& path) override {
    const auto found = trash_.trashed.find(path);
    return found == trash_.trashed.end() ? "" : found->second.contents;
  }
  void whereNothingMayBeTakenOut(const std::function<void()>& work) override {
    files_.node(folder())->isWritable = false;
    work();
  }

 private:
  FakeFileManager files_;
  FakeTrash trash_{files_};
};

class RealWorld : public World {
 public:
  RealWorld() {
    owner_.dataFolder = folder_ / "data";
    trash_ = std::make_unique<XdgTrash>(clock_, owner_, LinksInTheWay::Followed);
  }
  Trash& trash() override { return *trash_; }
  FileManager& files() override { return files_; }
  std::string folder() const override { return folder_ / "Applications"; }
  void addFile(const std::string& path, const std::string& contents) override {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << contents;
  }
  std::string trashedContents(const std::string& path) override {
    const std::string inFolder = std::filesystem::relative(path, folder());
    return files_.readFile(owner_.dataFolder + "/Trash/files/" + inFolder, 1000).value_or("");
  }
  void whereNothingMayBeTakenOut(const std::function<void()>& work) override {
    ASSERT_EQ(::chmod(folder().c_str(), 0555), 0);
    const OrdinaryUser user(folder_ / "");
    owner_.user = ::geteuid();
    owner_.group = ::getegid();
    trash_ = std::make_unique<XdgTrash>(clock_, owner_, LinksInTheWay::Followed);
    work();
    ASSERT_EQ(::chmod(folder().c_str(), 0755), 0);
  }

 private:
  TemporaryFolder folder_;
  FakeClock clock_;
  PosixFileManager files_;
  Person owner_ = personOfThisProcess();
  std::unique_ptr<XdgTrash> trash_;
};

enum class Which { Fake, Real };

class TrashContract : public testing::TestWithParam<Which> {
 protected:
  TrashContract() {
    if (GetParam() == Which::Fake) world = std::make_unique<FakeWorld>();
    if (GetParam() == Which::Real) world = std::make_unique<RealWorld>();
    world->addFile(world->folder() + "/Nas.app/Contents/file", "old");
    world->addFile(world->folder() + "/Other.app/file", "other");
  }
  // What it came to, without the world's folder: "Permission denied: Nas.app (move)".
  std::string recycling(const Text& folder, const std::vector<Text>& names) {
    std::string text = textOf(world->trash().recycle(folder, names));
    const std::string place = world->folder() + "/";
    if (const auto at = text.find(place); at != std::string::npos) text.erase(at, place.size());
    return text;
  }

  std::unique_ptr<World> world;
};

TEST_P(TrashContract, WhatIsRecycledIsGoneFromItsFolderAndLiesInTheTrash) {
  EXPECT_EQ(recycling(world->folder(), {"Nas.app"}), "");
  EXPECT_FALSE(world->files().fileExists(world->folder() + "/Nas.app"));
  EXPECT_EQ(world->trashedContents(world->folder() + "/Nas.app/Contents/file"), "old");
  EXPECT_TRUE(world->files().fileExists(world->folder() + "/Other.app/file"));
}

TEST_P(TrashContract, SeveralNamesGoTogether) {
  EXPECT_EQ(recycling(world->folder(), {"Nas.app", "Other.app"}), "");
  EXPECT_EQ(world->trashedContents(world->folder() + "/Other.app/file"), "other");
}

TEST_P(TrashContract, WhatIsNotThereCannotBeRecycled) {
  EXPECT_EQ(recycling(world->folder(), {"Missing.app"}), "No such file or directory: Missing.app (look)");
  EXPECT_EQ(recycling(world->folder() + "/nowhere", {"Nas.app"}),
            "No such file or directory: nowhere/Nas.app (reach)");
  EXPECT_TRUE(world->files().fileExists(world->folder() + "/Nas.app"));
}

TEST_P(TrashContract, OneMissingNameDoesNotKeepTheOthers) {
  EXPECT_EQ(recycling(world->folder(), {"Missing.app", "Nas.app"}),
            "No such file or directory: Missing.app (look)");
  EXPECT_FALSE(world->files().fileExists(world->folder() + "/Nas.app"));
}

TEST_P(TrashContract, ARefusalSaysWhyAndTheItemStays) {
  world->whereNothingMayBeTakenOut(
      [&] { EXPECT_EQ(recycling(world->folder(), {"Nas.app"}), "Permission denied: Nas.app (move)"); });
  EXPECT_TRUE(world->files().fileExists(world->folder() + "/Nas.app/Contents/file"));
}

TEST_P(TrashContract, NoNamesAreNoWork) { EXPECT_EQ(recycling(world->folder(), {}), ""); }

INSTANTIATE_TEST_SUITE_P(Both, TrashContract, testing::Values(Which::Fake, Which::Real),
                         [](const auto& test) { return test.param == Which::Fake ? "Fake" : "Real"; });

}  // namespace
}  // namespace halvorn
