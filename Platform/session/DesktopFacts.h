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

struct MenuBarEvent {
  FourCharCode eventClass = 0;
  int kind = 0;
};
inline constexpr FourCharCode kMenuEventClass = fourCharCode("menu");
inline constexpr int kMenuBarShownEvent = 2000;
inline constexpr int kMenuBarHiddenEvent = 2001;

enum class EventAnswer { Handled, NotHandled };
using MenuBarHandler = std::function<EventAnswer(const MenuBarEvent&)>;

inline constexpr int kBlueControlTint = 1;
inline constexpr int kGraphiteControlTint = 6;

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
