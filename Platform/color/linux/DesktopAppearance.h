// The look of all windows, light or dark, as the desktop asks for it.
#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace halvorn {

enum class InterfaceStyle { Light, Dark };

class DesktopAppearance {
 public:
  // With a style, that one is kept whatever the desktop says (a person's own setting wins). Without, the
  // desktop's color-scheme setting is asked for and followed while the program runs; light until the answer
  // is there and when there is none. Returns at once. A QtApplication must exist. Thread: main.
  explicit DesktopAppearance(std::optional<InterfaceStyle> fixed);
  ~DesktopAppearance();
  DesktopAppearance(const DesktopAppearance&) = delete;
  DesktopAppearance& operator=(const DesktopAppearance&) = delete;

  [[nodiscard]] InterfaceStyle style() const;
  // Called on the main thread whenever style() has changed.
  std::function<void()> changed;
  // Called on the main thread when the desktop does not answer.
  std::function<void()> unanswered;

 private:
  void use(InterfaceStyle style);

  InterfaceStyle style_ = InterfaceStyle::Light;
  std::unique_ptr<class ColorSchemeWatch> watch_;
};

}  // namespace halvorn
