// The look of all windows, light or dark and with how much contrast, as the desktop asks for it.
#pragma once

#include <functional>
#include <memory>
#include <optional>

namespace halvorn {

enum class InterfaceStyle { Light, Dark };
enum class Contrast;

class DesktopAppearance {
 public:
  // With a style, that one is kept whatever the desktop says (a person's own setting wins). Without, the
  // desktop's choice between dark and light is asked for and followed while the program runs; light until the answer
  // is there and when there is none. The contrast is the desktop's in either case, unless one is given, and so is
  // whether widgets move (Motion.h). Returns at once. A QtApplication must exist. Thread: main.
  explicit DesktopAppearance(std::optional<InterfaceStyle> fixed,
                             std::optional<Contrast> fixedContrast = std::nullopt);
  ~DesktopAppearance();
  DesktopAppearance(const DesktopAppearance&) = delete;
  DesktopAppearance& operator=(const DesktopAppearance&) = delete;

  [[nodiscard]] InterfaceStyle style() const;
  [[nodiscard]] Contrast contrast() const;
  // Called on the main thread whenever style() has changed.
  std::function<void()> changed;
  // Called on the main thread when the desktop does not answer.
  std::function<void()> unanswered;

 private:
  void follow(const class AppearanceSettings& settings);
  void use(InterfaceStyle style, Contrast contrast);

  const std::optional<InterfaceStyle> fixed_;
  const std::optional<Contrast> fixedContrast_;
  InterfaceStyle style_ = InterfaceStyle::Light;
  Contrast contrast_{};
  std::unique_ptr<class AppearanceWatch> watch_;
};

}  // namespace halvorn
