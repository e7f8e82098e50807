#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

// A person's home folder, login items and running programs, all real; the choice
// is made by a program of its own.
class DestinationOnDisk : public testing::Test {
 protected:
  DestinationOnDisk() {
    fs::permissions(folder_.path(), static_cast<fs::perms>(0755));
    fs::create_directories(home());
    // Not written anywhere else, so that no program of another test is taken for this product.
    code_ = "q" + std::to_string(::getpid() % 1000 + 1000).substr(1);
  }
  [[nodiscard]] std::string home() const { return folder_ / "home"; }

  std::string bundle(const std::string& path, const std::string& code) const {
    putFile(path + "/Contents/Info.plist",
            infoPlist(plistEntry("CFBundleExecutable", "Program") + plistEntry("CFBundleSignature", code)));
    fs::create_directories(path + "/Contents/Linux");
    fs::copy_file(fs::canonical("/bin/sleep"), path + "/Contents/Linux/Program");
    return path;
  }
  static std::vector<std::string> running(const std::string& bundle) {
    return {bundle + "/Contents/Linux/Program", "60"};
  }
  void loginItem(const std::string& name, const std::string& exec) const {
    putFile(home() + "/.config/autostart/" + name + ".desktop",
            "[Desktop Entry]\nType=Application\nName=x\nExec=" + exec + "\n");
  }

  // The lines the program prints, each without its first word, by that word.
  struct Answer {
    std::string output;
    [[nodiscard]] std::string operator[](const std::string& word) const {
      const std::size_t start = ("\n" + output).find("\n" + word + " ");
      if (start == std::string::npos) return "?";
      const std::size_t value = start + word.size() + 1;
      return output.substr(value, output.find('\n', value) - value);
    }
  };
  [[nodiscard]] Answer choose(const std::vector<std::string>& codes,
                              const std::string& program = KT_DESTINATION_PROBE,
                              const std::vector<std::string>& before = {}) const {
    std::vector<std::string> arguments = before;
    arguments.insert(arguments.end(), {program, "Foo"});
    arguments.insert(arguments.end(), codes.begin(), codes.end());
    const CommandResult result =
        runCommand(arguments, {.environment = {"HOME=" + home(), "PATH=/usr/bin:/bin", "LANG=de_DE.UTF-8"}});
    EXPECT_EQ(result.status, 0) << result.output;
    return {result.output};
  }

  TemporaryFolder folder_;
  std::string code_;
};

TEST_F(DestinationOnDisk, ALoginItemIsWhereThePersonKeepsTheProduct) {
  const std::string kept = bundle(folder_ / "opt/Foo.app", code_);
  loginItem("foo", kept + "/Contents/Linux/Program --hidden");
  EXPECT_EQ(choose({code_})["preferred"], kept);
  EXPECT_EQ(choose({})["log"], "autolaunch = " + kept);
}

TEST_F(DestinationOnDisk, WithoutALoginItemTheRunningCopyIsIt) {
  const std::string other = bundle(folder_ / "opt/Other.app", "x" + code_.substr(1));
  const std::string kept = bundle(folder_ / "opt/Kept.app", code_);
  const ChildProcess running1(running(other));
  const ChildProcess running2(running(kept));
  const Answer answer = choose({code_});
  EXPECT_EQ(answer["preferred"], kept);
  EXPECT_EQ(answer["log"], "autolaunch = (null)");
  EXPECT_EQ(choose({})["preferred"], "(none)") << "without a product code";
  EXPECT_EQ(choose({"none", "x" + code_.substr(1)})["preferred"], other) << "the second code";
}

TEST_F(DestinationOnDisk, ALoginItemInTheTrashIsPassedOver) {
  const std::string trashed = bundle(home() + "/.local/share/Trash/files/Foo.app", code_);
  loginItem("foo", trashed + "/Contents/Linux/Program");
  EXPECT_EQ(choose({code_})["preferred"], "(none)");
  const std::string kept = bundle(home() + "/Foo.app", code_);
  const ChildProcess program(running(kept));
  EXPECT_EQ(choose({code_})["preferred"], kept);
}

