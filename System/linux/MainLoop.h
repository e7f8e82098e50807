// The loop that serves the main thread: the toolkit's where the program has an application, else one of our own.
#pragma once

#include <functional>
#include <memory>

#include "Platform/running/MainThread.h"
#include "Platform/running/posix/RunLoop.h"
#include "System/Parts.h"

namespace halvorn {

struct MainLoop {
  // A loop of our own.
  explicit MainLoop(KTSystem& system);

  MainThread& mainThread() { return *mainThread_; }
  RunLoop& runLoop() { return *runLoop_; }
  bool runUntil(const std::function<bool()>& condition, double seconds) {
    return runUntil_(condition, seconds);
  }

  // From now on the loop is another one. Whoever asked for the loop before stays with the one he got.
  using RunUntil = std::function<bool(const std::function<bool()>&, double)>;
  void use(MainThread& mainThread, RunLoop& runLoop, RunUntil runUntil);

 private:
  std::shared_ptr<void> own_;
  MainThread* mainThread_ = nullptr;
  RunLoop* runLoop_ = nullptr;
  RunUntil runUntil_;
};

}  // namespace halvorn
