#include "Platform/running/mac/MacRunLoop.h"

#include <algorithm>
#include <utility>

#include "Platform/running/mac/Conversions.h"

// Calls back for the object that holds it, until that lets go.
@interface KTRunLoopCall : NSObject {
  std::function<void()>* callback_;
  NSFileHandle* file_;
  NSTimer* timer_;
}
- (id)initWithCallback:(std::function<void()>)callback;
- (void)waitForDescriptor:(int)descriptor;
- (void)repeatAfter:(NSTimeInterval)seconds;
- (void)letGo;
- (void)hasData:(NSNotification*)notification;
- (void)timeIsUp:(NSTimer*)timer;
@end

@implementation KTRunLoopCall

- (id)initWithCallback:(std::function<void()>)callback {
  self = [super init];
  if (self != nil) callback_ = new std::function<void()>(std::move(callback));
  return self;
}

- (void)dealloc {
  delete callback_;
  [file_ release];
  [super dealloc];
}

- (void)waitForDescriptor:(int)descriptor {
  file_ = [[NSFileHandle alloc] initWithFileDescriptor:descriptor closeOnDealloc:NO];
  [[NSNotificationCenter defaultCenter] addObserver:self
                                           selector:@selector(hasData:)
                                               name:NSFileHandleDataAvailableNotification
                                             object:file_];
  [file_ waitForDataInBackgroundAndNotify];
}

- (void)repeatAfter:(NSTimeInterval)seconds {
  timer_ = [NSTimer scheduledTimerWithTimeInterval:seconds
                                            target:self
                                          selector:@selector(timeIsUp:)
                                          userInfo:nil
                                           repeats:YES];
}

- (void)letGo {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [timer_ invalidate];
  timer_ = nil;
  delete callback_;
  callback_ = nullptr;
}

// The call-back may let go of this object.
- (void)hasData:(NSNotification*)notification {
  static_cast<void>(notification);
  [[self retain] autorelease];
  if (callback_ == nullptr) return;
  const std::function<void()> callback = *callback_;
  callback();
  if (callback_ != nullptr) [file_ waitForDataInBackgroundAndNotify];
}

- (void)timeIsUp:(NSTimer*)timer {
  static_cast<void>(timer);
  [[self retain] autorelease];
  if (callback_ == nullptr) return;
  const std::function<void()> callback = *callback_;
  callback();
}

@end

namespace halvorn {
namespace {

class MacSource : public RunLoop::Source {
 public:
  explicit MacSource(KTRunLoopCall* call) : call_(call) {}
  ~MacSource() override {
    attempted([&] { [call_ letGo]; });
    [call_ release];
  }
  MacSource(const MacSource&) = delete;
  MacSource& operator=(const MacSource&) = delete;

 private:
  KTRunLoopCall* const call_;
};

}  // namespace

std::unique_ptr<RunLoop::Source> MacRunLoop::whenReadable(int descriptor, std::function<void()> callback) {
  KTRunLoopCall* const call = [[KTRunLoopCall alloc] initWithCallback:std::move(callback)];
  attempted([&] { [call waitForDescriptor:descriptor]; });
  return std::make_unique<MacSource>(call);
}

std::unique_ptr<RunLoop::Source> MacRunLoop::every(double seconds, std::function<void()> callback) {
  KTRunLoopCall* const call = [[KTRunLoopCall alloc] initWithCallback:std::move(callback)];
  attempted([&] { [call repeatAfter:seconds]; });
  return std::make_unique<MacSource>(call);
}

bool MacRunLoop::runUntil(const std::function<bool()>& condition, double seconds) {
  NSDate* const end = [[NSDate alloc] initWithTimeIntervalSinceNow:seconds];
  bool holds = condition();
  while (!holds && [end timeIntervalSinceNow] > 0) {
    attempted([&] {
      const double slice = std::min(0.05, std::max(0.0, [end timeIntervalSinceNow]));
      [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                               beforeDate:[NSDate dateWithTimeIntervalSinceNow:slice]];
    });
    holds = condition();
  }
  [end release];
  return holds;
}

}  // namespace halvorn
