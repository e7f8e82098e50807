// The toolkit's event loop for adapters that wait for file descriptors or for quiet moments.
#pragma once

#include <memory>

#include "Platform/IdleQueue.h"
#include "Platform/posix/RunLoop.h"

namespace halvorn {

class QtRunLoop : public RunLoop, public IdleQueue {
 public:
  // A QtApplication must exist and outlive it. Thread: main.
  QtRunLoop();
  ~QtRunLoop() override;
  QtRunLoop(const QtRunLoop&) = delete;
  QtRunLoop& operator=(const QtRunLoop&) = delete;
