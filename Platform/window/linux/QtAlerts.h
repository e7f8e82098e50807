// Alerts that hang on the installer window.
#pragma once

#include "Platform/window/Alerts.h"
#include "Platform/window/linux/SheetPlace.h"

namespace halvorn {

class InstallerWindow;

class QtAlerts : public Alerts {
 public:
  // The window must outlive it.
  explicit QtAlerts(InstallerWindow& window, SheetPlace place = usualSheetPlace())
      : window_(window), place_(place) {}
  // The default button, the first, stands at the trailing edge; Return presses it, Escape and the sheet's
  // close button count as it.
  void beginSheet(const AlertDescription& alert, std::function<void(int returnCode)> ended) override;

 private:
  InstallerWindow& window_;
  const SheetPlace place_;
};

}  // namespace halvorn
