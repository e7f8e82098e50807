#include "Platform/window/linux/pictures/QtImage.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <cmath>

#include "Platform/window/linux/pictures/ImageLimits.h"
#include "Platform/window/linux/pictures/PngImage.h"

namespace halvorn {
namespace {

// Decodes with that decoder and no other; a drawing comes out that many pixels large.
QImage decode(const EncodedImage::Representation& source, int pixels) {
  const bool isTooLarge = source.side > kLargestSide;
  if (source.format == "png" && !isTooLarge) return decodePng(source.bytes);
  QByteArray bytes = source.bytes;
  QBuffer device(&bytes);
  device.open(QIODevice::ReadOnly);
  QImageReader reader(&device, source.format);
  reader.setAutoDetectImageFormat(false);
  const QSize size = reader.size();
  if (size.width() > kLargestSideInFile || size.height() > kLargestSideInFile) return {};
  if (isTooLarge) {
    reader.setScaledSize(
        size.scaled(kLargestSide, kLargestSide, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
  } else if (source.side == 0) {
    const QSize natural = size.isEmpty() ? QSize(1, 1) : size;
    reader.setScaledSize(natural.scaled(pixels, pixels, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
  }
  return reader.read();
}

}  // namespace

const QtImage* qtImage(const ImagePointer& image) { return dynamic_cast<const QtImage*>(image.get()); }

EncodedImage::EncodedImage(std::vector<Representation> representations) {
  std::stable_sort(representations.begin(), representations.end(),
                   [](const auto& a, const auto& b) { return a.side < b.side; });
  for (Representation& source : representations) entries_.push_back({std::move(source), {}, false});
}

const QImage& EncodedImage::decoded(std::size_t index) const {
  Entry& entry = entries_[index];
  if (!entry.tried) {
    entry.tried = true;
    entry.image = decode(entry.source, 0);
  }
  return entry.image;
}

QImage EncodedImage::picture(int pixels) const {
  // The smallest size that is large enough, then the larger ones, then the smaller ones from large to small.
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].source.side == 0) {
      if (QImage drawn = decode(entries_[i].source, pixels); !drawn.isNull()) return drawn;
    } else if (entries_[i].source.side >= pixels) {
      order.push_back(i);
    }
  }
  for (std::size_t i = entries_.size(); i-- > 0;) {
    if (entries_[i].source.side > 0 && entries_[i].source.side < pixels) order.push_back(i);
  }
  for (const std::size_t i : order) {
    if (const QImage& found = decoded(i); !found.isNull()) return found;
  }
  return {};
}

QPixmap EncodedImage::pixmap(int side, qreal scale) const {
  const int pixels = static_cast<int>(std::ceil(side * scale));
  QImage image = picture(pixels);
  if (image.isNull()) return {};
  if (image.width() > pixels || image.height() > pixels) {
    image = image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  }
  QPixmap pixmap = QPixmap::fromImage(std::move(image));
  pixmap.setDevicePixelRatio(scale);
  return pixmap;
}

QIcon EncodedImage::icon() const {
  QIcon icon;
  for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
    if (const QPixmap picture = pixmap(side, 1.0); !picture.isNull()) icon.addPixmap(picture);
  }
  return icon;
}

std::vector<EncodedImage::Representation> EncodedImage::representations() const {
  std::vector<Representation> all;
  for (const Entry& entry : entries_) all.push_back(entry.source);
  return all;
}

bool EncodedImage::isReadable() const { return !picture(32).isNull(); }

QPixmap ThemedImage::pixmap(int side, qreal scale) const { return icon_.pixmap(QSize(side, side), scale); }

}  // namespace halvorn
