// A desktop of a test's own: an X server and a window manager, or a Wayland compositor; a session bus, a home and a
// runtime folder.
//
//   if (const auto missing = Desktop::missing()) GTEST_SKIP() << *missing;
//   Desktop desktop;
//   ChildProcess app({program}, {.environment = desktop.environment()});
//
// Nothing of it touches the environment of the test program; what runs in the test program itself is told the
// display and the bus by name. All of it is gone with the object.
//
// Thread: the one that made it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {

enum class Compositor { None, Sway, KWin, Gnome, Weston };
[[nodiscard]] std::string nameOf(Compositor compositor);  // "Sway"; "X11" for none

struct DesktopParts {
  bool display = true;
  bool windowManager = true;  // needs the display
  bool bus = true;            // also without this where the compositor needs it
  // In place of the X server. Two such desktops have the same name for their display, each in its own folder.
  Compositor compositor = Compositor::None;
  bool xClients = false;  // whether the compositor takes X programs too
  bool pictures = false;  // whether KWin can be asked for pictures; it starts and ends more slowly then
  // Whether the bus starts the services that the machine has installed (portals, at-spi ...).
  bool serviceActivation = false;
  // Starts the accessibility bus and tells programs to use it; needs the bus, implies serviceActivation.
  bool accessibility = false;
};

class Desktop {
 public:
  // Why a desktop with these parts cannot be had on this machine; nullopt when it can.
  [[nodiscard]] static std::optional<std::string> missing(const DesktopParts& parts = {});

  // Returns when all parts serve. Throws std::runtime_error when one of them does not come up.
  explicit Desktop(const DesktopParts& parts = {});
  ~Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  // The whole environment for programs of this desktop, "NAME=value".
  [[nodiscard]] std::vector<std::string> environment() const;
  // The same with these entries added, or put in place of those of the same name.
  [[nodiscard]] std::vector<std::string> environmentWith(const std::vector<std::string>& entries) const;

  // Puts the entry into that environment, for programs started from now on.
  void setEnvironment(const std::string& entry) { added_.push_back(entry); }

  [[nodiscard]] const std::string& displayName() const { return displayName_; }  // ":7"; "" without
  [[nodiscard]] const std::string& waylandDisplay() const {
    return waylandDisplay_;
  }  // "wayland-1"; "" without
  // Where the compositor listens, without a link in it; "" without.
  [[nodiscard]] std::string waylandSocket() const;
  [[nodiscard]] Compositor kind() const { return kind_; }
  [[nodiscard]] const std::string& swaySocket() const { return swaySocket_; }  // where it takes commands
  [[nodiscard]] const std::string& busAddress() const { return busAddress_; }  // "" without
  [[nodiscard]] const std::string& accessibilityAddress() const { return accessibilityAddress_; }
  // What GNOME's shell answers to a line of its script.
  [[nodiscard]] std::string evaluated(const std::string& script) const;
  [[nodiscard]] std::string homeFolder() const { return folder_ / "home"; }
  [[nodiscard]] std::string runtimeFolder() const { return folder_ / "run"; }  // 0700
  [[nodiscard]] std::string folder() const { return folder_.path().string(); }

  // The parts, for tests that take one away; null when not started.
  [[nodiscard]] ChildProcess* xServer() { return xServer_.get(); }
  [[nodiscard]] ChildProcess* compositor() { return compositor_.get(); }
  [[nodiscard]] ChildProcess* windowManager() { return windowManager_.get(); }
  [[nodiscard]] ChildProcess* bus() { return bus_.get(); }

 private:
  void startXServer();
  void startSway(bool xClients);
  void startKWin(const DesktopParts& parts);
  void startGnome(bool xClients);
  void openGuest() const;
  void startWeston();
  void startWindowManager();
  void startBus(bool serviceActivation);
  [[nodiscard]] std::unique_ptr<ChildProcess> startedBus(const std::string& name, bool serviceActivation,
                                                         std::string& address);
  void startAccessibility();

  const Compositor kind_;
  TemporaryFolder folder_;
  std::vector<std::string> added_;
  std::string displayName_;
  std::string waylandDisplay_;
  std::string swaySocket_;
  std::string busAddress_;
  std::string accessibilityAddress_;
  std::unique_ptr<ChildProcess> xServer_;
  std::unique_ptr<ChildProcess> compositor_;
  std::unique_ptr<ChildProcess> windowManager_;
  std::unique_ptr<ChildProcess> bus_;
  std::unique_ptr<ChildProcess> systemBus_;  // of the compositor alone
};

}  // namespace halvorn
