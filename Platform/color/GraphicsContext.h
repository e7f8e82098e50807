// What a view is being drawn into.
#pragma once

#include "Core/ColorModels.h"

namespace halvorn {

// A color as the display takes it, components from 0 to 1.
using DeviceColor = RedGreenBlueAlpha;

// Thread: the one that draws.
class GraphicsContext {
 public:
  virtual ~GraphicsContext() = default;
  virtual void setStrokeColor(const DeviceColor& color) = 0;  // lines and texts from now on
  virtual void setFillColor(const DeviceColor& color) = 0;    // areas from now on
};

}  // namespace halvorn
