// Drives the real installer through its real window: sees it as an assistive program does, clicks with the
// mouse, presses keys, takes pictures.
//
//   Desktop desktop({.accessibility = true});
//   InstallerDriver installer(desktop, {"-sourcePath", bundle});
//   installer.click("Install");
//   EXPECT_TRUE(installer.waitForText("Sample was successfully installed.", 30));
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"

namespace halvorn {

// A part of a window as an assistive program sees it. Positions are pixels of the screen.
struct Control {
  std::string role;
  std::string name;
  std::string states;  // "showing,enabled,focused"
  int x = 0, y = 0, width = 0, height = 0;
  std::string text;

  [[nodiscard]] bool has(const std::string& state) const;
};

struct DriverOptions {
  std::string program = {};                   // the built installer when empty
  std::vector<std::string> environment = {};  // added to the desktop's
  std::string accessibleProbe = {};           // the built one when empty
  bool isSingleFile = false;                  // the program starts the installer
};

class InstallerDriver {
 public:
  InstallerDriver(Desktop& desktop, std::vector<std::string> arguments, const DriverOptions& options = {});

  [[nodiscard]] std::vector<Control> controls() const;
  // The first that shows and has the name (or text).
  [[nodiscard]] std::optional<Control> showing(const std::string& name) const;
  // Until a part of the window shows that name or text, whole.
  [[nodiscard]] bool waitForText(const std::string& text, double seconds) const;
  [[nodiscard]] bool waitForButton(const std::string& name, double seconds) const;
  [[nodiscard]] std::vector<std::string> windowTitles() const;

  // Waits for the button and clicks into its middle with the mouse. False when it does not come.
  [[nodiscard]] bool click(const std::string& button, double seconds = kTestPatience);
  void key(const std::string&
               keys);  // as xdotool names them, on sway as wtype does, elsewhere on Wayland "Return" alone
  // A picture of the whole screen; the folder is made.
  void screenshot(const std::string& file) const;

  [[nodiscard]] ChildProcess& process() { return process_; }
  // The installer's own process; of a single file 0 as long as it has not started one.
  [[nodiscard]] pid_t installer() const;

 private:
  // Not once the program has ended; what it printed is shown then.
  [[nodiscard]] bool seen(const std::function<bool()>& condition, double seconds) const;
  [[nodiscard]] std::optional<Control> button(const std::string& name) const;
  [[nodiscard]] bool clickAt(int x, int y);
  // On Wayland a window does not know where it is.
  struct Place {
    int x = 0;
    int y = 0;
  };
  [[nodiscard]] std::optional<Place> windowPlace() const;
  // Where it stays for some looks.
  [[nodiscard]] std::optional<Place> settledPlace(double seconds) const;
  [[nodiscard]] std::optional<Place> windowPlaceInKWin() const;
  [[nodiscard]] std::optional<Place> windowPlaceInGnome() const;
  void screenshotOfGnome(const std::string& file) const;

  Desktop& desktop_;
  std::unique_ptr<ChildProcess> pointer_;  // on sway
  std::unique_ptr<ChildProcess> hands_;    // on KWin and GNOME: mouse and keyboard
  std::string accessibleProbe_;
  bool isSingleFile_;
  mutable ChildProcess process_;  // to see whether it has ended is to collect it
};

// The log lines in a text of the installer, without time, program and pid.
[[nodiscard]] std::vector<std::string> logLines(const std::string& text);

// The program inside the installer bundle that this build made.
[[nodiscard]] std::string builtInstaller();

}  // namespace halvorn
