// Aliases, file systems, debuggers and launchers as the system really has them.
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "KTStuff/KTClasses/KTUtilities.h"
#include "Platform/bundles/linux/Aliases.h"
#include "Platform/processes/linux/proc/SessionLaunchContext.h"
#include "Platform/session/linux/MountedFileSystems.h"
#include "Platform/session/linux/ProcDebugger.h"
#include "tests/fakes/FakeApplications.h"
#include "tests/fakes/FakeClock.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class RealAliases : public testing::Test {
 protected:
  std::string at(const std::string& name) const { return fs::canonical(folder.path()).string() + "/" + name; }
  void write(const std::string& name, const std::string& text) const { std::ofstream(at(name)) << text; }
  void writeEntry(const std::string& name, const std::string& url) const {
    write(name, "[Desktop Entry]\nType=Link\nName=x\nURL=" + url + "\n");
  }
  OptionalText target(const std::string& name) const { return targetOfAlias(at(name)); }

  TemporaryFolder folder;
};

TEST_F(RealAliases, PlainFilesFoldersAndMissingFilesAreNone) {
  write("plain", "");
  fs::create_directory(at("folder"));
  EXPECT_EQ(target("plain"), std::nullopt);
  EXPECT_EQ(target("folder"), std::nullopt);
  EXPECT_EQ(target("missing"), std::nullopt);
  EXPECT_EQ(targetOfAlias(""), std::nullopt);
  EXPECT_EQ(targetOfAlias(Text(std::u16string(u"/tmp\0x", 6))), std::nullopt);
}

TEST_F(RealAliases, LinksLeadToTheirTarget) {
  write("target", "");
  fs::create_symlink("target", at("relative"));
  fs::create_symlink(at("target"), at("absolute"));
  fs::create_symlink("relative", at("chain"));
  for (const char* const name : {"relative", "absolute", "chain"}) {
    EXPECT_EQ(target(name), Text(at("target"))) << name;
  }
}

TEST_F(RealAliases, LinkToAFolderMayEndInASlash) {
  fs::create_directory(at("folder"));
  fs::create_symlink("folder", at("link"));
  EXPECT_EQ(target("link/"), Text(at("folder")));
}

TEST_F(RealAliases, BrokenLinksAndCirclesLeadNowhere) {
  fs::create_symlink("missing", at("broken"));
  fs::create_symlink("circle2", at("circle1"));
  fs::create_symlink("circle1", at("circle2"));
  writeEntry("entry1.desktop", at("entry2.desktop"));
  writeEntry("entry2.desktop", at("entry1.desktop"));
  writeEntry("gone.desktop", "file://" + at("missing"));
  for (const char* const name : {"broken", "circle1", "entry1.desktop", "gone.desktop"}) {
    EXPECT_EQ(target(name), std::nullopt) << name;
  }
}

TEST_F(RealAliases, DesktopEntriesOfTheTypeLinkLeadToTheirUrl) {
  write("ziel mit ü", "");
  struct Row {
    const char* name;
    std::string url;
  };
  const Row rows[] = {
      {"path.desktop", at("ziel mit ü")},
      {"url.desktop", "file://" + at("ziel%20mit%20%C3%BC")},
      {"local.desktop", "file://localhost" + at("ziel%20mit%20ü")},
      {"short.desktop", "file:" + at("ziel mit ü")},
  };
  for (const Row& row : rows) {
    writeEntry(row.name, row.url);
    EXPECT_EQ(target(row.name), Text(at("ziel mit ü"))) << row.name;
  }
}

TEST_F(RealAliases, EntriesAndLinksMayAlternate) {
  write("target", "");
  writeEntry("entry.desktop", "file://" + at("link"));
  fs::create_symlink("target", at("link"));
  fs::create_symlink("entry.desktop", at("start"));
  EXPECT_EQ(target("start"), Text(at("target")));
}

TEST_F(RealAliases, EntriesThatLeadOffThisComputerAreNone) {
  for (const char* const url :
       {"https://example.com/", "file://server/share", "file:relative", "", "file:///a%00b"}) {
    writeEntry("web.desktop", url);
    EXPECT_EQ(target("web.desktop"), std::nullopt) << url;
  }
}

