// halvorn install: whole installations without a window, each ending by its exit status.
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>

#include "tests/maker/adapter/HalvornFixture.h"
#include "tests/maker/adapter/Respawner.h"
#include "tests/support/SoundServer.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

// A WAV file: one channel of 8 bits, 8,000 times a second, as loud as can be.
std::string loudSound(std::uint32_t seconds) {
  const auto number = [](std::uint32_t value) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<char>(value >> shift));
    return bytes;
  };
  std::string samples;
  for (std::uint32_t at = 0; at < seconds * 8000; ++at) samples.push_back(at % 16 < 8 ? '\0' : '\xff');
  const std::string format = number(0x10001) + number(8000) + number(8000) + number(0x80001);
  return "RIFF" + number(static_cast<std::uint32_t>(samples.size()) + 36) + "WAVEfmt " + number(16) + format +
         "data" + number(static_cast<std::uint32_t>(samples.size())) + samples;
}

class InstallCommand : public HalvornFixture {
 protected:
  // A signature that no program of another test has.
  const std::string code = "i" + std::to_string(::getpid() % 1000 + 1000).substr(1);

  [[nodiscard]] std::vector<std::string> words(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"install", "-sourcePath", product()});
    return more;
  }
  // With --yes, as JSON and as the schema has it.
  [[nodiscard]] std::string installed(int status, std::vector<std::string> more = {}) const {
    more.emplace_back("--yes");
    return answer(words(more), "installEvent", status);
  }
  [[nodiscard]] std::string log() const { return contentsOf(home() + "/Library/Logs/HalvornInstaller.log"); }
  // The copy that is there, with that program in it, running.
  [[nodiscard]] std::vector<std::string> oldCopy(const std::string& script) {
    makeProduct({.version = "1.0", .signature = code}, applications());
    const std::string program = destination() + "/Contents/Linux/Sample";
    if (script.empty()) {
      fs::copy_file("/bin/sleep", program, fs::copy_options::overwrite_existing);
      return {program, "600"};
    }
    putFile(program, script, Executable::Yes);
    return {program};
  }
};

TEST_F(InstallCommand, AProductIsInstalledRegisteredAndLaunched) {
  makeProduct();
  const CommandResult result = halvorn(words({"--yes"}));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "Sample was successfully installed.\n");
  EXPECT_EQ(runCommand({"diff", "-r", product(), destination()}).output, "");
  EXPECT_TRUE(has(log(), "successfully copied")) << log();
  EXPECT_TRUE(fs::exists(home() + "/.local/share/applications/halvorn-app-example.halvorn.Sample.desktop"));
  EXPECT_TRUE(wasLaunched());
}

TEST_F(InstallCommand, WhoeverDoesNotReadItsEventsBreaksNothingOff) {
  makeProduct();
  std::vector<std::string> whole = command(words({"--yes", "--json"}));
  whole.insert(whole.begin(), {"sh", "-c", "\"$@\" | true", "sh"});
  EXPECT_EQ(runCommand(whole, {.environment = environment_}, 60).status, 0);
  EXPECT_EQ(runCommand({"diff", "-r", product(), destination()}).output, "");
  EXPECT_TRUE(wasLaunched());
}

// The installer's own is a second long. One of two minutes is heard as long as a sound of that kind may be.
TEST_F(InstallCommand, ASoundThatGoesOnAndOnDoesNotKeepItFromEnding) {
  if (const auto missing = SoundServer::missing()) GTEST_SKIP() << *missing;
  SoundServer server;
  makeProduct();
  const std::string installer = folder_ / "Loud.app";
  const std::string built = std::string(KT_BUNDLE_DIR) + "/Contents";
  fs::create_directories(installer + "/Contents");
  fs::create_symlink(built + "/Linux", installer + "/Contents/Linux");
  fs::copy(built + "/Resources", installer + "/Contents/Resources", fs::copy_options::recursive);
  fs::copy_file(built + "/Info.plist", installer + "/Contents/Info.plist");
  putFile(installer + "/Contents/Resources/Done.aiff", loudSound(120));
  environment_.push_back("PULSE_SERVER=" + std::string(std::getenv("PULSE_SERVER")));
  SoundRecording speakers(server, "lab_a");
  const double begun = testSeconds();
  EXPECT_EQ(halvorn(words({"--yes", "--installer", installer, "-completionSound", "YES"})).status, 0);
  EXPECT_LT(testSeconds() - begun, 60);
  EXPECT_GT(speakers.loudSeconds(), 1);
}

TEST_F(InstallCommand, EventsTellWhatHappens) {
  makeProduct();
  const std::string events = installed(0);
  EXPECT_TRUE(has(events, "{\"event\": \"begun\", \"plan\": {\"compatible\": true, ")) << events;
  EXPECT_TRUE(has(events, "{\"event\": \"progress\", \"turning\": true}\n")) << events;
  EXPECT_TRUE(has(events, "{\"event\": \"log\", \"line\": \"successfully copied\"}\n")) << events;
  EXPECT_TRUE(has(events,
                  "{\"event\": \"ended\", \"message\": \"Sample was successfully installed.\", "
                  "\"outcome\": \"installed\", \"reasons\": [], \"status\": 0}\n"))
      << events;
  EXPECT_TRUE(wasLaunched());
}

