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

// What a medium holds beside the product: an installer that says how it was started, and both launchers.
class Launchers : public testing::TestWithParam<std::string> {
 protected:
  Launchers()
      : facts{.product = GetParam(), .identifier = "example." + GetParam(), .readMe = "Read \"me\"'s.txt"} {
    fs::create_directories(medium());
    putFile(medium() + "/" + markPath(facts), "");
    putFile(program(), "#!/bin/sh\nprintf '%s|' \"$@\"\n", Executable::Yes);
    putFile(script(), launcherScript(facts), Executable::Yes);
  }
  [[nodiscard]] std::string medium() const { return folder / "a medium"; }
  [[nodiscard]] std::string script() const { return medium() + "/" + launcherName(facts); }
  [[nodiscard]] std::string program() const {
    return medium() + "/" + installerPath(facts) + "/Contents/Linux/HalvornInstaller";
  }
  [[nodiscard]] std::string expected() const {
    return "-sourcePath|" + medium() + "/" + productPath(facts) + "|-readMePath|" + medium() + "/" +
           facts.readMe + "|";
  }
  // As a desktop runs the entry that tells where it lies, in these words; "" says nothing.
  [[nodiscard]] std::string opened(const std::string& where, const std::string& workingFolder = "/") const {
    const auto entry = DesktopEntry::parse(launcherEntry(facts));
    auto words = splitExec(entry->value("Exec").value_or(""));
    if (!where.empty()) words.push_back(where);
    return runCommand(words, {.environment = {"PATH=/usr/bin:/bin"}, .workingFolder = workingFolder}).output;
  }

  const TemporaryFolder folder;
  const LauncherFacts facts;
};

TEST_P(Launchers, TheScriptFindsItsFolderWhereverItIsStarted) {
  EXPECT_EQ(runCommand({script()}, {.workingFolder = "/"}).output, expected());
  EXPECT_EQ(runCommand({"./" + launcherName(facts)}, {.workingFolder = medium()}).output, expected());
  EXPECT_EQ(runCommand({"sh", script()}, {.workingFolder = "/"}).output, expected());
}

TEST_P(Launchers, TheEntryFindsTheScript) {
  EXPECT_EQ(opened(script() + ".desktop"), expected()) << "told by its path";
  EXPECT_EQ(opened("file://" + script() + ".desktop"), expected()) << "told by a URL";
  EXPECT_EQ(opened("", medium()), expected()) << "started in its folder";
}

TEST_P(Launchers, WhatKeepsItFromStartingIsSaid) {
  fs::permissions(program(), fs::perms::owner_read);
  const CommandResult noexec = runCommand({"sh", script()}, {.environment = {"PATH=/usr/bin:/bin"}});
  EXPECT_EQ(noexec.status, 69);
  EXPECT_NE(noexec.output.find("Nothing can be started from here"), std::string::npos) << noexec.output;
  fs::remove(program());
  const CommandResult missing = runCommand({"sh", script()}, {.environment = {"PATH=/usr/bin:/bin"}});
  EXPECT_EQ(missing.status, 66);
  EXPECT_NE(missing.output.find("The installer is missing"), std::string::npos) << missing.output;
}

INSTANTIATE_TEST_SUITE_P(Names, Launchers,
                         testing::Values("Sample", "It's 100% \"new\" $HOME `id`",
                                         "-n \\x \xC3\xA9t\xC3\xA9"));

}  // namespace
}  // namespace halvorn
