// Debuggers.
#pragma once

namespace halvorn {

class Debugger {
 public:
  virtual ~Debugger() = default;
  // Whether one is attached to this process right now; false when the system does not tell. Thread: any.
  [[nodiscard]] virtual bool isAttached() const = 0;
};

}  // namespace halvorn
