// The appearance of the application and of the widget that is being painted.
// Why: docs/decisions/020-appearance.md
#pragma once

#include <memory>

#include "Platform/color/Appearances.h"

namespace halvorn {

class DesktopAppearance;

class QtAppearances : public Appearances {
 public:
  // Begins to watch what is painted. The desktop's appearance must outlive it. A QtApplication must exist as
  // long as it does. Thread: main.
  explicit QtAppearances(const DesktopAppearance& desktop);
  ~QtAppearances() override;

  AppearancePointer currentAppearance() const override;
  AppearancePointer effectiveAppearance() const override;

 private:
  class PaintWatch;
  const DesktopAppearance& desktop_;
  std::unique_ptr<PaintWatch> watch_;
};

}  // namespace halvorn
