#include "Platform/window/linux/pictures/DrawnIcon.h"

#include <QBuffer>
#include <QPainter>
#include <algorithm>

#include "Platform/window/linux/pictures/ImageFormats.h"

namespace halvorn {
namespace {

std::string squarePng(const QImage& picture, int side) {
  QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
  square.fill(Qt::transparent);
  const QImage fitted = picture.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  QPainter(&square).drawImage((side - fitted.width()) / 2, (side - fitted.height()) / 2, fitted);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  return square.save(&buffer, "PNG") ? bytes.toStdString() : std::string();
}

}  // namespace

std::vector<IconPicture> drawnIcon(std::string_view bytes) {
  const auto image = imageFromBytes(QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
  std::vector<IconPicture> pictures;
  if (!image) return pictures;
  for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
    const QImage picture = image->picture(side);
    // A small picture is not blown up, but shown at all.
    if (std::max(picture.width(), picture.height()) < side && !pictures.empty()) break;
    if (std::string png = squarePng(picture, side); !png.empty()) pictures.push_back({side, std::move(png)});
  }
  return pictures;
}

}  // namespace halvorn
