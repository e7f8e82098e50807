// A picture as the toolkit draws it.
//
// Thread: main, all of it.
#pragma once

#include <QByteArray>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <memory>
#include <vector>

#include "Platform/window/Images.h"

namespace halvorn {

class QtImage : public Image {
 public:
  // The picture fitted into a square of that many points, sharp on a display of that scale; smaller pictures
  // are not blown up. Null when nothing can be decoded.
  [[nodiscard]] virtual QPixmap pixmap(int side, qreal scale) const = 0;
  // The picture in the sizes that task bars and switchers use.
  [[nodiscard]] virtual QIcon icon() const = 0;
};

// The toolkit's side of an image that this adapter made; null for any other.
[[nodiscard]] const QtImage* qtImage(const ImagePointer& image);

// A picture from a file's bytes in one or several sizes. Sizes are decoded when they are first drawn: the
// largest one of an icon file takes as long as the whole window.
class EncodedImage : public QtImage {
 public:
  struct Representation {
    int side = 0;  // the longer side in pixels; 0 for a picture without a size of its own
    QByteArray format;
    QByteArray bytes;
  };
  explicit EncodedImage(std::vector<Representation> representations);

  [[nodiscard]] QPixmap pixmap(int side, qreal scale) const override;
  [[nodiscard]] QIcon icon() const override;
  [[nodiscard]] std::vector<Representation> representations() const;  // smallest first
  // Whether at least one size can be decoded.
  [[nodiscard]] bool isReadable() const;
  // The size that suits so many pixels best, as it is; null when none can be decoded. Thread: any, one at a time.
  [[nodiscard]] QImage picture(int pixels) const;

 private:
  [[nodiscard]] const QImage& decoded(std::size_t index) const;

  struct Entry {
    Representation source;
    QImage image;
    bool tried = false;
  };
  mutable std::vector<Entry> entries_;  // smallest first
};

// A picture of the desktop's icon theme.
class ThemedImage : public QtImage {
 public:
  explicit ThemedImage(QIcon icon) : icon_(std::move(icon)) {}
  [[nodiscard]] QPixmap pixmap(int side, qreal scale) const override;
  [[nodiscard]] QIcon icon() const override { return icon_; }

 private:
  QIcon icon_;
};

}  // namespace halvorn
