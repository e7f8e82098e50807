// A desktop whose facts a test sets.
#pragma once

#include <optional>
#include <utility>

#include "Platform/session/DesktopFacts.h"

namespace halvorn {

class FakeDesktopFacts : public DesktopFacts {
 public:
  std::optional<std::int64_t> nanosecondsSinceLastInput() override { return nanoseconds; }
  std::optional<std::int64_t> clipboardChangeCount() override {
    ++clipboardQuestions;
    return clipboardChanges;
  }
  bool installMenuBarHandler(MenuBarHandler handler) override {
    ++menuBarHandlerInstallations;
    if (!canWatchMenuBar) return false;
    menuBarHandler = std::move(handler);
    return true;
  }
  std::optional<int> controlTint() override { return tint; }

  void changeClipboard() { ++*clipboardChanges; }
  void hideMenuBar() { (void)menuBarHandler({kMenuEventClass, kMenuBarHiddenEvent}); }
  void showMenuBar() { (void)menuBarHandler({kMenuEventClass, kMenuBarShownEvent}); }

  std::optional<std::int64_t> nanoseconds;
  std::optional<std::int64_t> clipboardChanges = 7;
  int clipboardQuestions = 0;
  std::optional<int> tint = kBlueControlTint;
  bool canWatchMenuBar = true;
  int menuBarHandlerInstallations = 0;
  MenuBarHandler menuBarHandler;
};

}  // namespace halvorn
