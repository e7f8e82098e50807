// Whether the desktop shows its menu bar: it hides it while the active window fills the screen.
#pragma once

#include <functional>

#include "Core/FourCharCode.h"

namespace halvorn {

struct MenuBarEvent {
  FourCharCode eventClass = 0;
  int kind = 0;
};

inline constexpr FourCharCode menuEventClass = fourCharCode("menu");
inline constexpr int menuBarShownEvent = 2000;
inline constexpr int menuBarHiddenEvent = 2001;

enum class EventAnswer { Handled, NotHandled };

class MenuBar {
 public:
  using Handler = std::function<EventAnswer(const MenuBarEvent&)>;

  virtual ~MenuBar() = default;
  // Has the handler called when the menu bar is hidden or shown again; a bar that is hidden already is told
  // as the first event. There is one handler; it stays for as long as this object lives. False when the
  // desktop cannot tell. Thread: main; the handler runs there too, never inside this call.
  [[nodiscard]] virtual bool installHandler(Handler handler) = 0;
};

}  // namespace halvorn
