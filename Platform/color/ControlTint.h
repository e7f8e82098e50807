// The tint of controls.
#pragma once

namespace halvorn {

inline constexpr int blueControlTint = 1;
inline constexpr int graphiteControlTint = 6;

class ControlTint {
 public:
  virtual ~ControlTint() = default;
  // Thread: main.
  [[nodiscard]] virtual int current() const = 0;
};

}  // namespace halvorn
