// Ending, activating and hiding applications: the system's running-application objects and the Process Manager.
#pragma once

#include "Platform/processes/ApplicationControl.h"

namespace halvorn {

class MacApplicationControl : public ApplicationControl {
 public:
  [[nodiscard]] bool hasRunningApplications() const override;
  std::unique_ptr<RunningApplication> runningApplication(ProcessSerialNumber number) override;
  void setFront(ProcessSerialNumber number, BringForward windows) override;
  void setVisible(ProcessSerialNumber number, Visible visible) override;
  void wakeUp(ProcessSerialNumber number) override;
  std::optional<bool> isHidden(ProcessSerialNumber number) override;
};

}  // namespace halvorn