TEST_F(DestinationOnDisk, ARunningCopyOnAnInstallationVolumeIsSkipped) {
  const std::string onVolume = bundle(folder_ / "Volumes/Foo-Install/Foo.app", code_);
  const ChildProcess program(running(onVolume));
  EXPECT_EQ(choose({code_})["preferred"], "(none)");
  const std::string development = bundle(folder_ / "wyn/project/build/Foo.app", code_);
  const ChildProcess another(running(development));
  EXPECT_EQ(choose({code_})["preferred"], "(none)");
  const std::string trashed = bundle(folder_ / "disk/.Trash/Foo.app", code_);
  const ChildProcess fourth(running(trashed));
  EXPECT_EQ(choose({code_})["preferred"], "(none)");
  const std::string kept = bundle(folder_ / "opt/Foo.app", code_);
  const ChildProcess third(running(kept));
  EXPECT_EQ(choose({code_})["preferred"], kept);
}

TEST_F(DestinationOnDisk, TheInstallerWithTheProductsOwnSignatureIsNeverChosen) {
  const std::string installer = bundle(folder_ / "Installer.app", code_);
  const std::string program = installer + "/Contents/Linux/Program";
  fs::remove(program);
  fs::copy_file(KT_DESTINATION_PROBE, program);
  EXPECT_EQ(choose({code_}, program)["preferred"], "(none)");
  EXPECT_EQ(choose({"none", code_}, program)["preferred"], "(none)");
  const std::string kept = bundle(folder_ / "opt/Foo.app", code_);
  const ChildProcess copy(running(kept));
  EXPECT_EQ(choose({code_}, program)["preferred"], kept);
}

// Where all programs for this machine go: the folder depends on the machine, not on the test.
std::string sharedApplications() { return fs::is_directory("/Applications") ? "/Applications" : "/opt"; }

TEST_F(DestinationOnDisk, WithoutRightsThePersonsOwnFolderIsTaken) {
  std::vector<std::string> before;
  std::string probe = KT_DESTINATION_PROBE;
  if (::geteuid() == 0) {
    if (!programExists("setpriv")) GTEST_SKIP() << "setpriv is not installed";
    before = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    ASSERT_EQ(::chown(home().c_str(), 65534, 65534), 0);
    fs::copy_file(probe, folder_ / "probe");  // the build may lie where only its owner can look
    probe = folder_ / "probe";
  } else if (::access(sharedApplications().c_str(), W_OK) == 0) {
    GTEST_SKIP() << sharedApplications() << " can be written by everybody here";
  }
  const Answer without = choose({}, probe, before);
  EXPECT_EQ(without["applications"], sharedApplications()) << "there is no other, and none is made";
  EXPECT_FALSE(fs::exists(home() + "/Applications"));
  EXPECT_EQ(without["writable"], "0");
  EXPECT_EQ(without["directory"], "0");
  EXPECT_NE(without.output.find("log Can't write to /Applications, checking ~/Applications\nlog User "
                                "applicationsDirectory: " +
                                home() + "/Applications\n"),
            std::string::npos);
  EXPECT_NE(without.output.find("log Cannot write to folder " + sharedApplications() + "\n"),
            std::string::npos);

  fs::create_directory(home() + "/Applications");
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown((home() + "/Applications").c_str(), 65534, 65534), 0);
  }
  putFile(home() + "/Applications/.directory", "[Desktop Entry]\nName=Applications\nName[de]=Programme\n");
  const Answer with = choose({}, probe, before);
  EXPECT_EQ(with["applications"], home() + "/Applications");
  EXPECT_EQ(with["shown"], "~/Programme/Foo.app") << "a bundle that is not there yet keeps its file name";
  EXPECT_EQ(with["writable"], "1");
  EXPECT_EQ(with["directory"], "1");
  EXPECT_EQ(std::distance(fs::directory_iterator(home() + "/Applications"), fs::directory_iterator()), 1)
      << "the probe file is gone";
}

TEST_F(DestinationOnDisk, WithRightsTheSharedFolderIsTaken) {
  if (::access(sharedApplications().c_str(), W_OK) != 0)
    GTEST_SKIP() << "no rights to " << sharedApplications();
  const Answer answer = choose({});
  EXPECT_EQ(answer["applications"], sharedApplications());
  EXPECT_EQ(answer["writable"], "1");
}

}  // namespace
}  // namespace halvorn
