// How a program runs where no system is asked for anything: no programs, no other streams, and the time, the
// threads, the main loop and the log that the standard library has.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "Core/Log.h"
#include "Platform/running/Clock.h"
#include "Platform/running/MainThread.h"
#include "Platform/running/StandardStreams.h"
#include "Platform/running/Tasks.h"
#include "Platform/running/Workers.h"

namespace halvorn {

// No programs can be started.
class NullTasks : public Tasks {
 public:
  TaskLaunch launch(const Text&, const std::vector<Text>&, const Text&, const Text&) override {
    return {nullptr, "Not supported on this system"};
  }
  void launchAndForget(const Text&, const std::vector<Text>&) override {}
  std::optional<std::string> standardOutputOf(const Text&, const std::vector<Text>&) override {
    return std::nullopt;
  }
};

// Streams that cannot be sent anywhere else.
class NullStandardStreams : public StandardStreams {
 public:
  bool reopen(Stream, const Text&) override { return false; }
};

class StandardClock : public Clock {
 public:
  Date now() const override;
  double monotonicSeconds() const override;
  void sleep(double seconds) override;
};

// A thread per task. Where there can be no threads, the task runs inside the call.
class StandardWorkers : public Workers {
 public:
  StandardWorkers() = default;
  // Does not wait: a thread that finish() has not waited for ends the program, as with std::thread itself.
  ~StandardWorkers() override = default;
  StandardWorkers(const StandardWorkers&) = delete;
  StandardWorkers& operator=(const StandardWorkers&) = delete;

  void detach(std::function<void()> task) override;
  // Waits for all tasks, those that are started meanwhile too. Thread: any but those of the tasks.
  void finish();

 private:
  std::mutex mutex_;
  std::list<std::thread> threads_;  // guarded by mutex_
};

// A main loop in which nothing happens but what was posted.
class StandardMainThread : public MainThread {
 public:
  void perform(std::function<void()> task) override;
  void performAfter(double seconds, std::function<void()> task) override;
  void performWhenIdle(std::function<void()> task) override;

  // Runs what was posted, and what that posts in turn, until nothing waits any more or `isOver` says so, asked
  // after each task. What is still waiting after that many seconds is dropped. Thread: the main thread.
  void run(const std::function<bool()>& isOver, double seconds);
  [[nodiscard]] bool hasTasks() const;

 private:
  using Moment = std::chrono::steady_clock::time_point;

  // Null when nothing is left to be done before `end`; waits for what is due later.
  [[nodiscard]] std::function<void()> next(Moment end);

  mutable std::mutex mutex_;  // guards the queues
  std::condition_variable posted_;
  std::deque<std::function<void()>> tasks_;
  std::multimap<Moment, std::function<void()>> delayed_;  // those of one moment in the order they came
  std::deque<std::function<void()>> idleTasks_;
};

// Lines on standard error. The time is not told: the standard library knows no person's time zone for certain.
class StandardErrorStreamLog : public Log {
 public:
  explicit StandardErrorStreamLog(const Text& programName);

 protected:
  void write(const Text& line) const override;

 private:
  std::string start_;
};

}  // namespace halvorn
