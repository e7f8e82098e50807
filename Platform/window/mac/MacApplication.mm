#include "Platform/window/mac/MacApplication.h"

#import <AppKit/AppKit.h>

#include <atomic>
#include <cstdlib>
#include <utility>
#include <vector>

#include "Core/Format.h"
#include "Platform/running/mac/Conversions.h"
#include "Platform/window/mac/MacImage.h"

namespace halvorn {

struct MacApplication::Parts {
  explicit Parts(MainThread& loop) : mainThread(loop) {}

  // What waits goes on in its order and never inside the call that was waited for.
  void show() {
    isShown = true;
    for (auto& task : waiting) mainThread.perform(std::move(task));
    waiting.clear();
  }

  MainThread& mainThread;
  std::vector<std::function<void()>> waiting;
  std::function<void()> sessionEnded;
  std::function<void()> terminate;
  std::atomic<bool> hasOptionKey = false;
  bool isShown = false;
  bool isTerminated = false;
  id delegate = nil;
};

}  // namespace halvorn

using ApplicationParts = halvorn::MacApplication::Parts;

// Notes how keys and buttons are pressed.
@interface KTApplication : NSApplication {
  std::weak_ptr<ApplicationParts>* parts_;
}
- (void)setParts:(std::weak_ptr<ApplicationParts>)parts;
@end

@implementation KTApplication

- (void)setParts:(std::weak_ptr<ApplicationParts>)parts {
  delete parts_;
  parts_ = new std::weak_ptr<ApplicationParts>(std::move(parts));
}

- (void)sendEvent:(NSEvent*)event {
  const NSEventType type = [event type];
  const bool isPress = type == NSKeyDown || type == NSLeftMouseDown || type == NSLeftMouseUp;
  const auto parts = isPress && parts_ != nullptr ? parts_->lock() : nullptr;
  if (parts != nullptr) parts->hasOptionKey = ([event modifierFlags] & NSAlternateKeyMask) != 0;
  [super sendEvent:event];
}

@end

@interface KTApplicationDelegate : NSObject <NSApplicationDelegate> {
  std::weak_ptr<ApplicationParts>* parts_;
}
- (id)initWithParts:(std::weak_ptr<ApplicationParts>)parts;
@end

@implementation KTApplicationDelegate

- (id)initWithParts:(std::weak_ptr<ApplicationParts>)parts {
  self = [super init];
  if (self != nil) parts_ = new std::weak_ptr<ApplicationParts>(std::move(parts));
  return self;
}

- (void)dealloc {
  delete parts_;
  [super dealloc];
}

// The loop is ended instead: what still works is finished behind it.
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)application {
  static_cast<void>(application);
  if (const auto parts = parts_->lock()) {
    if (parts->sessionEnded) parts->sessionEnded();
    parts->terminate();
  }
  return NSTerminateCancel;
}

@end

namespace halvorn {
namespace {

constexpr double kLongestForWindow = 1.0;  // seconds

void setMenu(NSApplication* application, const Text& programName, const Text& quitTitle) {
  NSMenu* const bar = [[[NSMenu alloc] initWithTitle:stringOf(programName)] autorelease];
  NSMenu* const menu = [[[NSMenu alloc] initWithTitle:stringOf(programName)] autorelease];
  NSMenuItem* const item = [[[NSMenuItem alloc] init] autorelease];
  [menu addItemWithTitle:stringOf(quitTitle) action:@selector(terminate:) keyEquivalent:@"q"];
  [item setTitle:stringOf(programName)];
  [bar addItem:item];
  [bar setSubmenu:menu forItem:item];
  [application setMainMenu:bar];
}

// Wakes the loop, which looks only then whether it was stopped.
void wake(NSApplication* application) {
  [application postEvent:[NSEvent otherEventWithType:NSApplicationDefined
                                            location:NSZeroPoint
                                       modifierFlags:0
                                           timestamp:0
                                        windowNumber:0
                                             context:nil
                                             subtype:0
                                               data1:0
                                               data2:0]
                 atStart:YES];
}

}  // namespace

MacApplication::MacApplication(MainThread& mainThread, const Text& programName, const Text& quitTitle)
    : parts_(std::make_shared<Parts>(mainThread)) {
  parts_->terminate = [this] { terminate(); };
  attempted([&] {
    NSApplication* const application = [KTApplication sharedApplication];
    if ([application isKindOfClass:[KTApplication class]]) [(KTApplication*)application setParts:parts_];
    parts_->delegate = [[KTApplicationDelegate alloc] initWithParts:parts_];
    [application setDelegate:parts_->delegate];
    setMenu(application, programName, quitTitle);
  });
}

MacApplication::~MacApplication() {
  attempted([&] { [[NSApplication sharedApplication] setDelegate:nil]; });
  [parts_->delegate release];
}

int MacApplication::run() {
  if (!parts_->isTerminated) attempted([] { [[NSApplication sharedApplication] run]; });
  return EXIT_SUCCESS;
}

void MacApplication::terminate() {
  parts_->isTerminated = true;
  attempted([] {
    NSApplication* const application = [NSApplication sharedApplication];
    [application stop:nil];
    wake(application);
  });
}

void MacApplication::setSessionEnded(std::function<void()> callback) {
  parts_->sessionEnded = std::move(callback);
}

void MacApplication::setApplicationIcon(const ImagePointer& icon) {
  attempted([&] { [[NSApplication sharedApplication] setApplicationIconImage:imageOf(icon)]; });
}

void MacApplication::performWhenShown(std::function<void()> task) {
  if (parts_->isShown) return parts_->mainThread.perform(std::move(task));
  if (parts_->waiting.empty())
    parts_->mainThread.performAfter(kLongestForWindow, [parts = parts_] { parts->show(); });
  parts_->waiting.push_back(std::move(task));
}

void MacApplication::windowIsShown() {
  // Painted when the loop has nothing else to do.
  parts_->mainThread.performWhenIdle([parts = parts_] { parts->show(); });
}

void MacApplication::requestUserAttention() {
  // The system does nothing while the program is the active one.
  attempted([] { [[NSApplication sharedApplication] requestUserAttention:NSInformationalRequest]; });
}

void MacApplication::beep() {
  attempted([] { NSBeep(); });
}

bool MacApplication::currentEventHasOptionKey() const { return parts_->hasOptionKey; }

}  // namespace halvorn
