// The window is not for the administrator.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/flows/FlowFixture.h"

namespace halvorn {
namespace {

const char kRefusal[] = "ERROR -- The installer does not run as root.";

class AdministratorFlow : public FlowFixture {
 protected:
  void SetUp() override {
    if (::geteuid() != 0) GTEST_SKIP() << "only the administrator can be refused";
    bringDesktop();  // nothing is installed
  }
  // As whoever knows nothing of the exception.
  [[nodiscard]] InstallerDriver started(const std::vector<std::string>& more = {}) {
    std::vector<std::string> environment{"HALVORN_AS_ROOT="};
    environment.insert(environment.end(), more.begin(), more.end());
    return InstallerDriver(desktop(), {"-sourcePath", product()}, {.environment = environment});
  }
  void expectNothingDone(ChildProcess& process) {
    EXPECT_EQ(process.waitForEnd(kTestPatience), 77);
    EXPECT_NE(process.output().find(kRefusal), std::string::npos) << process.output();
    EXPECT_FALSE(std::filesystem::exists(desktop().homeFolder() + "/Library")) << "no log is opened";
    EXPECT_FALSE(std::filesystem::exists(destination()));
  }
};

TEST_F(AdministratorFlow, AnAlertSaysThatTheInstallerDoesNotRunAsRoot) {
  InstallerDriver installer = started({"LANGUAGE=en"});
  ASSERT_TRUE(
      installer.waitForText("The installer cannot be used as the administrator “root”.", kTestPatience))
      << installer.process().output();
  EXPECT_FALSE(installer.showing("Install")) << "there is no window behind it";
  ASSERT_TRUE(installer.click("Quit"));
  expectNothingDone(installer.process());
}

TEST_F(AdministratorFlow, TheEscapeKeyAnswersTheAlertToo) {
  InstallerDriver installer = started({"LANGUAGE=de", "LC_ALL=C.UTF-8"});
  ASSERT_TRUE(installer.waitForText(
      "Das Installationsprogramm kann nicht als Administrator „root“ benutzt werden.", kTestPatience));
  installer.key("Escape");
  expectNothingDone(installer.process());
}

TEST_F(AdministratorFlow, WithoutADisplayTheSentenceIsEnough) {
  for (const char* display : {"DISPLAY=", "DISPLAY=:63999"}) {
    InstallerDriver installer = started({display, "XDG_SESSION_TYPE="});
    expectNothingDone(installer.process());
  }
}

}  // namespace
}  // namespace halvorn
