#include "Platform/running/mac/MacMainThread.h"

#include <chrono>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

#include "Platform/running/mac/Conversions.h"

namespace halvorn {

// The loop is asked to call as often as there are tasks, and each call runs the oldest: so the order is that of the
// queue, whatever order the calls come in.
struct MacMainThread::Queue {
  void add(std::function<void()> task) {
    const std::lock_guard lock(mutex);
    tasks.push_back(std::move(task));
  }
  void addIdle(std::function<void()> task) {
    const std::lock_guard lock(mutex);
    idleTasks.push_back(std::move(task));
  }
  void addDelayed(double seconds, std::function<void()> task) {
    const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
    const std::lock_guard lock(mutex);
    delayedTasks.emplace(now.count() + seconds, std::move(task));
  }
  // The system makes calls that are late in any order; who calls is due himself, so that the first of all is.
  void runFirstDue() {
    std::function<void()> task;
    {
      const std::lock_guard lock(mutex);
      if (delayedTasks.empty()) return;
      task = std::move(delayedTasks.begin()->second);
      delayedTasks.erase(delayedTasks.begin());
    }
    task();
  }
  void runOldest(std::deque<std::function<void()>>& from) {
    std::function<void()> task;
    {
      const std::lock_guard lock(mutex);
      if (from.empty()) return;
      task = std::move(from.front());
      from.pop_front();
    }
    task();
  }

  std::mutex mutex;
  std::deque<std::function<void()>> tasks;
  std::deque<std::function<void()>> idleTasks;
  std::multimap<double, std::function<void()>> delayedTasks;  // by the seconds of the clock when they are due
};

}  // namespace halvorn

using MainThreadQueue = halvorn::MacMainThread::Queue;

// A call that the run loop makes once.
@interface KTMainThreadCall : NSObject {
  std::shared_ptr<MainThreadQueue>* queue_;
  NSTimeInterval delay_;
}
- (id)initWithQueue:(std::shared_ptr<MainThreadQueue>)queue;
- (void)setDelay:(NSTimeInterval)delay;
- (void)run;
- (void)waitAndRun;
- (void)runDelayed;
- (void)waitForIdle;
- (void)runIdle:(NSNotification*)notification;
@end

static NSString* const KTMainThreadIdle = @"KTMainThreadIdle";

@implementation KTMainThreadCall

- (id)initWithQueue:(std::shared_ptr<MainThreadQueue>)queue {
  self = [super init];
  if (self != nil) {
    queue_ = new std::shared_ptr<MainThreadQueue>(std::move(queue));
    delay_ = 0;
  }
  return self;
}

- (void)dealloc {
  delete queue_;
  [super dealloc];
}

- (void)setDelay:(NSTimeInterval)delay {
  delay_ = delay;
}

- (void)run {
  (*queue_)->runOldest((*queue_)->tasks);
}

- (void)waitAndRun {
  [self performSelector:@selector(runDelayed) withObject:nil afterDelay:delay_];
}

- (void)runDelayed {
  (*queue_)->runFirstDue();
}

- (void)waitForIdle {
  [[NSNotificationCenter defaultCenter] addObserver:self
                                           selector:@selector(runIdle:)
                                               name:KTMainThreadIdle
                                             object:self];
  NSNotification* const idle = [NSNotification notificationWithName:KTMainThreadIdle object:self];
  [[NSNotificationQueue defaultQueue] enqueueNotification:idle
                                             postingStyle:NSPostWhenIdle
                                             coalesceMask:NSNotificationNoCoalescing
                                                 forModes:nil];
}

- (void)runIdle:(NSNotification*)notification {
  static_cast<void>(notification);
  [[self retain] autorelease];
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  (*queue_)->runOldest((*queue_)->idleTasks);
}

@end

namespace halvorn {
namespace {

// Never inside this call: on the main thread itself not every system lets the call wait when it is asked the other way.
void callOnMainThread(KTMainThreadCall* call, SEL selector) {
  if (![NSThread isMainThread]) {
    [call performSelectorOnMainThread:selector withObject:nil waitUntilDone:NO];
    return;
  }
  NSArray* const modes = [NSArray arrayWithObjects:NSDefaultRunLoopMode, NSRunLoopCommonModes, nil];
  [[NSRunLoop currentRunLoop] performSelector:selector target:call argument:nil order:0 modes:modes];
}

}  // namespace

MacMainThread::MacMainThread() : queue_(std::make_shared<Queue>()) {}
MacMainThread::~MacMainThread() = default;

void MacMainThread::perform(std::function<void()> task) {
  queue_->add(std::move(task));
  attempted([&] {
    callOnMainThread([[[KTMainThreadCall alloc] initWithQueue:queue_] autorelease], @selector(run));
  });
}

void MacMainThread::performAfter(double seconds, std::function<void()> task) {
  queue_->addDelayed(seconds, std::move(task));
  attempted([&] {
    KTMainThreadCall* const call = [[[KTMainThreadCall alloc] initWithQueue:queue_] autorelease];
    [call setDelay:seconds];
    callOnMainThread(call, @selector(waitAndRun));
  });
}

void MacMainThread::performWhenIdle(std::function<void()> task) {
  queue_->addIdle(std::move(task));
  attempted([&] {
    callOnMainThread([[[KTMainThreadCall alloc] initWithQueue:queue_] autorelease], @selector(waitForIdle));
  });
}

}  // namespace halvorn
