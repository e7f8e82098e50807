#include "Platform/linux/ui/QtScreenReader.h"

#include "Platform/linux/ui/AnnouncementArea.h"
#include "Platform/linux/ui/InstallerWindow.h"
#include "Platform/linux/ui/QtText.h"
#include "Platform/linux/ui/WindowWidget.h"

namespace halvorn {

QtScreenReader::QtScreenReader(InstallerWindow& window) : area_(*new AnnouncementArea(&window.widget())) {}

void QtScreenReader::announce(const Text& text) { area_.announce(forDisplay(text)); }

}  // namespace halvorn
