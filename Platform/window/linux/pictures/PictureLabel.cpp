#include "Platform/window/linux/pictures/PictureLabel.h"

#include <QPainter>
#include <utility>

namespace halvorn {

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
  if (shown_.isNull() || shown_.devicePixelRatio() != devicePixelRatioF()) {
    shown_ = picture->pixmap(side_, devicePixelRatioF());
  }
  const QSizeF size = shown_.deviceIndependentSize();
  QPainter(this).drawPixmap(QPointF((side_ - size.width()) / 2.0, (side_ - size.height()) / 2.0), shown_);
}

}  // namespace halvorn
