// No debugger.
#pragma once

#include "Platform/session/Debugger.h"

namespace halvorn {

class NullDebugger : public Debugger {
 public:
  bool isAttached() const override { return false; }
};

}  // namespace halvorn
