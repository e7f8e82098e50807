// The Trash in memory, and that of the desktop on Linux.
#include "tests/files/contract/TrashWorlds.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "Platform/files/linux/trash/XdgTrash.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeTrash.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

class FakeWorld : public TrashWorld {
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

class RealWorld : public TrashWorld {
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

template <typename World>
std::unique_ptr<TrashWorld> make() {
  return std::make_unique<World>();
}

}  // namespace

const std::vector<NamedTrashWorld>& trashWorlds() {
  static const std::vector<NamedTrashWorld> all = {{"Fake", make<FakeWorld>}, {"Real", make<RealWorld>}};
  return all;
}

}  // namespace halvorn
