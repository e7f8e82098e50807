#include "Platform/files/mac/MacFileChangeNotices.h"

#import <AppKit/AppKit.h>

#include "Platform/running/mac/Conversions.h"

namespace halvorn {

void MacFileChangeNotices::noteFileSystemChanged(const Text& path) {
  attempted([&] { [[NSWorkspace sharedWorkspace] noteFileSystemChanged:stringOf(path)]; });
}

}  // namespace halvorn
