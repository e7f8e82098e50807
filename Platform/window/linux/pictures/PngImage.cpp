#include "Platform/window/linux/pictures/PngImage.h"

#include <png.h>

#include "Platform/window/linux/pictures/ImageLimits.h"

namespace halvorn {
namespace {

// What the library holds for a picture goes with this.
struct Reading {
  Reading() { image.version = PNG_IMAGE_VERSION; }
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;
  ~Reading() { png_image_free(&image); }

  png_image image = {};
};

}  // namespace

QImage decodePng(const QByteArray& bytes) {
  Reading reading;
  png_image& image = reading.image;
  if (png_image_begin_read_from_memory(&image, bytes.constData(), static_cast<std::size_t>(bytes.size())) ==
      0)
    return {};
  if (image.width > static_cast<unsigned>(kLargestSide) || image.height > static_cast<unsigned>(kLargestSide))
    return {};
  image.format = PNG_FORMAT_RGBA;
  QImage decoded(static_cast<int>(image.width), static_cast<int>(image.height), QImage::Format_RGBA8888);
  if (decoded.isNull()) return {};
  const auto stride = static_cast<png_int_32>(decoded.bytesPerLine());
  if (png_image_finish_read(&image, nullptr, decoded.bits(), stride, nullptr) == 0) return {};
  return decoded;
}

}  // namespace halvorn
