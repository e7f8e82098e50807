// halvorn plan: what would be done, and that nothing is.
#include <sys/stat.h>
#include <unistd.h>

#include <sstream>

#include "tests/maker/adapter/HalvornFixture.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class PlanCommand : public HalvornFixture {
 protected:
  [[nodiscard]] std::vector<std::string> words(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"plan", "-sourcePath", product()});
    return more;
  }
  [[nodiscard]] std::string planned(const std::vector<std::string>& more = {}, int status = 0) const {
    return answer(words(more), "plan", status);
  }
};

TEST_F(PlanCommand, AFirstInstallationGoesIntoTheApplicationsFolder) {
  makeProduct();
  const std::string plan = planned();
  EXPECT_TRUE(has(plan, "\"product\": \"Sample\"")) << plan;
  EXPECT_TRUE(has(plan, "\"version\": \"2.0\"")) << plan;
  EXPECT_TRUE(has(plan, "\"path\": \"" + destination() + "\", \"reason\": \"applicationsFolder\"")) << plan;
  EXPECT_TRUE(has(plan, "\"shown\": \"~/Applications/Sample.app\"")) << plan;
  EXPECT_TRUE(has(plan, "\"rights\": {\"needed\": false}")) << plan;
  EXPECT_TRUE(has(plan, "\"quits\": []")) << plan;
  EXPECT_TRUE(has(plan, "\"enough\": true")) << plan;
  EXPECT_FALSE(has(plan, "\"trashes\"")) << plan;
  EXPECT_TRUE(has(plan, "{\"program\": \"" + destination() + "/Contents/Linux/Sample\", \"starts\": true}"))
      << plan;
  EXPECT_TRUE(has(plan, "\"autolaunch = (null)\"")) << "the steps' own words are the reasons: " << plan;
}

TEST_F(PlanCommand, ACopyThatIsThereGoesToTheTrashAndARunningOneIsQuit) {
  const std::string code = "q" + std::to_string(::getpid() % 1000 + 1000).substr(1);
  makeProduct({.signature = code});
  makeProduct({.version = "1.0", .signature = code}, applications());
  fs::copy_file("/bin/sleep", destination() + "/Contents/Linux/Sample", fs::copy_options::overwrite_existing);
  ChildProcess running({destination() + "/Contents/Linux/Sample", "600"}, {.environment = environment_});
  const std::string plan = planned({"-productCode", code});
  EXPECT_TRUE(has(plan, "\"trashes\": \"" + destination() + "\"")) << plan;
  EXPECT_TRUE(has(plan, "\"pid\": " + std::to_string(running.pid()))) << plan;
  EXPECT_TRUE(has(plan, "\"reason\": \"runningCopy\"")) << plan;
  EXPECT_TRUE(running.isRunning());
  const std::string told = halvorn(words({"-productCode", code})).output;
  EXPECT_TRUE(has(told, "To Trash:    " + destination() + "\n")) << told;
  EXPECT_TRUE(has(told, "because it runs from there now\n")) << told;
}

TEST_F(PlanCommand, AnotherPlaceThanTheOneThatWasGivenIsExplained) {
  makeProduct();
  EXPECT_TRUE(has(planned({"-destinationPath", applications() + "/Other.app"}), "\"reason\": \"given\""));
  const std::string plan = planned({"-destinationPath", home() + "/None/Sample.app"});
  EXPECT_TRUE(has(plan, "\"path\": \"" + destination() + "\", \"reason\": \"givenOneIsUnusable\"")) << plan;
}

TEST_F(PlanCommand, EveryObstacleHasTheStatusThatTheInstallationWouldEndWith) {
  makeProduct();
  const std::string nothing = answer({"plan", "-productName", "Sample"}, "noPlan", 2);
  EXPECT_TRUE(has(nothing, "\"problem\": \"missing source path\"")) << nothing;
  const std::string old = planned({"-minSystemVersion", "99.0"}, 3);
  EXPECT_TRUE(has(old, "\"compatible\": false")) << old;
  const std::string inside = planned({"-destinationPath", product() + "/Contents/Inner.app"}, 6);
  EXPECT_TRUE(has(inside, "lie one in the other")) << inside;
}

TEST_F(PlanCommand, RightsThatAreNeededAreTold) {
  fs::remove_all(applications());
  makeProduct();
  const CommandResult result = halvorn(words({"--json"}));
  EXPECT_EQ(problemsIn(result.output, "plan"), "");
  EXPECT_TRUE(has(result.output, "\"needed\": true")) << result.output;
  EXPECT_TRUE(has(result.output, "\"Cannot write to folder /")) << result.output;
  // Whether they can be asked for depends on the machine; both are said.
  EXPECT_EQ(result.status, has(result.output, "\"rights\": {\"needed\": true}") ? 0 : 7) << result.output;
}

