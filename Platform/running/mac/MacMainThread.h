// The main thread's queue on the system's run loop.
#pragma once

#include <memory>

#include "Platform/running/MainThread.h"

namespace halvorn {

class MacMainThread : public MainThread {
 public:
  MacMainThread();
  ~MacMainThread() override;
  void perform(std::function<void()> task) override;
  void performAfter(double seconds, std::function<void()> task) override;
  void performWhenIdle(std::function<void()> task) override;

  // The tasks that wait for the loop to come to them.
  struct Queue;

 private:
  std::shared_ptr<Queue> queue_;
};

}  // namespace halvorn
