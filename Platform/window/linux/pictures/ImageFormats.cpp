#include "Platform/window/linux/pictures/ImageFormats.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>
#include <algorithm>

#include "Platform/window/linux/pictures/ImageLimits.h"

namespace halvorn {
namespace {

constexpr char kPngStart[] = "\x89PNG\r\n\x1a\n";

bool looksLikeDrawing(const QByteArray& bytes) {
  const QByteArray start = bytes.left(4096);
  return start.contains("<svg") || (start.contains("<?xml") && bytes.left(65536).contains("<svg"));
}

// The formats that are no drawings and no containers, by their first bytes; empty for any other.
QByteArray rasterFormat(const QByteArray& bytes) {
  if (bytes.startsWith(QByteArray::fromRawData(kPngStart, 8))) return "png";
  if (bytes.startsWith("\xFF\xD8\xFF")) return "jpeg";
  if (bytes.startsWith("GIF8")) return "gif";
  if (bytes.startsWith("BM")) return "bmp";
  if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP") return "webp";
  if (bytes.startsWith(QByteArray::fromRawData("\0\0\1\0", 4))) return "ico";
  if (bytes.startsWith(QByteArray::fromRawData("II*\0", 4))) return "tiff";
  if (bytes.startsWith(QByteArray::fromRawData("MM\0*", 4))) return "tiff";
  return {};
}

int pngSide(const QByteArray& bytes) {
  if (bytes.size() < 24) return 0;
  const auto* data = reinterpret_cast<const uchar*>(bytes.constData());
  const quint32 longer = std::max(qFromBigEndian<quint32>(data + 16), qFromBigEndian<quint32>(data + 20));
  return longer > static_cast<quint32>(kLargestSideInFile) ? 0 : static_cast<int>(longer);
}

int rasterSide(const QByteArray& bytes, const QByteArray& format) {
  if (format == "png") return pngSide(bytes);
  QByteArray copy = bytes;
  QBuffer device(&copy);
  device.open(QIODevice::ReadOnly);
  QImageReader reader(&device, format);
  reader.setAutoDetectImageFormat(false);
  const QSize size = reader.size();
  const int longer = std::max(size.width(), size.height());
  return longer > kLargestSideInFile ? 0 : std::max(longer, 0);
}

}  // namespace

std::shared_ptr<const EncodedImage> imageFromBytes(const QByteArray& bytes) {
  std::vector<EncodedImage::Representation> found;
  if (bytes.startsWith("icns")) {
    found = icnsRepresentations(bytes);
  } else if (const QByteArray format = rasterFormat(bytes); !format.isEmpty()) {
    if (const int side = rasterSide(bytes, format); side > 0) found.push_back({side, format, bytes});
  } else if (looksLikeDrawing(bytes) && isHarmlessDrawing(bytes)) {
    found.push_back({0, "svg", bytes});
  }
  if (found.empty()) return nullptr;
  auto image = std::make_shared<const EncodedImage>(std::move(found));
  return image->isReadable() ? image : nullptr;
}

}  // namespace halvorn