// Path, kind, mode, owner, size, times, and bytes.
std::string snapshotOf(const fs::path& top) {
  std::ostringstream all;
  for (const auto& entry : fs::recursive_directory_iterator(top)) {
    struct stat facts {};
    if (::lstat(entry.path().c_str(), &facts) != 0) continue;
    all << entry.path().string() << ' ' << facts.st_mode << ' ' << facts.st_uid << ' ' << facts.st_ino << ' '
        << facts.st_size << ' ' << facts.st_mtim.tv_sec << '.' << facts.st_mtim.tv_nsec << ' '
        << facts.st_ctim.tv_sec << '.' << facts.st_ctim.tv_nsec << '\n';
    if (entry.is_regular_file() && !entry.is_symlink()) all << contentsOf(entry.path()) << '\n';
  }
  return all.str();
}

TEST_F(PlanCommand, NothingIsTouched) {
  makeProduct();
  makeProduct({.version = "1.0"}, applications());
  const std::string before = snapshotOf(folder_.path());
  EXPECT_EQ(halvorn(words({"-completionSound", "YES", "-completionQuit", "1"})).status, 0);
  EXPECT_EQ(halvorn(words({"-destinationPath", home() + "/none/Sample.app"})).status, 0);
  EXPECT_EQ(halvorn({"plan"}).status, 2);
  EXPECT_EQ(snapshotOf(folder_.path()), before);
}

TEST_F(PlanCommand, NoSystemCallIsMadeThatCouldChangeAFile) {
  if (!programExists("strace")) GTEST_SKIP() << "strace is not installed";
  if (KT_IS_SANITIZED) GTEST_SKIP() << "the leak checker cannot work under strace";
  makeProduct();
  makeProduct({.version = "1.0"}, applications());
  const std::string trace = folder_ / "trace";
  const auto traced = [&](std::vector<std::string> program) {
    program.insert(program.begin(), {"strace", "-f", "-qq", "-o", trace, "-e",
                                     "trace=%file,fchmod,fchown,ftruncate,fsetxattr,kill,tgkill"});
    const auto result = runCommand(program, {.environment = environment_}, 60);
    EXPECT_EQ(result.status, 0) << result.output;
    std::string changes;
    std::istringstream lines(contentsOf(trace));
    for (std::string line; std::getline(lines, line);) {
      const bool opensToWrite = has(line, "O_WRONLY") || has(line, "O_RDWR") || has(line, "O_CREAT");
      bool changesName = false;
      for (const char* call : {"mkdir", "rename", "unlink", "rmdir", "link(", "linkat(", "symlink", "chmod",
                               "chown", "truncate", "setxattr", "utime", "mknod", "kill("})
        changesName = changesName || has(line, call);
      if ((opensToWrite && !has(line, "\"/dev/null\"")) || (changesName && !has(line, "readlink")))
        changes += line + "\n";
    }
    return changes;
  };
  EXPECT_EQ(traced(command(words())), "");
  // The same look sees a program that does.
  EXPECT_NE(traced({"touch", folder_ / "new"}), "");
}

TEST_F(PlanCommand, WithoutAnInstallersBundleItSaysSo) {
  makeProduct();
  const CommandResult result = halvorn(words({"--installer", home()}));
  EXPECT_EQ(result.status, 66);
  EXPECT_TRUE(has(result.output, "--installer")) << result.output;
}

TEST_F(PlanCommand, AnInstallerInsideTheProductFindsItAsItsWindowDoes) {
  makeProduct();
  const std::string inside = product() + "/Contents/Resources/HalvornInstaller.app";
  fs::create_directories(inside + "/Contents");
  fs::copy(KT_BUNDLE_DIR "/Contents/Resources", inside + "/Contents/Resources", fs::copy_options::recursive);
  const std::string plan = answer({"plan", "--installer", inside}, "plan");
  EXPECT_TRUE(has(plan, "\"source\": \"" + product() + "\"")) << plan;
}

TEST_F(PlanCommand, WordsThatMakeNoCommandAreRefused) {
  for (const std::vector<std::string>& wrong :
       {std::vector<std::string>{}, {"nothing"}, {"plan", "--nothing"}, {"check"}, {"plan", "--installer"}})
    EXPECT_EQ(halvorn(wrong).status, 64);
  EXPECT_EQ(halvorn({"--help"}).status, 0);
}

}  // namespace
}  // namespace halvorn
