// What the person's desktop tells when it is asked. Each fact may be unknown by itself, and nothing is
// connected before one is asked for.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "Core/FourCharCode.h"

namespace halvorn {

struct MenuBarEvent {           // what the desktop did with it
  FourCharCode eventClass = 0;  // kMenuEventClass
  int kind = 0;                 // shown or hidden
};
inline constexpr FourCharCode kMenuEventClass = fourCharCode("menu");  // of all these events
inline constexpr int kMenuBarShownEvent = 2000;                        // it is there
inline constexpr int kMenuBarHiddenEvent = 2001;                       // a window fills the screen

enum class EventAnswer { Handled, NotHandled };                          // whether others hear of it too
using MenuBarHandler = std::function<EventAnswer(const MenuBarEvent&)>;  // on the main thread

inline constexpr int kBlueControlTint = 1;      // colored
inline constexpr int kGraphiteControlTint = 6;  // grey

class DesktopFacts {
 public:
  virtual ~DesktopFacts() = default;

  // Since the last key, button or movement anywhere on this desktop. nullopt: unknown. Never waits long.
  [[nodiscard]] virtual std::optional<std::int64_t> nanosecondsSinceLastInput() = 0;
  // A number that grows whenever any program puts something on the clipboard or empties it; changes made
  // before the call are counted. Once known, it stays known. nullopt: unknown.
  [[nodiscard]] virtual std::optional<std::int64_t> clipboardChangeCount() = 0;
  // Has the handler called when the menu bar is hidden, as it is while the active window fills the screen, or
  // shown again; a bar that is hidden already is told as the first event. There is one handler; it stays for
  // as long as this object lives, and is never called inside this call. False when the desktop cannot tell.
  [[nodiscard]] virtual bool installMenuBarHandler(MenuBarHandler handler) = 0;
  // The tint of controls. nullopt: the desktop has none.
  [[nodiscard]] virtual std::optional<int> controlTint() = 0;
};

}  // namespace halvorn
