// The windows of a desktop whose compositor tells of them, in whichever way.
//
// Thread: one at a time.
// Why: docs/decisions/030-wayland.md
#pragma once

#include <sys/types.h>

#include <chrono>
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
  // Whose it is, where the desktop says so: certain of a client, of an X program what that says itself.
  std::optional<pid_t> owner;
  bool isGuests = false;  // an X program's, where the desktop says so
  bool isActive = false;
  bool isFullScreen = false;
  bool isMinimized = false;
};

// Where a desktop is asked.
struct DesktopAddresses {
  std::string waylandSocket;  // as waylandSocketPath() tells it; "" for none
  std::string bus;            // of the session; "" for none
};

class ToplevelList {
 public:
  // By what the desktop offers, whatever it is called. Null without a compositor there, and where it tells nothing of
  // windows.
  [[nodiscard]] static std::unique_ptr<ToplevelList> open(
      const DesktopAddresses& desktop, std::chrono::milliseconds patience = WaylandConnection::kPatience);
  virtual ~ToplevelList() = default;

  // As they are now, the one that was active last behind the others. nullopt when the compositor did not answer in
  // time, or has gone.
  [[nodiscard]] virtual std::optional<std::vector<Toplevel>> windows() = 0;
  // The same as far as they were told until now; asks nothing.
  [[nodiscard]] virtual std::vector<Toplevel> knownWindows() const = 0;

  // What the desktop does about it comes later, or never. Nothing happens to a window that has gone.
  virtual void close(std::uint64_t number) = 0;
  virtual void activate(std::uint64_t number) = 0;
  virtual void setMinimized(std::uint64_t number, bool isMinimized) = 0;

  // For whoever waits for changes: readable when something has come.
  [[nodiscard]] virtual int descriptor() const = 0;
  [[nodiscard]] virtual bool isUsable() const = 0;
  struct Changes {
    bool windows = false;  // some have come or gone, or told their application
    bool active = false;   // another one, or none, is active; or it has changed how it is shown
  };
  // Reads what has come since the last time.
  [[nodiscard]] virtual Changes readChanges() = 0;
};

}  // namespace halvorn
