#include "Platform/window/linux/pictures/DrawnIcon.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>

namespace halvorn {
namespace {

std::string encoded(int width, int height, const char* format) {
  QImage image(width, height, QImage::Format_ARGB32);
  image.fill(Qt::red);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  EXPECT_TRUE(image.save(&buffer, format)) << format;
  return bytes.toStdString();
}

QImage decoded(const IconPicture& picture) {
  return QImage::fromData(QByteArray::fromStdString(picture.png), "PNG");
}

std::vector<int> sizesOf(const std::vector<IconPicture>& pictures) {
  std::vector<int> sizes;
  for (const IconPicture& picture : pictures) sizes.push_back(picture.size);
  return sizes;
}

TEST(DrawnIcon, AnyFormatBecomesSquarePicturesInTheSizesItFills) {
  for (const char* format : {"BMP", "TIFF"}) {
    if (!QImageWriter::supportedImageFormats().contains(QByteArray(format).toLower()))
      GTEST_SKIP() << "the toolkit writes no " << format << " here";
    const auto pictures = drawnIcon(encoded(48, 48, format));
    EXPECT_EQ(sizesOf(pictures), (std::vector{16, 24, 32, 48})) << format;
    for (const IconPicture& picture : pictures) {
      EXPECT_EQ(decoded(picture).size(), QSize(picture.size, picture.size));
      EXPECT_EQ(sizeOfSquarePng(picture.png), picture.size) << "as a desktop entry takes it";
    }
  }
}

TEST(DrawnIcon, APictureThatIsNotSquareStandsInTheMiddle) {
  const auto pictures = drawnIcon(encoded(32, 16, "BMP"));
  ASSERT_EQ(sizesOf(pictures), (std::vector{16, 24, 32}));
  const QImage largest = decoded(pictures.back());
  EXPECT_EQ(largest.pixelColor(16, 16), QColor(Qt::red));
  EXPECT_EQ(largest.pixelColor(16, 2).alpha(), 0);
  EXPECT_EQ(largest.pixelColor(16, 29).alpha(), 0);
}

TEST(DrawnIcon, ADrawingFillsEverySize) {
  const auto pictures = drawnIcon(
      R"(<svg xmlns="http://www.w3.org/2000/svg" width="10" height="10"><rect width="10" height="10"/></svg>)");
  EXPECT_EQ(sizesOf(pictures), (std::vector{16, 24, 32, 48, 64, 128, 256}));
}

TEST(DrawnIcon, WhatIsNoPictureIsNone) {
  for (const char* bytes : {"", "II*", "BM", "<svg", "text"}) EXPECT_TRUE(drawnIcon(bytes).empty()) << bytes;
}

}  // namespace
}  // namespace halvorn
