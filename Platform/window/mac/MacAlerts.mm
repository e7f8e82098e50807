#include "Platform/window/mac/MacAlerts.h"

#include <utility>

#include "Platform/running/mac/Conversions.h"
#include "Platform/window/mac/MacImage.h"
#include "Platform/window/mac/MacInstallerWindow.h"
#include "Platform/window/mac/WindowOf.h"

// Lives until its sheet has ended.
@interface KTSheetEnd : NSObject {
  std::function<void(int)>* ended_;
}
- (id)initWithEnded:(std::function<void(int)>)ended;
- (void)alertDidEnd:(NSAlert*)alert returnCode:(NSInteger)returnCode contextInfo:(void*)context;
@end

@implementation KTSheetEnd

- (id)initWithEnded:(std::function<void(int)>)ended {
  self = [super init];
  if (self != nil) ended_ = new std::function<void(int)>(std::move(ended));
  return self;
}

- (void)dealloc {
  delete ended_;
  [super dealloc];
}

// Closed in another way than by one of its buttons, it has ended with the first.
- (void)alertDidEnd:(NSAlert*)alert returnCode:(NSInteger)returnCode contextInfo:(void*)context {
  static_cast<void>(context);
  const bool isButton = returnCode >= halvorn::kAlertFirstButtonReturn;
  [[alert window] orderOut:nil];
  [self autorelease];
  (*ended_)(isButton ? static_cast<int>(returnCode) : halvorn::kAlertFirstButtonReturn);
}

@end

namespace halvorn {
namespace {

NSAlertStyle styleOf(AlertDescription::Style style) {
  if (style == AlertDescription::Style::Informational) return NSInformationalAlertStyle;
  return style == AlertDescription::Style::Critical ? NSCriticalAlertStyle : NSWarningAlertStyle;
}

NSAlert* alertOf(const AlertDescription& description) {
  NSAlert* const alert = [[[NSAlert alloc] init] autorelease];
  [alert setAlertStyle:styleOf(description.style)];
  [alert setMessageText:stringOf(description.messageText)];
  [alert setInformativeText:stringOf(description.informativeText)];
  for (const Text& title : description.buttonTitles) [alert addButtonWithTitle:stringOf(title)];
  if (NSImage* const icon = imageOf(description.icon)) [alert setIcon:icon];
  return alert;
}

}  // namespace

void MacAlerts::beginSheet(const AlertDescription& alert, std::function<void(int returnCode)> ended) {
  attempted([&] {
    // Given back by its own end.
    KTSheetEnd* const end = [[KTSheetEnd alloc] initWithEnded:std::move(ended)];
    [alertOf(alert) beginSheetModalForWindow:windowOf(window_)
                               modalDelegate:end
                              didEndSelector:@selector(alertDidEnd:returnCode:contextInfo:)
                                 contextInfo:NULL];
  });
}

}  // namespace halvorn
