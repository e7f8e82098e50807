// What real processes and bundles say of themselves, against what the system's own tools say.
#include <sys/xattr.h>
#include <unistd.h>

#include <cmath>
#include <fstream>

#include "tests/processes/adapter/LiveFixture.h"
#include "tests/support/OwnProcessorTimes.h"

namespace halvorn {
namespace {

class RealAttributes : public LiveFixture {
 protected:
  void SetUp() override { watch({}, Table::Whole); }
  static std::string ps(const std::string& column, pid_t pid) {
    const auto result = runCommand({"ps", "-o", column + "=", "-p", std::to_string(pid)});
    EXPECT_EQ(result.status, 0) << result.output;
    return result.output;
  }
};

TEST_F(RealAttributes, TheLaunchDateIsThatOfPs) {
  ChildProcess& child = startBundle("Editor", "EDIT");
  giveItAMoment(child);  // `ps` takes a program that has just started for one of the future
  const double elapsed = std::stod(ps("etimes", child.pid()));
  const double started = live->clock.now().secondsSince1970 - elapsed;
  EXPECT_NEAR(process(child)->launchDate().secondsSince1970, started, 1.5);
  EXPECT_NEAR(process(child)->secondsRunning(), elapsed, 1.5);
  EXPECT_EQ(process(child)->launchDate(), process(child)->launchDate());
}

TEST_F(RealAttributes, TheProcessorTimeIsThatOfPs) {
  const OwnProcessorTimes times(folder / "times");
  if (times.missing()) GTEST_SKIP() << *times.missing();
  ChildProcess& child = startBundle("Editor", "EDIT", {"--burns", "1.3"});
  const KTProcessPointer editor = process(child);
  // The file is one for all programs of a person, so another one may have written in between.
  double seconds = 0;
  EXPECT_TRUE(eventually([&] {
    seconds = editor->cpuTime();
    return std::abs(seconds - std::stod(ps("cputimes", child.pid()))) <= 1.0 && seconds > 1.0;
  })) << seconds;
  EXPECT_NE(std::fmod(seconds, 1.0), 0.0);
}

TEST_F(RealAttributes, TheProcessorTimeOfAnEndedProcessIsZero) {
  ChildProcess& child = startBundle("Editor", "EDIT");
  const KTProcessPointer editor = process(child);
  child.end(SIGKILL);
  EXPECT_EQ(editor->cpuTime(), 0.0);
}

TEST_F(RealAttributes, VersionsComeFromTheBundlesOwnFile) {
  const auto version = [&](const std::string& name, std::map<std::string, std::string> info) {
    return process(start(makeBundle(folder.path(), {.name = name, .info = std::move(info)})))->version();
  };
  EXPECT_EQ(version("A", {{"CFBundleShortVersionString", "2.1b3"}, {"CFBundleVersion", "417"}}),
            Text("2.1b3"));
  EXPECT_EQ(version("B", {{"CFBundleShortVersionString", "5"}, {"CFBundleVersion", "417"}}), Text("417"));
  EXPECT_EQ(version("C", {}), Text("1.0"));
}

TEST_F(RealAttributes, CocoaAndBackgroundAreReadFromTheBundle) {
  const std::string program = makeBundle(folder.path(), {.name = "Agent",
                                                         .info = {{"NSPrincipalClass", "NSApplication"}},
                                                         .extraInfo = "<key>LSUIElement</key><true/>"});
  const KTProcessPointer agent = process(start(program));
  EXPECT_EQ(agent->platform(), Text(KTPlatformCocoa));
  EXPECT_TRUE(agent->isBackgroundOnly());
  EXPECT_EQ(agent->bundle(), Text(folder / "Agent.app"));
  const KTProcessPointer plain = process(startBundle("Editor", "EDIT"));
  EXPECT_EQ(plain->platform(), Text(KTPlatformCarbon));
  EXPECT_FALSE(plain->isBackgroundOnly());
}

TEST_F(RealAttributes, ThisProgramKnowsItself) {
  const KTProcessPointer self = live->processes.currentProcess();
  ASSERT_NE(self, nullptr);
  EXPECT_EQ(self->unixPID(), ::getpid());
  EXPECT_EQ(self->path()->bytes(), std::filesystem::read_symlink("/proc/self/exe").string());
}

class RealClassicVersions : public RealAttributes {
 protected:
  // A resource fork with the one resource 'vers' 1.
  static std::string fork(const std::string& record) {
    const auto number = [](std::uint32_t value, int size) {
      std::string result;
      for (int shift = (size - 1) * 8; shift >= 0; shift -= 8)
        result.push_back(static_cast<char>(value >> shift));
      return result;
    };
    const std::string data = number(4, 4) + record;
    const std::string map = std::string(24, '\0') + number(28, 2) + number(50, 2) + number(0, 2) + "vers" +
                            number(0, 2) + number(10, 2) + number(1, 2) + number(0xFFFF, 2) +
                            number(0, 8 / 2) + number(0, 4);
    return number(16, 4) + number(16 + 8, 4) + number(8, 4) +
           number(static_cast<std::uint32_t>(map.size()), 4) + data + map;
  }
  std::string program = folder / "Classic";
};

TEST_F(RealClassicVersions, AreReadFromTheForkInAnExtendedAttribute) {
  placeZooProgram(program);
  std::filesystem::remove(program);
  std::filesystem::copy_file(zooProgram(), program);  // the attribute belongs to this file alone
  const std::string bytes = fork(std::string("\x03\x60\x21\x01", 4));
  if (::setxattr(program.c_str(), "user.com.apple.ResourceFork", bytes.data(), bytes.size(), 0) != 0) {
    GTEST_SKIP() << "the file system keeps no extended attributes";
  }
  EXPECT_EQ(live->items.resource(program, fourCharCode("vers"), 1), std::string("\x03\x60\x21\x01", 4));
}

TEST_F(RealClassicVersions, AreReadFromTheFileBesideTheProgramAndAnswerForARunningOne) {
  startDesktop({.bus = false});
  if (!desktop) return;
  watch({.display = desktop->displayName()});
  placeZooProgram(program);
  const std::string bytes = fork(std::string("\x03\x60\x21\x01", 4));
  std::string header = {0, 5, 22, 7, 0, 2, 0, 0};
  header += std::string(16, '\0') + std::string("\0\1\0\0\0\2\0\0\0\x26\0\0\0", 13);
  header.push_back(static_cast<char>(bytes.size()));
  std::ofstream(folder / "._Classic", std::ios::binary) << header << bytes;
  const KTProcessPointer classic = process(start(program, {"--windows", "1"}));
  EXPECT_EQ(classic->carbonVersion(), Text("1.2.1b3"));
  EXPECT_EQ(classic->version(), Text("1.2.1b3"));
}

}  // namespace
}  // namespace halvorn
