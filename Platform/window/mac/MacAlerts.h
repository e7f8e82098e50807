// Alerts as sheets on the window.
#pragma once

#include "Platform/window/Alerts.h"

namespace halvorn {

class MacInstallerWindow;

class MacAlerts : public Alerts {
 public:
  explicit MacAlerts(MacInstallerWindow& window) : window_(window) {}
  void beginSheet(const AlertDescription& alert, std::function<void(int returnCode)> ended) override;

 private:
  MacInstallerWindow& window_;
};

}  // namespace halvorn
