#include "System/linux/MainLoop.h"

#include <utility>

#include "Platform/running/posix/PollRunLoop.h"

namespace halvorn {

MainLoop::MainLoop(KTSystem&) {
  auto loop = std::make_shared<PollRunLoop>();
  use(*loop, *loop, [loop](const std::function<bool()>& condition, double seconds) {
    return loop->runUntil(condition, seconds);
  });
  own_ = loop;
}

void MainLoop::use(MainThread& mainThread, RunLoop& runLoop, RunUntil runUntil) {
  mainThread_ = &mainThread;
  runLoop_ = &runLoop;
  runUntil_ = std::move(runUntil);
}

MainThread& KTSystem::mainThread() { return parts_->of<MainLoop>().mainThread(); }
bool KTSystem::runUntil(const std::function<bool()>& condition, double seconds) {
  return parts_->of<MainLoop>().runUntil(condition, seconds);
}

}  // namespace halvorn
