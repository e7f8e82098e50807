// The system's current graphics context, which a view that is drawn finds set up.
#pragma once

#include "Platform/color/GraphicsContext.h"

namespace halvorn {

class MacGraphicsContext : public GraphicsContext {
 public:
  void setStrokeColor(const DeviceColor& color) override;
  void setFillColor(const DeviceColor& color) override;
};

}  // namespace halvorn
