// The running program as the desktop sees it.
// Why: docs/decisions/003-what-waits-for-the-window.md
#pragma once

#include <functional>
#include <optional>

#include "Platform/window/Images.h"

namespace halvorn {

class Application {
 public:
  virtual ~Application() = default;
  // Ends the event loop; the program then ends with status 0. Thread: main.
  virtual void terminate() = 0;
  // The icon of the program's windows in task bars and switchers. Thread: main.
  virtual void setApplicationIcon(const ImagePointer& icon) = 0;
  // Runs the task on the main thread once the first window has been painted, or after a second at the latest:
  // for what nobody waits for while a window is on its way. Thread: main.
  virtual void performWhenShown(std::function<void()> task) = 0;
  // The system's alert sound. Thread: main.
  virtual void beep() = 0;
  // Whether the press of a key or button that the main thread works on, or worked on last, was made with the
  // Option (Alt) key held. Thread: any.
  [[nodiscard]] virtual bool currentEventHasOptionKey() const = 0;
  // Has the desktop mark the program's window until the person comes to it; nothing while the person is there.
  // Thread: main.
  virtual void requestUserAttention() = 0;
  // What task bars show of the program's work, a share from 0 to 1; nullopt shows none. Thread: main.
  virtual void setProgress(std::optional<double> share) = 0;
};

}  // namespace halvorn
