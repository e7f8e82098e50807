#include "Platform/window/mac/MacScreenReader.h"

#import <AppKit/AppKit.h>

#include "Platform/running/mac/Conversions.h"

namespace halvorn {

void MacScreenReader::announce(const Text& text) {
  if (text.isEmpty()) return;
  attempted([&] {
    NSDictionary* const said = [NSDictionary dictionaryWithObject:stringOf(text)
                                                           forKey:NSAccessibilityAnnouncementKey];
    NSAccessibilityPostNotificationWithUserInfo([NSApplication sharedApplication],
                                                NSAccessibilityAnnouncementRequestedNotification, said);
  });
}

}  // namespace halvorn
