// Acting on running applications: ending, activating, hiding, waking them.
#pragma once

#include <memory>
#include <optional>

#include "Platform/processes/ProcessSource.h"

namespace halvorn {

// A running application, taken at one moment; it stays that application for good.
class RunningApplication {
 public:
  virtual ~RunningApplication() = default;
  // Asks it to end the way a person would: its windows are closed, it may ask to save. It is called again and again
  // until the application has ended; a system on which a second request would reach the application as one more
  // sends none while the first is open, and answers true. False when the application is gone.
  [[nodiscard]] virtual bool terminate() = 0;
  // Ends it without asking. False when the application is gone.
  [[nodiscard]] virtual bool forceTerminate() = 0;
  [[nodiscard]] virtual bool isTerminated() = 0;  // asked anew each time
};

enum class Visible { No, Yes };                           // whether its windows are shown
enum class BringForward { AllWindows, FrontWindowOnly };  // the others stay behind

// Thread: any. The operations without an answer do what the desktop lets them and do not tell.
class ApplicationControl {
 public:
  virtual ~ApplicationControl() = default;
  // Whether this system can end applications at all.
  [[nodiscard]] virtual bool hasRunningApplications() const = 0;
  // Null when that process has ended, or is no application of this user.
  [[nodiscard]] virtual std::unique_ptr<RunningApplication> runningApplication(
      ProcessSerialNumber number) = 0;
  virtual void setFront(ProcessSerialNumber number, BringForward windows) = 0;  // with the keyboard
  virtual void setVisible(ProcessSerialNumber number, Visible visible) = 0;     // all its windows
  // Lets a process that sleeps look for events.
  virtual void wakeUp(ProcessSerialNumber number) = 0;
  // Whether none of its windows is shown, though it has some; nullopt when it has none, or the desktop does not tell.
  [[nodiscard]] virtual std::optional<bool> isHidden(ProcessSerialNumber number) = 0;
};

}  // namespace halvorn
