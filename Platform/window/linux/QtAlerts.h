// Alerts that hang on the installer window.
#pragma once

#include "Platform/window/Alerts.h"

namespace halvorn {

class InstallerWindow;

class QtAlerts : public Alerts {
 public:
  // The window must outlive it.
  explicit QtAlerts(InstallerWindow& window) : window_(window) {}
  // The default button, the first, stands at the trailing edge; Return presses it, Escape and the sheet's
  // close button count as it.
  void beginSheet(const AlertDescription& alert, std::function<void(int returnCode)> ended) override;

 private:
  InstallerWindow& window_;
};

}  // namespace halvorn
