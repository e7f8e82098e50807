// The main thread's loop.
#pragma once

#include "Platform/running/mac/MacMainThread.h"
#include "Platform/running/mac/MacRunLoop.h"
#include "System/Parts.h"

namespace halvorn {

struct MainLoop {
  explicit MainLoop(KTSystem&) {}
  MacMainThread mainThread;
  MacRunLoop runLoop;
};

}  // namespace halvorn
