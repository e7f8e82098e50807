#include "Platform/window/linux/pictures/PictureLabel.h"

#include <QPainter>
#include <algorithm>
#include <utility>

namespace halvorn {

namespace {

// By its longer side as large as its place. Where the picture is too small, it is better coarse than lost in there.
QPixmap enlarged(QPixmap pixmap, int side) {
  const qreal ratio = pixmap.devicePixelRatio();
  const int pixels = qRound(side * ratio);
  if (pixmap.isNull() || std::max(pixmap.width(), pixmap.height()) >= pixels) return pixmap;
  pixmap = pixmap.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  pixmap.setDevicePixelRatio(ratio);
  return pixmap;
}

}  // namespace

PictureLabel::PictureLabel(int side, QWidget* parent) : QLabel(parent), side_(side) {
  setFixedSize(side, side);
}

void PictureLabel::setImage(const ImagePointer& image) {
  source_ = nullptr;
  image_ = image;
  shown_ = {};
  update();
}

void PictureLabel::paintEvent(QPaintEvent*) {
  if (source_) setImage(std::exchange(source_, nullptr)());
  const QtImage* picture = qtImage(image_);
  if (picture == nullptr) return;
  if (shown_.isNull() || shown_.devicePixelRatio() != devicePixelRatioF())
    shown_ = enlarged(picture->pixmap(side_, devicePixelRatioF()), side_);
  const QSizeF size = shown_.deviceIndependentSize();
  QPainter(this).drawPixmap(QPointF((side_ - size.width()) / 2.0, (side_ - size.height()) / 2.0), shown_);
}

}  // namespace halvorn