TEST_F(RealAliases, OtherEntriesAndOtherFilesAreNone) {
  write("target", "");
  write("program.desktop", "[Desktop Entry]\nType=Application\nURL=" + at("target") + "\nExec=true\n");
  write("broken.desktop", "Type=Link\nURL=" + at("target") + "\n");
  write("named.txt", "[Desktop Entry]\nType=Link\nURL=" + at("target") + "\n");
  for (const char* const name : {"program.desktop", "broken.desktop", "named.txt"}) {
    EXPECT_EQ(target(name), std::nullopt) << name;
  }
}

TEST_F(RealAliases, NamesThatAreNotUtf8AreKept) {
  write("target\xFC", "");
  fs::create_symlink("target\xFC", at("link\xFC"));
  const OptionalText found = target("link\xFC");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->bytes(), at("target\xFC"));
}

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

class RealLaunchContext : public testing::Test {
 protected:
  static constexpr std::int32_t parent = 4321;

  void writeUnit(const std::string& process, const std::string& line) const {
    fs::create_directories(folder.path() / process);
    std::ofstream(folder.path() / process / "cgroup") << line << "\n";
  }
  OptionalText creator(const Environment& environment = Environment()) {
    const SessionLaunchContext context(applications, environment, folder.path().string(),
                                       [] { return parent; });
    const auto information = context.launcherInformation();
    return information ? textForKey(*information, "FileCreator") : std::nullopt;
  }

  TemporaryFolder folder;
  FakeClock clock;
  FakeApplications applications{clock};
};

TEST_F(RealLaunchContext, CreatorIsTheSignatureOfTheParent) {
  applications.start({.name = "Launcher", .signature = fourCharCode("LNCH"), .pid = parent});
  EXPECT_EQ(creator(), Text("LNCH"));
}

TEST_F(RealLaunchContext, ParentThatIsNoApplicationIsUnknown) { EXPECT_EQ(creator(), std::nullopt); }

TEST_F(RealLaunchContext, ParentWhoseInformationIsMissingIsUnknown) {
  applications.start({.name = "Launcher", .pid = parent, .informationFails = true});
  EXPECT_EQ(creator(), std::nullopt);
}

TEST_F(RealLaunchContext, WhatTheParentSaysOfItselfIsThereToo) {
  applications.start({.name = "Launcher", .pid = parent, .identifier = "com.example.launcher"});
  const SessionLaunchContext context(applications, Environment(), folder.path().string(),
                                     [] { return parent; });
  const auto information = context.launcherInformation();
  ASSERT_TRUE(information);
  EXPECT_EQ(textForKey(*information, "CFBundleIdentifier"), Text("com.example.launcher"));
}

TEST_F(RealLaunchContext, SessionManagerIsTheLoginWindow) {
  const std::string sockets = "local/host:@/tmp/.ICE-unix/4321,unix/host:/tmp/.ICE-unix/";
  EXPECT_EQ(creator(Environment(Environment::Variables{{"SESSION_MANAGER", sockets + "4321"}})),
            Text("lgnw"));
  EXPECT_EQ(creator(Environment(Environment::Variables{{"SESSION_MANAGER", sockets + "43210"}})),
            std::nullopt);
  EXPECT_EQ(creator(Environment(Environment::Variables{{"SESSION_MANAGER", ""}})), std::nullopt);
}

TEST_F(RealLaunchContext, UnitOfAnAutostartEntryIsTheLoginWindow) {
  writeUnit("self", "0::/user.slice/user-1000.slice/user@1000.service/app.slice/app-foo@autostart.service");
  writeUnit(std::to_string(parent), "0::/user.slice/user-1000.slice/user@1000.service/init.scope");
  EXPECT_EQ(creator(), Text("lgnw"));
}

TEST_F(RealLaunchContext, ChildOfAnAutostartedProgramWasNotStartedAtLogin) {
  const std::string unit = "0::/user.slice/user@1000.service/app.slice/app-foo@autostart.service";
  writeUnit("self", unit);
  writeUnit(std::to_string(parent), unit);
  applications.start({.name = "Foo", .signature = fourCharCode("FooA"), .pid = parent});
  EXPECT_EQ(creator(), Text("FooA"));
}

TEST_F(RealLaunchContext, OtherUnitsAreNoLogin) {
  writeUnit("self", "0::/user.slice/user@1000.service/app.slice/app-gnome-foo-123.scope");
  EXPECT_EQ(creator(), std::nullopt);
}

}  // namespace
}  // namespace halvorn
