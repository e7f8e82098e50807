// File systems and debuggers as the system really has them.
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "Platform/session/linux/MountedFileSystems.h"
#include "Platform/session/linux/ProcDebugger.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class RealFileSystems : public testing::Test {
 protected:
  // What the system's own tool says.
  static Text typeByTool(const std::string& path) {
    const CommandResult result = runCommand({"findmnt", "-n", "-o", "FSTYPE", "--target", path});
    EXPECT_EQ(result.status, 0);
    return Text(result.output).trimmed();
  }
  const MountedFileSystems fileSystems;
};

TEST_F(RealFileSystems, AreNamedAsTheSystemNamesThem) {
  const TemporaryFolder folder;
  EXPECT_EQ(fileSystems.statusOf("/proc").typeName, Text("proc"));
  EXPECT_EQ(fileSystems.statusOf("/proc/self/status").typeName, Text("proc"));
  for (const std::string& path :
       {std::string("/"), folder.path().string(), std::string("/dev"), std::string("/sys")}) {
    const FileSystemAnswer answer = fileSystems.statusOf(path);
    EXPECT_EQ(answer.status, 0) << path;
    if (programExists("findmnt")) {
      EXPECT_EQ(answer.typeName, typeByTool(path)) << path;
    }
    EXPECT_FALSE(answer.typeName.isEmpty()) << path;
  }
}

TEST_F(RealFileSystems, LinksAreFollowed) {
  const TemporaryFolder folder;
  fs::create_symlink("/proc", folder / "link");
  EXPECT_EQ(fileSystems.statusOf(folder / "link").typeName, Text("proc"));
}

TEST_F(RealFileSystems, MissingPathsAreErrors) {
  for (const Text& path : {Text("/no/such/path"), Text(""), Text(std::u16string(u"/tmp\0x", 6))}) {
    const FileSystemAnswer answer = fileSystems.statusOf(path);
    EXPECT_NE(answer.status, 0);
    EXPECT_TRUE(answer.typeName.isEmpty());
  }
}

TEST_F(RealFileSystems, WithoutAMountTableTheNameIsEmpty) {
  const FileSystemAnswer answer = MountedFileSystems("/no/such/table").statusOf("/");
  EXPECT_EQ(answer.status, 0);
  EXPECT_TRUE(answer.typeName.isEmpty());
}

TEST(RealDebugger, IsNotThereAsARule) { EXPECT_FALSE(ProcDebugger("/no/such/file").isAttached()); }

// A process that lets its parent trace it is traced by that parent.
TEST(RealDebugger, IsSeenByTheTracedProcess) {
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const bool before = ProcDebugger().isAttached();
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    const bool after = ProcDebugger().isAttached();
    ::_exit((before ? 1 : 0) | (after ? 2 : 0));
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 2);
}

TEST(RealDebugger, IsSeenUnderGdb) {
  EXPECT_EQ(runCommand({KT_DEBUGGER_PROBE}).output, "debugging: no\n");
  if (!programExists("gdb")) GTEST_SKIP() << "gdb is not installed";
  // A leak check traces the program itself, which cannot be done twice.
  const std::vector<std::string> words = {
      "gdb", "-nx",    "-batch",         "-ex", "set environment ASAN_OPTIONS=detect_leaks=0", "-ex",
      "run", "--args", KT_DEBUGGER_PROBE};
  const CommandResult result = runCommand(words, {}, 60);
  EXPECT_NE(result.output.find("debugging: yes"), std::string::npos) << result.output;
}

}  // namespace
}  // namespace halvorn