TEST_F(InstallCommand, ARunningCopyIsQuitAndGoesToTheTrash) {
  ChildProcess running(oldCopy(""), {.environment = environment_});
  makeProduct({.signature = code});
  const std::string events = installed(0);
  EXPECT_TRUE(running.waitForEnd(kTestPatience).has_value());
  EXPECT_EQ(versionOfBundle(destination()), "2.0");
  EXPECT_EQ(versionOfBundle(home() + "/.local/share/Trash/files/Sample.app"), "1.0") << events;
  EXPECT_TRUE(wasLaunched());
}

TEST_F(InstallCommand, WhatNobodyWantsToBeLaunchedIsNot) {
  makeProduct();
  const std::string events = installed(0, {"--no-launch"});
  EXPECT_TRUE(has(events, "\"not launched: nobody wants it\"")) << events;
  EXPECT_FALSE(has(events, "launched immediately")) << events;
}

TEST_F(InstallCommand, WithoutAYesNothingIsDone) {
  makeProduct();
  const CommandResult result = halvorn(words());
  EXPECT_EQ(result.status, 10) << result.output;
  EXPECT_FALSE(fs::exists(destination()));
  const std::string events = answer(words(), "installEvent", 10);
  EXPECT_TRUE(
      events.ends_with("\n{\"event\": \"ended\", \"message\": \"nobody said yes (--yes): nothing is "
                       "installed\", \"outcome\": \"notConfirmed\", \"reasons\": [], \"status\": 10}\n"))
      << events;
}

// Somebody before a terminal reads the plan and answers.
TEST_F(InstallCommand, BeforeATerminalThePlanIsShownAndAsked) {
  if (!programExists("script")) GTEST_SKIP() << "script is not installed";
  makeProduct();
  std::string line;
  for (const std::string& word : command(words({"--no-launch"}))) line += "'" + word + "' ";
  for (const bool says : {false, true}) {
    ChildProcess terminal({"script", "-qec", line, "/dev/null"}, {.environment = environment_});
    ASSERT_TRUE(terminal.waitForOutput("Install? [y/N]", kTestPatience)) << terminal.output();
    EXPECT_TRUE(has(terminal.output(), "To:          " + destination())) << terminal.output();
    terminal.writeInput(says ? "y\n" : "\n");
    EXPECT_EQ(terminal.waitForEnd(kTestPatience), says ? 0 : 10) << terminal.output();
    EXPECT_EQ(fs::exists(destination()), says);
    // One line tells how far it is, and gives way to what stays.
    EXPECT_TRUE(has(terminal.output(), "\r\033[KProduct:     Sample 2.0")) << terminal.output();
    EXPECT_EQ(has(terminal.output(), "\r\033[Ksuccessfully copied"), says) << terminal.output();
    EXPECT_EQ(has(terminal.output(), "\r\033[KSample was successfully installed."), says)
        << terminal.output();
  }
}

TEST_F(InstallCommand, WhatCannotBeInstalledSaysWhy) {
  makeProduct({.signature = std::nullopt});
  EXPECT_TRUE(has(installed(2), "missing product signature"));
  makeProduct({.minSystemVersion = "99.0"});
  EXPECT_TRUE(has(installed(3), "\"outcome\": \"systemTooOld\""));
  makeProduct();
  const std::string inside = installed(6, {"-destinationPath", product() + "/Contents/Inner.app"});
  EXPECT_TRUE(has(inside, "\"CAUSE -- what is copied and what is replaced lie one in the other")) << inside;
  EXPECT_FALSE(fs::exists(destination()));
}

TEST_F(InstallCommand, ACopyThatCannotBeTrashedStays) {
  makeUntrashable();
  makeProduct({.version = "1.0"}, applications());
  makeProduct();
  const std::string events = installed(5);
  EXPECT_TRUE(has(events, "\"outcome\": \"notTrashed\"")) << events;
  EXPECT_EQ(versionOfBundle(destination()), "1.0");
}

TEST_F(InstallCommand, AProgramThatDoesNotStayAwayCancelsIt) {
  const Respawner running(oldCopy(""), environment_);
  makeProduct({.signature = code});
  const std::string events = installed(4);
  EXPECT_TRUE(has(events, "\"outcome\": \"refusedToQuit\"")) << events;
  EXPECT_EQ(versionOfBundle(destination()), "1.0");
}

TEST_F(InstallCommand, ASignalBeforeAnythingIsTouchedInstallsNothing) {
  auto program = oldCopy("");
  // Its end is not asked for by SIGTERM alone.
  program.insert(program.begin(), {"sh", "-c", "trap '' TERM; exec \"$@\"", "sh"});
  ChildProcess stubborn(program, {.environment = environment_});
  makeProduct({.signature = code});
  ASSERT_TRUE(eventually([&] {
    return fs::exists("/proc/" + std::to_string(stubborn.pid()) + "/exe") &&
           fs::read_symlink("/proc/" + std::to_string(stubborn.pid()) + "/exe") ==
               destination() + "/Contents/Linux/Sample";
  }));
  ChildProcess installing(command(words({"--yes", "--json"})), {.environment = environment_});
  ASSERT_TRUE(installing.waitForOutput("Quitting", kTestPatience)) << installing.output();
  installing.sendSignal(SIGTERM);
  EXPECT_TRUE(installing.waitForOutput("\"outcome\": \"interrupted\"", kTestPatience)) << installing.output();
  EXPECT_EQ(installing.waitForEnd(kTestPatience), 9) << installing.output();
  EXPECT_EQ(versionOfBundle(destination()), "1.0");
}

}  // namespace
}  // namespace halvorn
