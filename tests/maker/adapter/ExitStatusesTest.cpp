// Every status that the manual page gives to a command is come to, with --json, and the answer is as the schema has it.
#include <unistd.h>

#include <csignal>

#include "tests/maker/adapter/HalvornFixture.h"
#include "tests/maker/adapter/Respawner.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

class ExitStatuses : public HalvornFixture {
 protected:
  // How the program is surrounded: what the shell does before it, and where its answer goes.
  struct Shell {
    std::string before = {};
    std::string behind = {};
  };
  // Ends so, with answers of that schema; "" for none, but a sentence on standard error.
  void ends(int status, const std::string& schema, Words words, const Shell& shell = {"", ""}) {
    const std::string verb = words.front();
    words.insert(words.begin(), "--json");
    Words whole = command(words);
    const std::string complaints = folder_ / "complaints";
    whole.insert(whole.begin(),
                 {"sh", "-c", shell.before + " exec \"$@\" 2>\"$0\" " + shell.behind, complaints});
    const CommandResult result = runCommand(whole, {.environment = environment_}, 60);
    EXPECT_EQ(result.status, status) << result.output << contentsOf(complaints);
    if (schema.empty()) {
      EXPECT_EQ(result.output, "");
      EXPECT_TRUE(status == 73 || contentsOf(complaints).size() > 1) << "nothing is said";
    } else {
      EXPECT_EQ(problemsIn(result.output, schema), "") << result.output;
      EXPECT_TRUE(schema == "report" || has(result.output, "\"status\": " + std::to_string(status)))
          << result.output;
    }
    reached_[verb].insert(status);
  }
  // No more and no less than those of the manual page.
  void expectAllOf(const std::string& verb) {
    std::set<int> expected = documentedStatuses().at(verb);
    if (statusesOfRights().contains(verb)) {
      for (const int status : statusesOfRights().at(verb)) expected.erase(status);
    }
    EXPECT_EQ(reached_[verb], expected) << verb;
  }

  [[nodiscard]] Words on(const std::string& verb, const Words& more = {}) const {
    Words words = {verb, "-sourcePath", product()};
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }
  void install() {
    makeProduct();
    ASSERT_EQ(halvorn(on("install", {"--yes", "--no-launch"})).status, 0);
  }
  // The installed copy is a program that runs.
  [[nodiscard]] Words runningCopy() {
    makeProduct({.version = "1.0", .signature = code}, applications());
    const std::string program = destination() + "/Contents/Linux/Sample";
    fs::copy_file("/bin/sleep", program, fs::copy_options::overwrite_existing);
    return {program, "600"};
  }
  // Does not end because it is asked to.
  [[nodiscard]] static Words stubbornly(Words program) {
    program.insert(program.begin(), {"sh", "-c", "trap '' TERM; exec \"$@\"", "sh"});
    return program;
  }
  [[nodiscard]] static bool runs(const ChildProcess& process, const std::string& program) {
    std::error_code problem;
    return fs::read_symlink("/proc/" + std::to_string(process.pid()) + "/exe", problem) == program;
  }
  // A signature that no program of another test has.
  const std::string code = "x" + std::to_string(::getpid() % 1000 + 1000).substr(1);
  const Shell full = {"", ">/dev/full"};
  StatusTable reached_;
};

TEST_F(ExitStatuses, TheManualPageAndTheOtherPageHaveOneTable) {
  const StatusTable other =
      statusTable(KT_SOURCE_DIR "/docs/halvorn.md", "\n\\| ([0-9]+) \\| ([a-z, ]+) \\|");
  EXPECT_EQ(documentedStatuses(), other);
  EXPECT_EQ(other.size(), commandsOfHalvorn().size());
  std::size_t entries = 0;
  const std::string manual = contentsOf(KT_SOURCE_DIR "/tools/halvorn/halvorn.1");
  const std::string section =
      manual.substr(manual.find(".SH EXIT"), manual.find(".SH FILES") - manual.find(".SH EXIT"));
  for (std::size_t at = section.find("\n.TP"); at != std::string::npos; at = section.find("\n.TP", at + 1))
    ++entries;
  std::set<int> read;
  for (const auto& [command, statuses] : documentedStatuses()) read.insert(statuses.begin(), statuses.end());
  EXPECT_EQ(read.size(), entries) << "an entry names no command";
}

TEST_F(ExitStatuses, EachOfCheckIsReached) {
  makeProduct();
  ends(0, "check", {"check", product()});
  ends(73, "", {"check", product()}, full);
  ends(64, "", {"check"});
  ends(66, "", {"check", image() + "/None.app"});
  makeProduct({.signature = std::nullopt});
  ends(1, "check", {"check", product()});
  expectAllOf("check");
}

TEST_F(ExitStatuses, EachOfPlanIsReached) {
  makeProduct();
  ends(0, "plan", on("plan"));
  ends(73, "", on("plan"), full);
  ends(64, "", on("plan", {"--none"}));
  ends(66, "", on("plan", {"--installer", home()}));
  ends(2, "noPlan", {"plan", "-productName", "Sample"});
  ends(3, "plan", on("plan", {"-minSystemVersion", "99.0"}));
  ends(6, "plan", on("plan", {"-destinationPath", product() + "/Contents/Inner.app"}));
  expectAllOf("plan");
}

