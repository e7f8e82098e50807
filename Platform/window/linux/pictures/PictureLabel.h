// A square that shows an image sharp on any display.
#pragma once

#include <QLabel>

#include "Platform/window/linux/pictures/QtImage.h"

namespace halvorn {

class PictureLabel : public QLabel {
 public:
  PictureLabel(int side, QWidget* parent);

  void setImage(const ImagePointer& image);  // null shows nothing
  // Loads the image when the label is first painted.
  void setImageSource(std::function<ImagePointer()> source) { source_ = std::move(source); }
  // Of what was painted last; empty for nothing.
  [[nodiscard]] QSizeF sizeShown() const { return shown_.deviceIndependentSize(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int side_;
  std::function<ImagePointer()> source_;
  ImagePointer image_;
  QPixmap shown_;
};

}  // namespace halvorn
