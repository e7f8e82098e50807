// An interface style that a test sets.
#pragma once

#include <functional>
#include <utility>

#include "Platform/color/InterfaceStyleSetting.h"

namespace halvorn {

class FakeInterfaceStyleSetting : public InterfaceStyleSetting {
 public:
  OptionalText current() override { return style; }
  void installChangeHandler(std::function<void()> newHandler) override {
    ++installations;
    handler = std::move(newHandler);
  }
  void change(const OptionalText& newStyle) {
    style = newStyle;
    if (handler) handler();
  }

  OptionalText style;
  int installations = 0;
  std::function<void()> handler;
};

}  // namespace halvorn
