// Open files: the same cases against what a test makes up and against the real ones.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "Platform/files/posix/PosixFileHandles.h"
#include "tests/fakes/FakeFileHandles.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class FakeFiles {
 public:
  FakeFiles() { files_.addFolder("/folder"); }
  FileHandles& handles() { return handles_; }
  Text path(const std::string& name) { return "/folder/" + name; }
  void addFile(const std::string& name, const std::string& bytes) {
    files_.addFile("/folder/" + name, bytes);
  }
  void addFolder(const std::string& name) { files_.addFolder("/folder/" + name); }
  void addPipe(const std::string& name) { files_.addPipe("/folder/" + name); }
  std::string contents(const std::string& name) { return files_.node("/folder/" + name)->contents; }

 private:
  FakeFileManager files_;
  FakeFileHandles handles_{files_};
};

class RealFiles {
 public:
  FileHandles& handles() { return handles_; }
  Text path(const std::string& name) { return Text(folder_ / name); }
  void addFile(const std::string& name, const std::string& bytes) { std::ofstream(folder_ / name) << bytes; }
  void addFolder(const std::string& name) { std::filesystem::create_directory(folder_ / name); }
  void addPipe(const std::string& name) { ASSERT_EQ(::mkfifo((folder_ / name).c_str(), 0600), 0); }
  std::string contents(const std::string& name) {
    std::ifstream file(folder_ / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

 private:
  TemporaryFolder folder_;
  PosixFileHandles handles_;
};

template <typename Files>
struct FileHandlesContract : testing::Test {
  Files files;
};
using AllFiles = testing::Types<FakeFiles, RealFiles>;
TYPED_TEST_SUITE(FileHandlesContract, AllFiles);

TYPED_TEST(FileHandlesContract, WritesBehindWhatTheFileHolds) {
  this->files.addFile("file", "one ");
  {
    const auto handle = this->files.handles().openForWriting(this->files.path("file"));
    ASSERT_NE(handle, nullptr);
    EXPECT_TRUE(handle->seekToEnd());
    EXPECT_TRUE(handle->write("two "));
    EXPECT_TRUE(handle->write(""));
    EXPECT_TRUE(handle->write("three"));
  }
  EXPECT_EQ(this->files.contents("file"), "one two three");
}

TYPED_TEST(FileHandlesContract, WritesOverTheStartWithoutSeeking) {
  this->files.addFile("file", "abc");
  EXPECT_TRUE(this->files.handles().openForWriting(this->files.path("file"))->write("X"));
  EXPECT_EQ(this->files.contents("file"), "Xbc");
}

TYPED_TEST(FileHandlesContract, OpensNothingThatIsNoFile) {
  this->files.addFolder("folder");
  this->files.addPipe("pipe");
  for (const char* const name : {"missing", "missing/file", "folder", "pipe"}) {
    EXPECT_EQ(this->files.handles().openForWriting(this->files.path(name)), nullptr) << name;
  }
  EXPECT_EQ(this->files.handles().openForWriting(""), nullptr);
}

}  // namespace
}  // namespace halvorn
