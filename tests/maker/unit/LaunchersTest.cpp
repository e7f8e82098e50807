#include "tools/halvorn/Launchers.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "Platform/bundles/linux/launching/DesktopEntry.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

// What a medium holds beside the product: an installer that says how it was started, and what people open.
class Launchers : public testing::TestWithParam<std::string> {
 protected:
  Launchers()
      : facts{.product = GetParam(), .identifier = "example." + GetParam(), .readMe = "Read \"me\"'s.txt"} {
    fs::create_directories(medium() + "/" + kMediumFolder);
    fs::copy(KT_LAUNCHER, launcher());
    putFile(medium() + "/" + kLauncherWordsPath, launcherWordsFile(launcherWords(facts)));
    putFile(mark(), entryScript(facts));
    putFile(medium() + "/" + entryName(facts), launcherEntry(facts), Executable::Yes);
    putFile(program(), "#!/bin/sh\nprintf '%s|' \"$@\"\n", Executable::Yes);
    putFile(folder / "bin/notify-send", "#!/bin/sh\nprintf '%s' \"$*\" >'" + folder / "told" + "'\n",
            Executable::Yes);
  }
  [[nodiscard]] std::string medium() const { return folder / "a medium"; }
  [[nodiscard]] std::string launcher() const { return medium() + "/" + launcherName(facts); }
  [[nodiscard]] std::string mark() const { return medium() + "/" + markPath(facts); }
  [[nodiscard]] std::string program() const {
    return medium() + "/" + installerPath(facts) + "/Contents/Linux/HalvornInstaller";
  }
  [[nodiscard]] std::string expected() const {
    return "-sourcePath|" + medium() + "/" + productPath(facts) + "|-readMePath|" + medium() + "/" +
           facts.readMe + "|";
  }
  [[nodiscard]] CommandResult run(const std::vector<std::string>& words,
                                  const std::string& workingFolder = "/") const {
    return runCommand(words, {.environment = {"PATH=" + folder / "bin" + ":/usr/bin:/bin"},
                              .workingFolder = workingFolder});
  }
  // As a desktop runs the entry that tells where it lies, in these words; "" says nothing.
  [[nodiscard]] std::string opened(const std::string& where, const std::string& workingFolder = "/") const {
    std::string command = DesktopEntry::parse(launcherEntry(facts))->value("Exec").value_or("");
    command.replace(command.find("%k"), 2, where.empty() ? "" : quotedForExec(where));
    return run(splitExec(command), workingFolder).output;
  }

  const TemporaryFolder folder;
  const LauncherFacts facts;
};

TEST_P(Launchers, TheProgramFindsItsFolderWhereverItIsStarted) {
  EXPECT_EQ(run({launcher()}).output, expected());
  EXPECT_EQ(run({"./" + launcherName(facts)}, medium()).output, expected());
  fs::create_symlink(launcher(), folder / "elsewhere");
  EXPECT_EQ(run({folder / "elsewhere"}).output, expected());
}

TEST_P(Launchers, WhatTheProgramIsToldComesBehindItsOwnWords) {
  EXPECT_EQ(run({launcher(), "-version", "a b", ""}).output, expected() + "-version|a b||");
  EXPECT_EQ(run({launcher(), "--version"}).output, "--version|") << "the installer is asked";
  EXPECT_EQ(run({launcher(), "--help", "-x"}).output, expected() + "--help|-x|");
}

TEST_P(Launchers, TheEntryFindsTheProgram) {
  const std::string entry = medium() + "/" + entryName(facts);
  EXPECT_EQ(opened(entry).substr(0, expected().size()), expected()) << "told by its path";
  EXPECT_TRUE(opened("", medium()).ends_with(expected())) << "started in its folder";
  EXPECT_TRUE(opened("file://" + entry, medium()).ends_with(expected())) << "told by a URL";
}

TEST_P(Launchers, TheEntryStartsOneInstallerHoweverThatEnds) {
  putFile(program(), "#!/bin/sh\necho once\nexit 3\n", Executable::Yes);
  EXPECT_EQ(opened(medium() + "/" + entryName(facts), medium()), "once\n");
}

