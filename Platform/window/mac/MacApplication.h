// The running program on AppKit's event loop.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "Platform/running/MainThread.h"
#include "Platform/window/Application.h"

namespace halvorn {

class MacApplication : public Application {
 public:
  // `programName` stands in the menu, with what ends the program under its word for that. Thread: main.
  MacApplication(MainThread& mainThread, const Text& programName, const Text& quitTitle);
  ~MacApplication() override;

  // Works until terminate() is called (before this, too); the program's exit status.
  [[nodiscard]] int run();
  void terminate() override;
  // Called when the person or the end of the session ends the program, which terminate()s right after.
  void setSessionEnded(std::function<void()> callback);
  void setApplicationIcon(const ImagePointer& icon) override;
  void performWhenShown(std::function<void()> task) override;
  void requestUserAttention() override;
  void setProgress(std::optional<double>) override {}  // the Dock has no bar of its own for it
  void beep() override;
  [[nodiscard]] bool currentEventHasOptionKey() const override;

  // The first window is on the screen, or about to be.
  void windowIsShown();

  struct Parts;

 private:
  std::shared_ptr<Parts> parts_;
};

}  // namespace halvorn
