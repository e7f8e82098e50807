#include "Platform/linux/ui/QtScreenReader.h"

#include "Platform/linux/ui/AnnouncementArea.h"
#include "Platform/linux/ui/InstallerWindow.h"
#include "Platform/linux/ui/QtText.h"
#include "Platform/linux/ui/WindowWidget.h"

namespace halvorn {

void QtScreenReader::announce(const Text& text) {
  delete area_;
  area_ = new AnnouncementArea(forDisplay(text), &window_.widget());
}

}  // namespace halvorn
