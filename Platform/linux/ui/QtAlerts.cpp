#include "Platform/linux/ui/QtAlerts.h"

#include <utility>

#include "Platform/linux/ui/AlertSheet.h"
#include "Platform/linux/ui/InstallerWindow.h"
#include "Platform/linux/ui/WindowWidget.h"

namespace halvorn {

void QtAlerts::beginSheet(const AlertDescription& alert, std::function<void(int returnCode)> ended) {
  // The sheet belongs to its window and deletes itself when it is closed.
  (new AlertSheet(alert, &window_.widget(), std::move(ended)))->open();
}

}  // namespace halvorn
