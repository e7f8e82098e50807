// halvorn remove: what an installation left, and nothing else.
#include <unistd.h>

#include "tests/maker/adapter/HalvornFixture.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class RemoveCommand : public HalvornFixture {
 protected:
  void SetUp() override {
    HalvornFixture::SetUp();
    if (IsSkipped()) return;
    makeProduct();
    ASSERT_EQ(halvorn({"install", "-sourcePath", product(), "--yes", "--no-launch"}).status, 0);
  }
  [[nodiscard]] std::string removed(int status, const std::string& name = "Sample") const {
    return answer({"remove", name, "--yes"}, "remove", status);
  }
  [[nodiscard]] std::string entry() const {
    return home() + "/.local/share/applications/halvorn-app-example.halvorn.Sample.desktop";
  }
  [[nodiscard]] std::string trashed(const std::string& name) const {
    return home() + "/.local/share/Trash/files/" + name;
  }
};

TEST_F(RemoveCommand, TheBundleItsEntryIconsAndLoginItemGoToTheTrash) {
  ASSERT_TRUE(fs::exists(entry()));
  const std::string item = putFile(home() + "/.config/autostart/sample.desktop",
                                   "[Desktop Entry]\nType=Application\nName=x\nExec=\"" + destination() +
                                       "/Contents/Linux/Sample\" --hidden\n");
  const std::string answered = removed(0);
  EXPECT_FALSE(fs::exists(destination())) << answered;
  EXPECT_FALSE(fs::exists(entry())) << answered;
  EXPECT_FALSE(fs::exists(item)) << answered;
  EXPECT_EQ(runCommand({"find", home() + "/.local/share/icons", "-name", "halvorn-app-*"}).output, "");
  EXPECT_EQ(versionOfBundle(trashed("Sample.app")), "2.0");
  EXPECT_TRUE(fs::exists(trashed("sample.desktop")));
  EXPECT_TRUE(has(contentsOf(home() + "/.local/share/Trash/info/Sample.app.trashinfo"), destination()));
}

TEST_F(RemoveCommand, WhatWentToTheTrashIsPutBackByTheDesktopsTools) {
  if (!programExists("trash-restore")) GTEST_SKIP() << "trash-cli is not installed";
  const std::string before = contentsOf(entry());
  (void)removed(0);
  for (const std::string& path : {destination(), entry()}) {
    ASSERT_FALSE(fs::exists(path));
    const CommandResult restored = runCommand({"sh", "-c", "echo 0 | trash-restore '" + path + "'"},
                                              {.environment = environment_, .workingFolder = home()});
    EXPECT_TRUE(fs::exists(path)) << restored.output;
  }
  EXPECT_EQ(runCommand({"diff", "-r", product(), destination()}).output, "");
  EXPECT_EQ(contentsOf(entry()), before);
}

TEST_F(RemoveCommand, WhatThePersonMadeStaysAndIsNamed) {
  const std::string settings = putFile(home() + "/.config/example.halvorn.Sample.plist", "settings");
  const std::string data = putFile(home() + "/.local/share/Sample/document", "document");
  const std::string answered = removed(0);
  EXPECT_TRUE(has(answered, "\"stays\": [\"" + settings + "\", \"" + home() + "/.local/share/Sample\"]"))
      << answered;
  EXPECT_EQ(contentsOf(settings), "settings");
  EXPECT_EQ(contentsOf(data), "document");
}

TEST_F(RemoveCommand, ARunningCopyIsQuitFirstAndAStrangerStays) {
  // A signature that no installation of another test quits.
  const std::string code = "r" + std::to_string(::getpid() % 1000 + 1000).substr(1);
  makeProduct({.signature = code});
  makeProduct({.signature = code}, applications());
  fs::copy_file("/bin/sleep", destination() + "/Contents/Linux/Sample", fs::copy_options::overwrite_existing);
  fs::copy_file("/bin/sleep", product() + "/Contents/Linux/Sample", fs::copy_options::overwrite_existing);
  ChildProcess running({destination() + "/Contents/Linux/Sample", "600"}, {.environment = environment_});
  ChildProcess stranger({product() + "/Contents/Linux/Sample", "600"}, {.environment = environment_});
  EXPECT_TRUE(has(removed(0), "\"reason\": \"\""));
  EXPECT_TRUE(running.waitForEnd(kTestPatience).has_value());
  EXPECT_TRUE(stranger.isRunning());
}

TEST_F(RemoveCommand, WithoutAYesOrANameNothingIsDone) {
  EXPECT_EQ(halvorn({"remove", "Sample"}).status, 10);
  EXPECT_TRUE(fs::exists(destination()));
  EXPECT_EQ(halvorn({"remove", "Sampl", "--yes"}).status, 66) << "the beginning of a name is no name";
  EXPECT_EQ(halvorn({"remove", home(), "--yes"}).status, 66) << "no bundle";
  EXPECT_EQ(halvorn({"remove", "--yes"}).status, 64);
  EXPECT_TRUE(fs::exists(destination()));
}

TEST_F(RemoveCommand, ABundleThatCannotBeTrashedStaysWithItsEntry) {
  makeUntrashable();
  makeProduct({}, applications());
  EXPECT_FALSE(has(removed(5), "\"reason\": \"\""));
  EXPECT_TRUE(fs::exists(destination()));
  EXPECT_TRUE(fs::exists(entry()));
}

// The entry is that of the copy that was installed last.
TEST_F(RemoveCommand, TheEntryOfAnotherCopyStays) {
  makeProduct({}, home() + "/Other");
  EXPECT_TRUE(has(removed(0, home() + "/Other/Sample.app"), "\"trashes\": []"));
  EXPECT_TRUE(fs::exists(entry()));
  EXPECT_TRUE(fs::exists(destination()));
}

}  // namespace
}  // namespace halvorn
