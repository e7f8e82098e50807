// What a process can no longer do once it has confined itself. Each is tried by a probe of its own.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <set>
#include <sstream>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

class Confinement : public testing::Test {
 protected:
  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitized probe makes calls of its own";
#endif
    ASSERT_EQ(::mkdir((folder_ / "work").c_str(), 0700), 0);
  }
  CommandResult probe(std::vector<std::string> words) const {
    words.insert(words.begin(), KT_BINARY_DIR "/tests/kt_confined_probe");
    return runCommand(words, {.environment = {"PATH=/usr/bin:/bin"}, .workingFolder = folder_ / "work"});
  }
  std::string call(const std::string& name) {
    const CommandResult result = probe({"files", name});
    (void)std::remove((folder_ / "work/made").c_str());
    if (result.status == -SIGSYS && result.output.empty()) return "ended";
    if (result.status == -SIGABRT) return "aborted";
    return result.status == 0 ? result.output.substr(0, result.output.find('\n'))
                              : "status " + std::to_string(result.status);
  }
  void addFile(const std::string& name) const { std::ofstream(folder_ / name) << "bytes"; }

  TemporaryFolder folder_;
};

TEST_F(Confinement, WhatIsForbiddenEndsTheProcess) {
  const std::set<std::string> others{"a call that is newer",
                                     "a file with set-user-id",
                                     "a folder with set-group-id",
                                     "a file",
                                     "a mode",
                                     "a pipe",
                                     "a thread",
                                     "abort"};
  std::istringstream names(probe({"files", "list"}).output);
  int count = 0;
  for (std::string name; std::getline(names, name);) {
    if (others.contains(name)) continue;
    EXPECT_EQ(call(name), "ended") << name;
    ++count;
  }
  EXPECT_EQ(count, 57);
}

TEST_F(Confinement, NoFileIsGivenSetIdBits) {
  EXPECT_EQ(call("a file with set-user-id"), "EPERM");
  EXPECT_EQ(call("a folder with set-group-id"), "EPERM");
}

// Libraries do without a call that is missing, and nobody can have looked at it.
TEST_F(Confinement, ACallNewerThanTheFilterIsMissing) { EXPECT_EQ(call("a call that is newer"), "ENOSYS"); }

TEST_F(Confinement, WorkOnFilesGoesOn) {
  for (const char* name : {"a file", "a mode", "a pipe", "a thread"}) EXPECT_EQ(call(name), "done") << name;
}

TEST_F(Confinement, GivingUpIsSeenAsWhatItIs) { EXPECT_EQ(call("abort"), "aborted"); }

TEST_F(Confinement, FilesAreOpenedMadeMovedAndRemovedInTheTreesAlone) {
  for (const char* name : {"in", "to", "also"}) ASSERT_EQ(::mkdir((folder_ / name).c_str(), 0700), 0);
  addFile("in/file");
  addFile("work/file");
  const CommandResult result = probe({"trees", folder_ / "in", folder_ / "to", folder_ / "also"});
  if (result.output == "not here\n") GTEST_SKIP() << "this kernel keeps no process to trees";
  EXPECT_EQ(result.output,
            "read in: done\nlist in: done\nwrite in: EACCES\nmake in: EACCES\nremove in: EACCES\n"
            "make: done\nwrite: done\nfolder: done\npipe: done\nlink: done\ndevice: EACCES\n"
            "move: done\nremove: done\nmove out: EACCES\n"
            "read out: EACCES\nmake out: EACCES\nremove out: EACCES\nlook out: done\n");
}

}  // namespace
}  // namespace halvorn
