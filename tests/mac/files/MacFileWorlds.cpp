// The files and the Trash of macOS.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "Platform/files/mac/MacFileManager.h"
#include "Platform/files/mac/MacTrash.h"
#include "tests/files/contract/FileWorlds.h"
#include "tests/files/contract/TrashWorlds.h"
#include "tests/mac/frameworks/FakeMac.h"

namespace halvorn {
namespace {

class MacFileWorld : public DiskFileWorld<MacFileManager> {
 public:
  MacFileWorld() { fakemac::reset(); }
  ~MacFileWorld() override { EXPECT_EQ(fakemac::liveObjects(), 0); }
};

class MacTrashWorld : public TrashWorld {
 public:
  MacTrashWorld() {
    fakemac::reset();
    fakemac::state().trashFolder = folder_ / ".Trash";
  }
  ~MacTrashWorld() override { EXPECT_EQ(fakemac::liveObjects(), 0); }
  Trash& trash() override { return trash_; }
  FileManager& files() override { return files_; }
  std::string folder() const override { return folder_ / "Applications"; }
  void addFile(const std::string& path, const std::string& contents) override {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << contents;
  }
  std::string trashedContents(const std::string& path) override {
    const std::string inFolder = std::filesystem::relative(path, folder());
    return files_.readFile(folder_ / ".Trash/" + inFolder, 1000).value_or("");
  }
  void whereNothingMayBeTakenOut(const std::function<void()>& work) override {
    ASSERT_EQ(::chmod(folder().c_str(), 0555), 0);
    const OrdinaryUser user(folder_ / "");
    work();
    ASSERT_EQ(::chmod(folder().c_str(), 0755), 0);
  }

 private:
  TemporaryFolder folder_;
  MacFileManager files_;
  MacTrash trash_;
};

std::unique_ptr<FileWorld> makeFiles() { return std::make_unique<MacFileWorld>(); }
std::unique_ptr<TrashWorld> makeTrash() { return std::make_unique<MacTrashWorld>(); }

}  // namespace

const std::vector<NamedFileWorld>& fileWorlds() {
  static const std::vector<NamedFileWorld> all = {{"Mac", makeFiles}};
  return all;
}

const std::vector<NamedTrashWorld>& trashWorlds() {
  static const std::vector<NamedTrashWorld> all = {{"Mac", makeTrash}};
  return all;
}

}  // namespace halvorn
