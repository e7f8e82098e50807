// The desktop's interface style as the windows follow it: nothing is asked of the desktop again.
#pragma once

#include <functional>
#include <utility>

#include "Platform/color/InterfaceStyleSetting.h"
#include "Platform/color/linux/DesktopAppearance.h"

namespace halvorn {

class QtInterfaceStyle : public InterfaceStyleSetting {
 public:
  // The appearance must outlive it, and goes on calling the handler after it.
  explicit QtInterfaceStyle(DesktopAppearance& appearance) : appearance_(appearance) {}

  OptionalText current() override {
    return appearance_.style() == InterfaceStyle::Dark ? OptionalText("Dark") : std::nullopt;
  }
  void installChangeHandler(std::function<void()> handler) override {
    appearance_.changed = [others = std::move(appearance_.changed), heard = std::move(handler)] {
      if (others) others();
      heard();
    };
  }

 private:
  DesktopAppearance& appearance_;
};

}  // namespace halvorn