TEST_F(ExitStatuses, EachOfAuditIsReached) {
  install();
  ends(0, "audit", {"audit", product(), destination()});
  ends(73, "", {"audit", product(), destination()}, full);
  ends(64, "", {"audit", product()});
  ends(66, "", {"audit", product(), home() + "/none"});
  putFile(destination() + "/Contents/new", "");
  ends(1, "audit", {"audit", product(), destination()});
  expectAllOf("audit");
}

TEST_F(ExitStatuses, EachOfReportIsReached) {
  ends(66, "", {"report"});
  install();
  ends(0, "report", {"report"});
  ends(0, "report", {"report", "-o", folder_ / "report", "--yes"});
  ends(10, "report", {"report", "-o", folder_ / "report"});
  ends(64, "", {"report", "word"});
  ends(73, "report", {"report", "-o", folder_ / "none/report", "--yes"});
  ends(73, "", {"report"}, full);
  expectAllOf("report");
}

TEST_F(ExitStatuses, EachOfRemoveIsReached) {
  ends(66, "", {"remove", "Sample", "--yes"});
  ends(64, "", {"remove"});
  const Words program = runningCopy();
  ends(10, "remove", {"remove", "Sample"});
  {
    const Respawner one(program, environment_);
    const Respawner another(program, environment_);
    ends(4, "remove", {"remove", "Sample", "--yes"});
  }
  ends(0, "remove", {"remove", "Sample", "--yes"});
  makeProduct({}, applications());
  ends(73, "", {"remove", "Sample", "--yes"}, full);
  fs::remove_all(home() + "/.local/share/Trash");
  makeUntrashable();
  makeProduct({}, applications());
  ends(5, "remove", {"remove", "Sample", "--yes"});
  expectAllOf("remove");
}

TEST_F(ExitStatuses, EachOfImageIsReached) {
  if (!programExists("mksquashfs")) GTEST_SKIP() << "mksquashfs is not installed";
  const std::string installer = folder_ / "HalvornInstaller.app";
  fs::create_directories(installer + "/Contents");
  fs::copy(KT_SOURCE_DIR "/Resources", installer + "/Contents/Resources", fs::copy_options::recursive);
  putFile(installer + "/Contents/Linux/HalvornInstaller", "#!/bin/sh\n", Executable::Yes);
  makeProduct();
  putFile(product() + "/Contents/Resources/large", std::string(100'000, 'x'));
  const auto made = [&](const std::string& name) {
    return Words{"image", product(), "--installer", installer, "-o", folder_ / name};
  };
  ends(0, "image", made("Sample.squashfs"));
  ends(64, "", made("Sample.zip"));
  ends(66, "", {"image", home(), "--installer", home(), "-o", folder_ / "Sample.squashfs"});
  ends(73, "", made("none/Sample.squashfs"));
  ends(6, "", made("Sample.squashfs"), {"trap '' XFSZ; ulimit -f 16;", ""});
  environment_.front() = "PATH=" + folder_ / "nothing";
  ends(69, "", made("Sample.squashfs"), {"PATH=/nowhere;", ""});
  environment_.front() = "PATH=/usr/bin:/bin";
  makeProduct({.signature = std::nullopt});
  ends(1, "", made("Sample.squashfs"));
  expectAllOf("image");
}

TEST_F(ExitStatuses, EachOfInstallIsReached) {
  makeProduct({.signature = code});
  ends(10, "installEvent", on("install"));
  ends(64, "", on("install", {"--none"}));
  ends(66, "", on("install", {"--yes", "--installer", home()}));
  ends(73, "", on("install", {"--yes"}), {"", ">&-"});
  ends(2, "installEvent", {"install", "-productName", "Sample", "--yes"});
  ends(3, "installEvent", on("install", {"-minSystemVersion", "99.0", "--yes"}));
  ends(6, "installEvent", on("install", {"-destinationPath", product() + "/Contents/Inner.app", "--yes"}));
  const Words program = runningCopy();
  {
    const Respawner running(program, environment_);
    ends(4, "installEvent", on("install", {"--yes"}));
  }
  {
    ChildProcess stubborn(stubbornly(program), {.environment = environment_});
    ASSERT_TRUE(eventually([&] { return runs(stubborn, program.front()); }));
    ChildProcess installing(command(on("install", {"--yes", "--json"})), {.environment = environment_});
    ASSERT_TRUE(installing.waitForOutput("Quitting", kTestPatience)) << installing.output();
    installing.sendSignal(SIGTERM);
    EXPECT_TRUE(installing.waitForOutput("\"event\": \"ended\"", kTestPatience)) << installing.output();
    EXPECT_EQ(installing.waitForEnd(kTestPatience), 9) << installing.output();
    reached_["install"].insert(9);
  }
  ends(0, "installEvent", on("install", {"--yes", "--no-launch"}));
  fs::remove_all(destination());
  fs::remove_all(home() + "/.local/share/Trash");
  makeUntrashable();
  makeProduct({.version = "1.0"}, applications());
  ends(5, "installEvent", on("install", {"--yes"}));
  expectAllOf("install");
}

}  // namespace
}  // namespace halvorn
