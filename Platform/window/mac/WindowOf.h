// The window itself. For sources in Objective-C++ alone.
#pragma once

#import <AppKit/AppKit.h>

namespace halvorn {

class MacInstallerWindow;
[[nodiscard]] NSWindow* windowOf(MacInstallerWindow& window);

}  // namespace halvorn
