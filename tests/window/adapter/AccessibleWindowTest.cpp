// What an assistive program sees and hears of the real window.
#include <sstream>
#include <string_view>

#include "tests/window/adapter/LiveWindow.h"

namespace halvorn {
namespace {

class AccessibleWindow : public LiveWindow {
 protected:
  void SetUp() override {
    if (!startDesktop({.accessibility = true})) GTEST_SKIP() << reason_;
  }
  void startListener() {
    listener_ = std::make_unique<ChildProcess>(std::vector<std::string>{KT_ANNOUNCEMENT_PROBE},
                                               ChildOptions{.environment = desktop_->environment()});
    ASSERT_TRUE(listener_->waitForOutput("listening", kTestPatience)) << listener_->output();
  }
  std::string all() { return run({KT_ACCESSIBLE_PROBE, std::to_string(probe_->pid())}); }
  // "role <tab> name" of what is shown, a line each.
  std::string seen() {
    const std::string printed = all();
    std::string found = "\n";
    for (std::size_t at = 0; at < printed.size();) {
      const auto end = std::min(printed.find('\n', at), printed.size());
      const std::string line = printed.substr(at, end - at);
      const auto states = line.find('\t', line.find('\t') + 1);
      if (line.find("showing", states) != std::string::npos) found += line.substr(0, states) + "\n";
      at = end + 1;
    }
    return found;
  }
  [[nodiscard]] bool sees(const std::string& role, const std::string& name) {
    return eventually([&] { return seen().find("\n" + role + "\t" + name + "\n") != std::string::npos; });
  }
  // The roles of what says that it is busy.
  std::string busy() {
    std::istringstream lines(all());
    std::string roles;
    for (std::string line; std::getline(lines, line);) {
      const auto states = line.find('\t', line.find('\t') + 1) + 1;
      const std::string_view found(line.data() + states, line.find('\t', states) - states);
      if (found.find("busy") != std::string_view::npos) roles += line.substr(0, line.find('\t')) + ";";
    }
    return roles;
  }
  std::unique_ptr<ChildProcess> listener_;
};

TEST_F(AccessibleWindow, EveryControlHasItsRoleAndName) {
  startWindow();
  showInstallPage();
  for (const auto& [role, name] : std::vector<std::pair<std::string, std::string>>{
           {"frame", "Install Sample"},
           {"image", "Product icon"},
           {"label", "Sample 2.1"},
           {"label", "This program will install Sample on your computer."},
           {"label", "Destination"},
           {"label", "/opt/Sample"},
           {"push button", "Help"},
           {"push button", "Cancel"},
           {"push button", "Install"},
           {"progress bar", "Progress"}}) {
    EXPECT_TRUE(sees(role, name)) << role << " " << name << seen();
  }
  tell({"select 0"});
  EXPECT_TRUE(sees("text", "Read Me")) << seen();
  tell({"select 1", "show checkmarkField"});
  EXPECT_TRUE(sees("image", "Installed")) << seen();
}

TEST_F(AccessibleWindow, NamesAreInThePersonsLanguage) {
  startWindow("light", "de");
  showInstallPage();
  EXPECT_TRUE(sees("push button", "Installieren")) << seen();
  EXPECT_TRUE(sees("push button", "Hilfe")) << seen();
  EXPECT_TRUE(sees("image", "Produktsymbol")) << seen();
}

TEST_F(AccessibleWindow, WindowAndIndicatorAreBusyWhileItWorks) {
  startWindow();
  showInstallPage();
  ASSERT_TRUE(sees("progress bar", "Progress")) << seen();
  EXPECT_EQ(busy(), "");
  tell({"spin"});
  EXPECT_TRUE(eventually([&] { return busy() == "frame;progress bar;"; })) << all();
  tell({"stop"});
  EXPECT_TRUE(eventually([&] { return busy().empty(); })) << all();
}

TEST_F(AccessibleWindow, ASheetIsAnAlertThatReadsItsMessage) {
  startWindow();
  showInstallPage();
  tell({"sheet AlertStopIcon"});
  EXPECT_TRUE(sees("alert",
                   "Sample 2.1 cannot be installed on this computer because it requires Linux kernel 99.0 "
                   "or newer."))
      << seen();
  EXPECT_TRUE(sees("push button", "Visit Archive")) << seen();
}

TEST_F(AccessibleWindow, AnAnnouncementIsHeardEachTime) {
  startWindow();
  showInstallPage();
  startListener();
  // The window learns a moment after the listener's arrival that somebody listens.
  EXPECT_TRUE(eventually([&] {
    tell({"announce Sample is being installed."});
    return listener_->waitForOutput("notification\tSample is being installed.", 0.3);
  })) << listener_->output();
  tell({"announce Sample was successfully installed."});
  EXPECT_TRUE(listener_->waitForOutput("notification\tSample was successfully installed.", kTestPatience))
      << listener_->output();
  listener_->closeInput();
  EXPECT_EQ(listener_->waitForEnd(10), 0);
}

}  // namespace
}  // namespace halvorn
