// The windows of a desktop whose compositor tells of them the way wlroots' do: by the name that each client gives
// its application, and by what state they are in. Whose they are it does not tell.
//
// Thread: one at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/session/linux/wayland/WaylandConnection.h"

namespace halvorn {

struct Toplevel {
  std::uint64_t number = 0;  // of no other window, ever, in one list
  std::string applicationId;
  bool isActive = false;
  bool isFullScreen = false;
  bool isMinimized = false;
};

class ToplevelList {
 public:
  // Null without a compositor at that path, and where it tells nothing of windows.
  [[nodiscard]] static std::unique_ptr<ToplevelList> open(
      const std::string& socketPath, std::chrono::milliseconds patience = WaylandConnection::kPatience);
  ~ToplevelList();
  ToplevelList(const ToplevelList&) = delete;
  ToplevelList& operator=(const ToplevelList&) = delete;

  // As they are now, the one that was active last behind the others. nullopt when the compositor did not answer in
  // time, or has gone.
  [[nodiscard]] std::optional<std::vector<Toplevel>> windows();
  // The same as far as they were told until now; asks nothing.
  [[nodiscard]] std::vector<Toplevel> knownWindows() const;

  // What the desktop does about it comes later, or never. Nothing happens to a window that has gone.
  void close(std::uint64_t number);
  void activate(std::uint64_t number);
  void setMinimized(std::uint64_t number, bool isMinimized);

  // For whoever waits for changes: readable when something has come.
  [[nodiscard]] int descriptor() const { return connection_->descriptor(); }
  [[nodiscard]] bool isUsable() const;
  struct Changes {
    bool windows = false;  // some have come or gone, or told their application
    bool active = false;   // another one, or none, is active; or it has changed how it is shown
  };
  // Reads what has come since the last time.
  [[nodiscard]] Changes readChanges();

 private:
  class Window;
  class Manager;

  explicit ToplevelList(std::unique_ptr<WaylandConnection> connection);
  [[nodiscard]] Window* find(std::uint64_t number);

  const std::unique_ptr<WaylandConnection> connection_;
  WaylandSeat seat_;
  std::unique_ptr<Manager> manager_;
};

}  // namespace halvorn
