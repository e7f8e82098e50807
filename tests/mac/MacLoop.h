// The run loop of the system, served by a test.
#pragma once

#include <functional>

namespace halvorn {

// Serves the loop until the condition holds; false when that many seconds are over first. Thread: main.
[[nodiscard]] bool serveMacLoopUntil(const std::function<bool()>& condition, double seconds = 10);
// How many objects of that class of Foundation's or ours are alive; counted from the first question on. Thread: main.
[[nodiscard]] int liveInstances(const char* className);
// What the framework autoreleases on this thread is kept until this ends.
class MacPool {
 public:
  MacPool();
  ~MacPool();
  MacPool(const MacPool&) = delete;
  MacPool& operator=(const MacPool&) = delete;

 private:
  void* pool_;
};

}  // namespace halvorn
