// Plain windows of a zoo program on a Wayland compositor.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace halvorn::zoo {

struct WaylandOptions {
  double count = 0;
  std::string title = "zoo";
  std::string applicationId;
  std::string socket;  // "" for the one that the environment names
};

class WaylandWindows {
 public:
  // Exits the program when there is no compositor.
  explicit WaylandWindows(const WaylandOptions& options);
  ~WaylandWindows();
  WaylandWindows(const WaylandWindows&) = delete;
  WaylandWindows& operator=(const WaylandWindows&) = delete;

  [[nodiscard]] int descriptor() const;
  // One more, with that title.
  void open(const std::string& title);
  void closeAll();
  // Prints what came: "shown", "close", "focus <index>"; calls `closed` for the second of these.
  void readEvents(const std::function<void()>& closed);

 private:
  class Compositor;
  class Window;
  std::unique_ptr<Compositor> compositor_;
};

}  // namespace halvorn::zoo