TEST_P(Launchers, TheEntryOpensNoOtherMediumAndSaysThatThereIsNone) {
  fs::rename(mark(), mark() + ".other");
  const std::string said = opened("", medium());
  EXPECT_TRUE(contentsOf(folder / "told").starts_with("-- Install "));
  EXPECT_TRUE(contentsOf(folder / "told").find("The medium is not mounted") != std::string::npos);
  EXPECT_EQ(said.find("-sourcePath"), std::string::npos) << said;
}

// Some file managers leave out a round of unquoting, and some hand the command to a shell.
TEST_P(Launchers, TheEntryIsReadTheSameByEveryFileManager) {
  const std::string entry = launcherEntry(facts);
  const std::size_t start = entry.find("\nExec=") + 6;
  const std::string written = entry.substr(start, entry.find('\n', start) - start);
  EXPECT_EQ(written.find_first_of("\\$`"), std::string::npos) << written;
  std::string asArguments;
  for (const std::string& word : splitExec(written)) asArguments += word + "|";
  const std::string withoutPlace = std::string(written).replace(written.find("%k "), 3, "");
  EXPECT_EQ(run({"sh", "-c", "printf '%s|' " + withoutPlace}).output, asArguments);
}

TEST_P(Launchers, WhatKeepsItFromStartingIsSaid) {
  const auto refused = [&](const CommandResult& result, int status, const std::string& sentence) {
    EXPECT_EQ(result.status, status) << sentence;
    EXPECT_NE(result.output.find(sentence), std::string::npos) << result.output;
    // And where there is no terminal.
    const std::string told = contentsOf(folder / "told");
    EXPECT_TRUE(told.starts_with("-- " + launcherName(facts) + " ")) << told;
    EXPECT_NE(told.find(sentence), std::string::npos) << told;
    fs::remove(folder / "told");
  };
  fs::permissions(program(), fs::perms::owner_read);
  refused(run({launcher()}), 69, "Nothing can be started from here");
  fs::remove(program());
  refused(run({launcher()}), 66, "The installer is missing: " + program());
  fs::remove(medium() + "/" + kLauncherWordsPath);
  refused(run({launcher()}), 66, "Nothing can be installed from here: the hidden folder .halvorn");
  refused(run({"sh", mark()}), 66, "Nothing can be installed from here");
  fs::permissions(launcher(), fs::perms::owner_read);
  refused(run({"sh", mark()}), 69, "mount the medium without noexec");
  fs::remove(launcher());
  refused(run({"sh", mark()}), 66, "The installer is missing: " + launcher());
}

TEST_P(Launchers, AnotherProcessorIsSaid) {
  std::string bytes = contentsOf(launcher());
  bytes[18] = static_cast<char>(bytes[18] + 1);
  putFile(launcher(), bytes, Executable::Yes);
  const CommandResult result = run({"sh", mark()});
  EXPECT_EQ(result.status, 69);
  EXPECT_NE(result.output.find("made for another kind of processor"), std::string::npos) << result.output;
}

TEST(LauncherWords, AreReadAsTheyWereWritten) {
  const LauncherWords words{.title = "Install a\nb", .installer = "x", .options = {"-sourcePath", ""}};
  const auto read = launcherWordsIn(launcherWordsFile(words));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->title, words.title);
  EXPECT_EQ(read->installer, words.installer);
  EXPECT_EQ(read->options, words.options);
  using namespace std::string_literals;
  for (const std::string& damaged : {""s, "a\0"s, "a\0b"s, "a\0b\0c\0"s, "a\0b\0c\0d"s})
    EXPECT_FALSE(launcherWordsIn(damaged)) << testing::PrintToString(damaged);
}

INSTANTIATE_TEST_SUITE_P(Names, Launchers,
                         testing::Values("Sample", "It's 100% \"new\" $HOME `id`",
                                         "-n \\x \xC3\xA9t\xC3\xA9"));

}  // namespace
}  // namespace halvorn
