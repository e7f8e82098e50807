// No application is ended, moved or woken.
#pragma once

#include "Platform/processes/ApplicationControl.h"

namespace halvorn {

class NullApplicationControl : public ApplicationControl {
 public:
  bool hasRunningApplications() const override { return false; }
  std::unique_ptr<RunningApplication> runningApplication(std::int32_t) override { return nullptr; }
  void setFront(ProcessSerialNumber, BringForward) override {}
  void setVisible(ProcessSerialNumber, Visible) override {}
  void wakeUp(ProcessSerialNumber) override {}
};

}  // namespace halvorn
