// The installer window of the probe program on a desktop of its own.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/Desktop.h"
#include "tests/window/adapter/ProbeProgram.h"

namespace halvorn {

class LiveWindow : public testing::Test {
 protected:
  // Starts the desktop with these parts; to be called first. False when the machine lacks one of them.
  bool startDesktop(const DesktopParts& parts) {
    if (const auto missing = Desktop::missing(parts)) {
      reason_ = *missing;
      return false;
    }
    desktop_ = std::make_unique<Desktop>(parts);
    const std::filesystem::path contents = std::filesystem::path(desktop_->folder()) / "Test.app/Contents";
    std::filesystem::create_directories(contents);
    std::filesystem::copy(KT_SOURCE_DIR "/Resources", contents / "Resources",
                          std::filesystem::copy_options::recursive);
    return true;
  }
  [[nodiscard]] std::string bundle() const { return desktop_->folder() + "/Test.app"; }

  void startWindow(const std::string& style = "light", const std::string& language = "en",
                   const std::vector<std::string>& environment = {}) {
    probe_ =
        std::make_unique<ProbeProgram>(std::vector<std::string>{KT_WINDOW_PROBE, bundle(), language, style},
                                       ChildOptions{.environment = desktop_->environmentWith(environment)});
    ASSERT_TRUE(probe_->waitForOutput("ready", kTestPatience)) << probe_->output();
  }
  // As start-up leaves it: on the install page, in front.
  void showInstallPage() {
    tell({"window show", "hide messageField", "hide checkmarkField", "set nameField Sample 2.1",
          "set introField This program will install Sample on your computer.", "set pathField /opt/Sample",
          "windowTitle Install Sample", "select 1", "window center", "window front"});
    ASSERT_TRUE(eventually([&] { return !windowId().empty() && activeWindow() == windowId(); }))
        << probe_->output();
  }

  void tell(const std::vector<std::string>& commands) { (void)probe_->tell(commands); }
  std::string ask(const std::string& command) { return probe_->ask(command); }
  [[nodiscard]] bool said(const std::string& text, double seconds = kTestPatience) {
    return probe_->waitForOutput(text, seconds);
  }
  [[nodiscard]] int times(const std::string& text) { return probe_->times(text); }

  std::string run(const std::vector<std::string>& arguments) {
    std::string output = runCommand(arguments, {.environment = desktop_->environment()}).output;
    while (!output.empty() && output.back() == '\n') output.pop_back();
    return output;
  }
  void key(const std::string& name) { run({"xdotool", "key", name}); }
  void click(const std::string& id) {
    const std::string answer = ask("where " + id);
    const auto space = answer.find(' ', 3);
    run({"xdotool", "mousemove", answer.substr(3, space - 3), answer.substr(space + 1), "click", "1"});
  }
  std::string windowId() {
    const std::string all =
        run({"xdotool", "search", "--onlyvisible", "--pid", std::to_string(probe_->pid()), "--name", "."});
    return all.substr(0, all.find('\n'));
  }
  std::string activeWindow() { return run({"xdotool", "getactivewindow"}); }
  // Whether a window is active that is not the one given; between two windows none is.
  static bool isSheet(const std::string& active, const std::string& window) {
    return active != window && !active.empty() && active != "0" &&
           active.find_first_not_of("0123456789\n") == std::string::npos;
  }

  std::string reason_;  // why there is no desktop
  std::unique_ptr<Desktop> desktop_;
  std::unique_ptr<ProbeProgram> probe_;
};

}  // namespace halvorn
