// Work that is done also when a library ends the program from within by exit(), as toolkits do when the
// display has gone: nothing is unwound then.
//
// Thread: main. One object at a time.
#pragma once

#include <functional>

namespace halvorn {

class BeforeExit {
 public:
  // While this object exists exit() does the task first, on the thread that called it, and then goes on with
  // its own status. Static objects made before this one are still there.
  explicit BeforeExit(std::function<void()> task);
  ~BeforeExit();
  BeforeExit(const BeforeExit&) = delete;
  BeforeExit& operator=(const BeforeExit&) = delete;

 private:
  std::function<void()> task_;
};

}  // namespace halvorn
