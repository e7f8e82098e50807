#include "Platform/window/linux/QtScreenReader.h"

#include "Platform/window/linux/AnnouncementArea.h"
#include "Platform/window/linux/InstallerWindow.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/WindowWidget.h"

namespace halvorn {

void QtScreenReader::announce(const Text& text) {
  delete area_;
  area_ = new AnnouncementArea(forDisplay(text), &window_.widget());
}

}  // namespace halvorn
