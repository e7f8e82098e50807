// Announcements through the desktop's accessibility bus.
#pragma once

#include "Platform/window/ScreenReader.h"

class QObject;

namespace halvorn {

class InstallerWindow;

class QtScreenReader : public ScreenReader {
 public:
  // The window must outlive it.
  explicit QtScreenReader(InstallerWindow& window) : window_(window) {}
  void announce(const Text& text) override;

 private:
  InstallerWindow& window_;
  QObject* area_ = nullptr;  // of the last announcement; belongs to the window
};

}  // namespace halvorn
