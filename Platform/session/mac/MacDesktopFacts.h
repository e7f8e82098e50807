// What the desktop tells: the registry's idle time, the pasteboard, Carbon's menu-bar events, the control tint.
#pragma once

#include <memory>

#include "Platform/session/DesktopFacts.h"

namespace halvorn {

class MacDesktopFacts : public DesktopFacts {
 public:
  MacDesktopFacts();
  ~MacDesktopFacts() override;
  std::optional<std::int64_t> nanosecondsSinceLastInput() override;
  std::optional<std::int64_t> clipboardChangeCount() override;
  bool installMenuBarHandler(MenuBarHandler handler) override;
  std::optional<int> controlTint() override;

 private:
  struct Installation;
  std::unique_ptr<Installation> installation_;
};

}  // namespace halvorn
