// An event loop for programs without a toolkit.
//
//   PollRunLoop loop;
//   loop.runUntil([&] { return done; }, 5.0);
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "Platform/running/MainThread.h"
#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/running/posix/RunLoop.h"

namespace halvorn {

// Thread: the one that made it is the main thread.
class PollRunLoop : public RunLoop, public MainThread {
 public:
  PollRunLoop();
  ~PollRunLoop() override;
  PollRunLoop(const PollRunLoop&) = delete;
  PollRunLoop& operator=(const PollRunLoop&) = delete;

  std::unique_ptr<Source> whenReadable(int descriptor, std::function<void()> callback) override;
  std::unique_ptr<Source> every(double seconds, std::function<void()> callback) override;
  void perform(std::function<void()> task) override;
  void performAfter(double seconds, std::function<void()> task) override;
  void performWhenIdle(std::function<void()> task) override;

  // Serves events until the condition holds, asked after each round; false when the time is over first.
  bool runUntil(const std::function<bool()>& condition, double seconds);
  void runFor(double seconds);
  // How often the loop woke up to do something.
  [[nodiscard]] std::uint64_t rounds() const { return rounds_; }

 private:
  struct Watch;
  struct Timer;
  class Registration;

  // Waits at most that long for something to do and does it.
  void serveOneRound(double seconds);
  void runTasks();
  bool serveDescriptors(double seconds);
  void runDueTimers();
  void runOneIdleTask();
  [[nodiscard]] double secondsToNextTimer(double limit);
  void wakeUp();

  FileDescriptor wakeRead_;
  FileDescriptor wakeWrite_;
  std::vector<std::shared_ptr<Watch>> watches_;
  std::vector<std::shared_ptr<Timer>> timers_;
  std::uint64_t rounds_ = 0;

  std::mutex mutex_;  // guards the queues
  std::deque<std::function<void()>> tasks_;
  std::deque<std::function<void()>> idleTasks_;
};

}  // namespace halvorn
