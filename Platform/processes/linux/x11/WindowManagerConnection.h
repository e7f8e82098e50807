// A connection to the X server for talking with its window manager.
#pragma once

#include <xcb/xcb_ewmh.h>

#include <memory>
#include <string>

#include "Platform/session/linux/x11/DisplayConnection.h"

namespace halvorn {

// Thread: any, several at once, except that the events belong to one of them.
class WindowManagerConnection {
 public:
  // Null without a server of that name.
  [[nodiscard]] static std::unique_ptr<WindowManagerConnection> open(const std::string& displayName);
  ~WindowManagerConnection();
  WindowManagerConnection(const WindowManagerConnection&) = delete;
  WindowManagerConnection& operator=(const WindowManagerConnection&) = delete;

  // False once the server is gone; it stays so.
  [[nodiscard]] bool isUsable() const { return display_->isUsable(); }
  [[nodiscard]] xcb_connection_t* get() const { return display_->get(); }
  [[nodiscard]] xcb_window_t root() const { return display_->root(); }
  [[nodiscard]] int screen() const { return screen_; }
  // The window manager's vocabulary.
  [[nodiscard]] xcb_ewmh_connection_t* ewmh() { return &ewmh_; }
  // The older words of the same conversation, and the one of this program.
  struct Atoms {
    xcb_atom_t wmProtocols = XCB_NONE;
    xcb_atom_t wmDeleteWindow = XCB_NONE;
    xcb_atom_t wmChangeState = XCB_NONE;
    xcb_atom_t wakeUp = XCB_NONE;
  };
  [[nodiscard]] const Atoms& atoms() const { return atoms_; }
  // Whether the server tells the process ids of its clients.
  [[nodiscard]] bool tellsClientPids() const { return tellsClientPids_; }

  // Has the requests carried out, and throws away what came unasked: the errors of
  // those to windows that had just gone.
  void finishRequests();

 private:
  explicit WindowManagerConnection(std::unique_ptr<DisplayConnection> display);
  [[nodiscard]] bool prepare();

  const std::unique_ptr<DisplayConnection> display_;
  int screen_ = 0;
  xcb_ewmh_connection_t ewmh_{};
  bool hasEwmh_ = false;
  Atoms atoms_;
  bool tellsClientPids_ = false;
};

}  // namespace halvorn
