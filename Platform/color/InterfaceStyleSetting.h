// The interface style that the person chose for the whole desktop.
#pragma once

#include <functional>

#include "Core/Text.h"

namespace halvorn {

class InterfaceStyleSetting {
 public:
  virtual ~InterfaceStyleSetting() = default;
  // "Dark"; nullopt for the light style, and when the desktop does not tell. Read afresh at each call, which
  // never waits long. Thread: main.
  [[nodiscard]] virtual OptionalText current() = 0;
  // Has the handler called after each change from now on. There is one handler; it stays for as long as this
  // object lives. Thread: main; the handler runs there too, never inside this call.
  virtual void installChangeHandler(std::function<void()> handler) = 0;
};

}  // namespace halvorn
