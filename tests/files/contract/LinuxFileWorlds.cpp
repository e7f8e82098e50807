// The file system in memory, and the one that Linux has.
#include "Platform/files/posix/PosixFileManager.h"
#include "tests/fakes/FakeFileManager.h"
#include "tests/files/contract/FileWorlds.h"

namespace halvorn {
namespace {

class FakeWorld : public FileWorld {
 public:
  FakeWorld() { files_.addFolder("/top"); }
  FileManager& files() override { return files_; }
  std::string at(const std::string& path) const override { return "/top/" + path; }
  void addFolder(const std::string& path) override { files_.addFolder(at(path)); }
  void addFile(const std::string& path, const std::string& contents) override {
    files_.addFile(at(path), contents);
  }
  void addLink(const std::string& path, const std::string& target) override {
    files_.addLink(at(path), target);
  }
  void addPipe(const std::string& path) override { files_.addPipe(at(path)); }
  void close(const std::string& folder) override { files_.node(at(folder))->isWritable = false; }
  void hide(const std::string& file) override { files_.node(at(file))->isReadable = false; }
  void asOrdinaryPerson(const std::function<void()>& work) override { work(); }

 private:
  FakeFileManager files_;
};

template <typename World>
std::unique_ptr<FileWorld> make() {
  return std::make_unique<World>();
}

}  // namespace

const std::vector<NamedFileWorld>& fileWorlds() {
  static const std::vector<NamedFileWorld> all = {{"Fake", make<FakeWorld>},
                                                  {"Real", make<DiskFileWorld<PosixFileManager>>}};
  return all;
}

}  // namespace halvorn
