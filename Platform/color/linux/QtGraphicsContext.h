// Drawing with the toolkit's painter.
#pragma once

#include <QColor>
#include <QPainter>

#include "Platform/color/GraphicsContext.h"

namespace halvorn {

[[nodiscard]] inline QColor toQColor(const DeviceColor& color) {
  return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                          static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

class QtGraphicsContext : public GraphicsContext {
 public:
  explicit QtGraphicsContext(QPainter& painter) : painter_(painter) {}
  void setStrokeColor(const DeviceColor& color) override {
    QPen pen = painter_.pen();
    pen.setColor(toQColor(color));
    painter_.setPen(pen);
  }
  void setFillColor(const DeviceColor& color) override { painter_.setBrush(toQColor(color)); }

 private:
  QPainter& painter_;
};

}  // namespace halvorn
