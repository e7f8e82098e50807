// A plain window of a zoo program.
#pragma once

#include <xcb/xcb.h>

#include <functional>
#include <string>
#include <vector>

namespace halvorn::zoo {

struct WindowOptions {
  double count = 0;
  std::string title = "zoo";
  std::string windowClass;
  bool hidesPid = false;
  double claimedPid = 0;        // in place of its own
  std::string claimedMachine;   // in place of this one's name
  bool cannotBeClosed = false;  // takes no part in WM_DELETE_WINDOW
};

class Windows {
 public:
  // Exits the program when there is no X server.
  explicit Windows(const WindowOptions& options);
  [[nodiscard]] int descriptor() const { return xcb_get_file_descriptor(connection_); }
  // One more, with that title.
  void open(const std::string& title);
  void closeAll();
  // Prints what came: "close", "message", "focus <index>", "iconified", "shown"; calls
  // `closed` for the first of these.
  void readEvents(const std::function<void()>& closed);

 private:
  xcb_window_t createWindow(const WindowOptions& options, const std::string& title);
  [[nodiscard]] xcb_atom_t atom(const char* name) const;
  [[nodiscard]] std::size_t indexOf(xcb_window_t window) const;

  xcb_connection_t* connection_;
  xcb_screen_t* screen_ = nullptr;
  xcb_atom_t protocols_ = 0;
  xcb_atom_t deleteWindow_ = 0;
  std::vector<xcb_window_t> windows_;
};

}  // namespace halvorn::zoo
