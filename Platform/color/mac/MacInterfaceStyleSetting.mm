#include "Platform/color/mac/MacInterfaceStyleSetting.h"

#include <utility>

#include "Platform/running/mac/Conversions.h"

// Told by the desktop that its theme has changed.
@interface KTThemeObserver : NSObject {
  std::function<void()>* handler_;
}
- (id)initWithHandler:(std::function<void()>)handler;
- (void)themeChanged:(NSNotification*)notification;
@end

@implementation KTThemeObserver
- (id)initWithHandler:(std::function<void()>)handler {
  self = [super init];
  if (self != nil) handler_ = new std::function<void()>(std::move(handler));
  return self;
}
- (void)dealloc {
  delete handler_;
  [super dealloc];
}
- (void)themeChanged:(NSNotification*)notification {
  static_cast<void>(notification);
  (*handler_)();
}
@end

namespace halvorn {

struct MacInterfaceStyleSetting::Observation {
  explicit Observation(std::function<void()> handler)
      : observer([[KTThemeObserver alloc] initWithHandler:std::move(handler)]) {
    attempted([&] {
      [[NSDistributedNotificationCenter defaultCenter] addObserver:observer
                                                          selector:@selector(themeChanged:)
                                                              name:@"AppleInterfaceThemeChangedNotification"
                                                            object:nil];
    });
  }
  ~Observation() {
    attempted([&] { [[NSDistributedNotificationCenter defaultCenter] removeObserver:observer]; });
    [observer release];
  }
  Observation(const Observation&) = delete;
  Observation& operator=(const Observation&) = delete;

  KTThemeObserver* observer;
};

MacInterfaceStyleSetting::MacInterfaceStyleSetting() = default;
MacInterfaceStyleSetting::~MacInterfaceStyleSetting() = default;

OptionalText MacInterfaceStyleSetting::current() {
  return answered(OptionalText(), [] {
    return textOf([[NSUserDefaults standardUserDefaults] stringForKey:@"AppleInterfaceStyle"]);
  });
}

void MacInterfaceStyleSetting::installChangeHandler(std::function<void()> handler) {
  observation_.reset();
  observation_ = std::make_unique<Observation>(std::move(handler));
}

}  // namespace halvorn
