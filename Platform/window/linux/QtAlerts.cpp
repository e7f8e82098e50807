#include "Platform/window/linux/QtAlerts.h"

#include <utility>

#include "Platform/window/linux/AlertSheet.h"
#include "Platform/window/linux/InstallerWindow.h"
#include "Platform/window/linux/WindowWidget.h"

namespace halvorn {

void QtAlerts::beginSheet(const AlertDescription& alert, std::function<void(int returnCode)> ended) {
  // The sheet belongs to its window and deletes itself when it is closed.
  (new AlertSheet(alert, &window_.widget(), std::move(ended), place_))->open();
}

}  // namespace halvorn
