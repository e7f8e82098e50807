// What happens to the running applications: launches, ends, another one in front.
#pragma once

#include <functional>

#include "Platform/processes/ProcessSource.h"

namespace halvorn {

// The kinds of application events that the class library knows.
inline constexpr int kApplicationLaunchedEvent = 5;
inline constexpr int kApplicationTerminatedEvent = 6;
inline constexpr int kFrontApplicationSwitchedEvent = 7;

class ApplicationEvents {
 public:
  virtual ~ApplicationEvents() = default;
  // Has the handler called for each event from now on, in the order in which they happened. An application
  // that was seen to start is seen to end. There is one handler; it stays for as long as this object lives.
  // Thread: this call any; the handler runs on the main thread, never inside another call of this interface.
  virtual void installHandler(std::function<void(int kind)> handler) = 0;
};

}  // namespace halvorn
