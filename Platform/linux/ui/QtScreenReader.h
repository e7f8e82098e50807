// Announcements through the desktop's accessibility bus.
#pragma once

#include "Platform/ScreenReader.h"

namespace halvorn {

class AnnouncementArea;
class InstallerWindow;

class QtScreenReader : public ScreenReader {
 public:
  // The window must outlive it.
  explicit QtScreenReader(InstallerWindow& window);
  void announce(const Text& text) override;

 private:
  AnnouncementArea& area_;
};

}  // namespace halvorn
