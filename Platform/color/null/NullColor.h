// A desktop without appearances and styles.
#pragma once

#include "Platform/color/Appearances.h"
#include "Platform/color/GraphicsContext.h"
#include "Platform/color/InterfaceStyleSetting.h"

namespace halvorn {

// Nothing is drawn, and the application has no appearance.
class NullAppearances : public Appearances {
 public:
  AppearancePointer currentAppearance() const override { return nullptr; }
  AppearancePointer effectiveAppearance() const override { return nullptr; }
};

// The light style, for good.
class NullInterfaceStyleSetting : public InterfaceStyleSetting {
 public:
  OptionalText current() override { return std::nullopt; }
  void installChangeHandler(std::function<void()>) override {}
};

// Draws nothing.
class NullGraphicsContext : public GraphicsContext {
 public:
  void setStrokeColor(const DeviceColor&) override {}
  void setFillColor(const DeviceColor&) override {}
};

}  // namespace halvorn
