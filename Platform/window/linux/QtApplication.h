// The running program on the toolkit's event loop.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "Platform/running/MainThread.h"
#include "Platform/window/Application.h"

namespace halvorn {

class QtApplication : public Application, public MainThread {
 public:
  // The toolkit is told the program's path and nothing else of the command line: products pass keys of their
  // own, and the toolkit would take "-style" or "-title" away from them. A QApplication that the program has made already
  // is used as it is, and has to outlive this object. Thread: the main thread.
  explicit QtApplication(const Text& programPath);
  ~QtApplication() override;

  // Whether the toolkit's application is this object's, and its look with it.
  [[nodiscard]] bool isOwn() const;

  // Works until terminate() is called (before this, too); the program's exit status.
  [[nodiscard]] int run();
  // Works until the condition holds, asked after each thing done; false when that many seconds were over first.
  bool runUntil(const std::function<bool()>& condition, double seconds);

  // By which desktops know the program: the name of its desktop entry, without the ending.
  void setIdentifier(const Text& identifier);
  void terminate() override;
  [[nodiscard]] bool isTerminated() const;
  // Called when the session manager ends the program, which terminate()s right after.
  void setSessionEnded(std::function<void()> callback);
  void setApplicationIcon(const ImagePointer& icon) override;  // once the window has been painted
  void performWhenShown(std::function<void()> task) override;
  void requestUserAttention() override;
  void setProgress(std::optional<double> share) override;
  void beep() override;
  [[nodiscard]] bool currentEventHasOptionKey() const override;
  // When the person last pressed a key or a button, by the clock of an X server; nullopt before that.
  // Thread: any.
  [[nodiscard]] std::optional<std::uint32_t> timeOfLastDeed() const;

  // Tasks that are still waiting when terminate() is called are dropped, those for a quiet moment too.
  void perform(std::function<void()> task) override;
  void performAfter(double seconds, std::function<void()> task) override;
  void performWhenIdle(std::function<void()> task) override;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace halvorn
