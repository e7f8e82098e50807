#include "Platform/window/linux/pictures/QtImages.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QtEndian>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "Platform/window/linux/pictures/ImageFormats.h"
#include "Platform/window/linux/pictures/PictureLabel.h"
#include "Platform/window/linux/pictures/QtImage.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

QByteArray encoded(int width, int height, const char* format, QColor color = Qt::red) {
  QImage image(width, height, QImage::Format_ARGB32);
  image.fill(color);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  EXPECT_TRUE(image.save(&buffer, format));
  return bytes;
}

QByteArray number(qsizetype value) {
  QByteArray bytes(4, '\0');
  qToBigEndian<quint32>(static_cast<quint32>(value), bytes.data());
  return bytes;
}
QByteArray entry(const char* kind, const QByteArray& picture) {
  return QByteArray(kind, 4) + number(picture.size() + 8) + picture;
}
QByteArray icns(const QByteArray& entries) { return "icns" + number(entries.size() + 8) + entries; }

// Sixteen by sixteen points as three packed channels: runs of 128 equal bytes.
QByteArray packedColors(char red, char green, char blue) {
  QByteArray bytes;
  for (const char channel : {red, green, blue})
    bytes += QByteArray("\xFD", 1) + channel + QByteArray("\xFD", 1) + channel;
  return bytes;
}

std::vector<int> sidesOf(const QByteArray& bytes) {
  std::vector<int> sides;
  if (const auto image = imageFromBytes(bytes)) {
    for (const auto& representation : image->representations()) sides.push_back(representation.side);
  }
  return sides;
}

QColor middleOf(const QPixmap& pixmap) {
  return pixmap.toImage().pixelColor(pixmap.width() / 2, pixmap.height() / 2);
}

TEST(QtImages, EveryCommonFormatIsRead) {
  for (const char* format : {"PNG", "JPEG", "BMP"}) {
    const auto image = imageFromBytes(encoded(40, 20, format));
    ASSERT_TRUE(image) << format;
    EXPECT_EQ(image->pixmap(64, 1.0).size(), QSize(40, 20)) << format << " is not blown up";
    EXPECT_EQ(image->pixmap(20, 1.0).size(), QSize(20, 10)) << format << " keeps its proportions";
  }
}

TEST(QtImages, TiffOfEitherByteOrderIsRead) {
  if (!QImageReader::supportedImageFormats().contains("tiff"))
    GTEST_SKIP() << "the toolkit reads no TIFF here";
  QByteArray bytes = encoded(48, 48, "TIFF", Qt::green);
  ASSERT_TRUE(bytes.startsWith("II*") || bytes.startsWith("MM"));
  const auto image = imageFromBytes(bytes);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->pixmap(48, 1.0).size(), QSize(48, 48));
  EXPECT_EQ(middleOf(image->pixmap(48, 1.0)), QColor(Qt::green));
  // One pixel of one byte, the high bytes first.
  const auto field = [](char tag, char value) {
    return QByteArray(1, '\1') + tag + QByteArray("\0\3\0\0\0\1\0", 7) + value + QByteArray("\0\0", 2);
  };
  const QByteArray other = QByteArray("MM\0*\0\0\0\x0C", 8) + QByteArray("\xFF\0\0\0", 4) +
                           QByteArray("\0\x08", 2) + field(0, 1) + field(1, 1) + field(2, 8) + field(3, 1) +
                           field(6, 1) + QByteArray("\1\x11\0\4\0\0\0\1\0\0\0\x08", 12) + field(0x16, 1) +
                           QByteArray("\1\x17\0\4\0\0\0\1\0\0\0\1", 12) + QByteArray(4, '\0');
  const auto pixel = imageFromBytes(other);
  ASSERT_TRUE(pixel);
  EXPECT_EQ(pixel->pixmap(1, 1.0).size(), QSize(1, 1));
}

TEST(QtImages, APictureThatIsTooLargeIsScaledDown) {
  for (const char* format : {"PNG", "JPEG"}) {
    const auto image = imageFromBytes(encoded(5000, 2500, format));
    ASSERT_TRUE(image) << format;
    EXPECT_EQ(image->pixmap(5000, 1.0).size(), QSize(4096, 2048)) << format;
    EXPECT_EQ(image->pixmap(64, 1.0).size(), QSize(64, 32)) << format;
    EXPECT_GT(middleOf(image->pixmap(64, 1.0)).red(), 250) << format;
  }
}

// Whatever its size is; in a document it is as large as it is.
TEST(QtImages, APictureThatIsTooSmallFillsItsPlaceInTheWindow) {
  QPixmap themed(16, 16);
  themed.fill(Qt::red);
  std::vector<ImagePointer> images = {std::make_shared<const ThemedImage>(QIcon(themed))};
  for (const auto& size : {QSize(16, 16), QSize(16, 8), QSize(5, 16), QSize(900, 300)})
    images.push_back(imageFromBytes(encoded(size.width(), size.height(), "PNG", Qt::red)));
  for (const ImagePointer& image : images) {
    PictureLabel place(128, nullptr);
    place.setImage(image);
    (void)place.grab();
    EXPECT_EQ(std::max(place.sizeShown().width(), place.sizeShown().height()), 128);
  }
  PictureLabel wide(128, nullptr);
  wide.setImage(images[2]);
  (void)wide.grab();
  EXPECT_EQ(wide.sizeShown(), QSizeF(128, 64)) << "keeps its proportions";
}

TEST(QtImages, AnIconFileHasAllItsSizes) {
  const QByteArray file =
      icns(entry("icp4", encoded(16, 16, "PNG")) + entry("ic07", encoded(128, 128, "PNG", Qt::blue)) +
           entry("ic10", encoded(1024, 1024, "PNG", Qt::green)) + entry("TOC ", "xxxxxxxx"));
  EXPECT_EQ(sidesOf(file), (std::vector<int>{16, 128, 1024}));
  const auto image = imageFromBytes(file);
  EXPECT_EQ(middleOf(image->pixmap(16, 1.0)), QColor(Qt::red));
  EXPECT_EQ(middleOf(image->pixmap(128, 1.0)), QColor(Qt::blue));
  EXPECT_EQ(middleOf(image->pixmap(128, 2.0)), QColor(Qt::green)) << "twice the points on a fine display";
  EXPECT_EQ(image->pixmap(128, 2.0).size(), QSize(256, 256));
}

TEST(QtImages, AnOldIconFileWithPackedColorsAndAMaskIsRead) {
  const QByteArray file =
      icns(entry("is32", packedColors('\x10', '\x20', '\x30')) + entry("s8mk", QByteArray(256, '\xFF')));
  const auto image = imageFromBytes(file);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->pixmap(16, 1.0).size(), QSize(16, 16));
  EXPECT_EQ(middleOf(image->pixmap(16, 1.0)), QColor(0x10, 0x20, 0x30));
}

TEST(QtImages, AnIconFileThatIsCutKeepsWhatCameBefore) {
  const QByteArray whole =
      icns(entry("icp4", encoded(16, 16, "PNG")) + entry("ic07", encoded(128, 128, "PNG")));
  EXPECT_EQ(sidesOf(whole.left(whole.size() - 5)), (std::vector<int>{16}));
  EXPECT_EQ(sidesOf(whole.left(10)), (std::vector<int>{}));
}

TEST(QtImages, AnEntryThatCannotBeDecodedIsSkipped) {
  QByteArray broken = encoded(128, 128, "PNG");
  broken.truncate(60);
  const auto image = imageFromBytes(icns(entry("ic07", broken) + entry("icp5", encoded(32, 32, "PNG"))));
  ASSERT_TRUE(image);
  EXPECT_EQ(image->pixmap(128, 1.0).size(), QSize(32, 32));
}

TEST(QtImages, ADrawingIsSharpInEverySize) {
  const auto image = imageFromBytes(
      "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'>"
      "<rect width='8' height='8' fill='#ff0000'/></svg>");
  if (!image) GTEST_SKIP() << "the toolkit has no reader for drawings here";
  EXPECT_EQ(image->pixmap(100, 2.0).size(), QSize(200, 200));
  EXPECT_EQ(middleOf(image->pixmap(100, 1.0)), QColor(Qt::red));
}

TEST(QtImages, ADrawingNeverReachesOutOfItself) {
  const QByteArray start =
      "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink'>";
  EXPECT_TRUE(isHarmlessDrawing(start + "<rect id='a'/><use xlink:href='#a'/></svg>"));
  EXPECT_FALSE(isHarmlessDrawing(start + "<image xlink:href='/etc/passwd'/></svg>"));
  EXPECT_FALSE(isHarmlessDrawing(start + "<image href='http://127.0.0.1/x.png'/></svg>"));
  EXPECT_FALSE(isHarmlessDrawing(start + "<use xlink:href='other.svg#a'/></svg>"));
  EXPECT_FALSE(isHarmlessDrawing("<!DOCTYPE svg [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><svg>&x;</svg>"));
}

TEST(QtImages, ADrawingThatWouldNeverEndIsRefused) {
  QByteArray repeats = "<svg xmlns='http://www.w3.org/2000/svg'><g id='p0'><rect/></g>";
  for (int i = 1; i < 40; ++i) {
    const QByteArray before = QByteArray::number(i - 1);
    repeats += "<g id='p" + QByteArray::number(i) + "'><use href='#p" + before + "'/><use href='#p" + before +
               "'/></g>";
  }
  EXPECT_FALSE(isHarmlessDrawing(repeats + "</svg>")) << "two to the fortieth";
  EXPECT_FALSE(isHarmlessDrawing("<svg><g id='a'><use href='#a'/></g></svg>")) << "itself";
  EXPECT_FALSE(isHarmlessDrawing("<svg>" + QByteArray("<g>").repeated(100'000))) << "depth";
  EXPECT_FALSE(isHarmlessDrawing("<svg>" + QByteArray("<g/>").repeated(100'000) + "</svg>")) << "number";
}

TEST(QtImages, WhatIsNoPictureIsNull) {
  for (const QByteArray& bytes :
       {QByteArray(), QByteArray("hello"), QByteArray("icns"), QByteArray("\x89PNG\r\n\x1a\n", 8),
        QByteArray("<svg"), QByteArray("/* XPM */ static char *x[] = {\"1 1 1 1\",\"a c red\",\"a\"};"),
        QByteArray("P6 1 1 255 aaa")}) {
    EXPECT_EQ(imageFromBytes(bytes), nullptr) << bytes.toStdString();
  }
}

TEST(QtImages, APictureThatClaimsToBeHugeIsNull) {
  QByteArray png = encoded(16, 16, "PNG");
  png.replace(16, 8, number(60'000) + number(60'000));
  EXPECT_EQ(imageFromBytes(png), nullptr);
  QByteArray bmp = encoded(16, 16, "BMP");
  bmp.replace(18, 8, QByteArray("\x00\x00\x01\x00\x00\x00\x01\x00", 8));
  EXPECT_EQ(imageFromBytes(bmp), nullptr);
}

TEST(QtImages, DamagedPicturesDoNoHarm) {
  std::mt19937 random(3);
  const QByteArray files[] = {
      icns(entry("is32", packedColors(1, 2, 3)) + entry("s8mk", QByteArray(256, '\xFF')) +
           entry("icp5", encoded(32, 32, "PNG"))),
      encoded(32, 32, "PNG"), encoded(32, 32, "JPEG"), encoded(32, 32, "BMP")};
  for (int round = 0; round < 800; ++round) {
    QByteArray damaged = files[round % 4];
    for (int i = 0; i < 6; ++i) {
      damaged[static_cast<qsizetype>(random() % static_cast<unsigned>(damaged.size()))] =
          static_cast<char>(random());
    }
    const auto image = imageFromBytes(damaged);
    if (image) {
      ASSERT_LE(image->pixmap(64, 1.0).width(), 64);
    }
  }
}

class QtImagesFiles : public testing::Test {
 protected:
  void write(const std::string& name, const QByteArray& bytes) {
    std::ofstream(folder_ / name, std::ios::binary) << bytes.toStdString();
  }
  TemporaryFolder folder_;
  QtImages images_{folder_.path().string()};
};

TEST_F(QtImagesFiles, AFileOfAnyNameIsRead) {
  write("Ic\xF6n \n%.png", encoded(8, 8, "PNG"));
  EXPECT_NE(images_.imageFromFile(folder_ / "Ic\xF6n \n%.png"), nullptr);
  EXPECT_EQ(images_.imageFromFile(folder_ / "missing.png"), nullptr);
  EXPECT_EQ(images_.imageFromFile(folder_.path().string()), nullptr);
}

TEST_F(QtImagesFiles, APipeOrDeviceIsNotWaitedFor) {
  ::mkfifo((folder_ / "pipe.png").c_str(), 0600);
  EXPECT_EQ(images_.imageFromFile(folder_ / "pipe.png"), nullptr);
  EXPECT_EQ(images_.imageFromFile("/dev/zero"), nullptr);
}

TEST_F(QtImagesFiles, ANamedPictureHasTheSizesThatLieThere) {
  write("Mark.png", encoded(24, 24, "PNG", Qt::red));
  write("Mark@2x.png", encoded(48, 48, "PNG", Qt::blue));
  const ImagePointer image = images_.imageNamed("Mark");
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(middleOf(qtImage(image)->pixmap(24, 1.0)), QColor(Qt::red));
  EXPECT_EQ(middleOf(qtImage(image)->pixmap(24, 2.0)), QColor(Qt::blue));
  EXPECT_EQ(images_.imageNamed("Other"), nullptr);
  EXPECT_EQ(images_.imageNamed("../Mark"), nullptr);
  EXPECT_EQ(images_.imageNamed(""), nullptr);
}

TEST_F(QtImagesFiles, TheInstallersOwnPicturesAreThere) {
  QtImages own(KT_SOURCE_DIR "/Resources");
  for (const auto& [name, side] :
       {std::pair{"AlertStopIcon", 64}, {"Checkmark", 24}, {"HalvornInstaller", 128}}) {
    const ImagePointer image = own.imageNamed(name);
    ASSERT_NE(image, nullptr) << name;
    EXPECT_EQ(qtImage(image)->pixmap(side, 1.0).size(), QSize(side, side)) << name;
    EXPECT_EQ(qtImage(image)->pixmap(side, 2.0).size(), QSize(side * 2, side * 2)) << name;
    const auto* drawn = dynamic_cast<const EncodedImage*>(image.get());
    ASSERT_NE(drawn, nullptr) << name;
    EXPECT_GE(drawn->representations().back().side, side * 3) << name << " is sharp on the finest displays";
  }
}

TEST_F(QtImagesFiles, TheThemesIconIsFoundByAFoldersOwnWish) {
  ::mkdir((folder_ / "Things").c_str(), 0755);
  EXPECT_EQ(images_.iconForFile(folder_ / "missing"), nullptr);
  // A theme of the test's own, with one icon.
  ::mkdir((folder_ / "house").c_str(), 0755);
  ::mkdir((folder_ / "house/16").c_str(), 0755);
  std::ofstream(folder_ / "house/index.theme") << "[Icon Theme]\nName=house\nDirectories=16\n[16]\nSize=16\n";
  write("house/16/box.png", encoded(16, 16, "PNG", Qt::blue));
  QIcon::setThemeSearchPaths({QString::fromStdString(folder_.path().string())});
  QIcon::setThemeName(QStringLiteral("house"));
  EXPECT_EQ(images_.iconForFile(folder_ / "Things"), nullptr) << "the theme has no icon of a folder";
  std::ofstream(folder_ / "Things/.directory") << "[Other]\nIcon=x\n[Desktop Entry]\nIcon=box\n";
  const ImagePointer image = images_.iconForFile(folder_ / "Things");
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(middleOf(qtImage(image)->pixmap(16, 1.0)), QColor(Qt::blue));
  std::ofstream(folder_ / "Things/.directory")
      << "[Desktop Entry]\nIcon=" << (folder_ / "house/16/box.png") << "\n";
  EXPECT_EQ(images_.iconForFile(folder_ / "Things"), nullptr) << "a path could lead anywhere";
}

TEST_F(QtImagesFiles, ABundleThatHasNoPictureShowsThatOfSomeApplication) {
  QIcon::setThemeSearchPaths({});
  QIcon::setThemeName(QStringLiteral("no such theme"));
  QtImages own(KT_SOURCE_DIR "/Resources");
  ::mkdir((folder_ / "Bare.app").c_str(), 0755);
  ::mkdir((folder_ / "Folder").c_str(), 0755);
  const ImagePointer icon = own.iconForFile(folder_ / "Bare.app");
  ASSERT_NE(icon, nullptr);
  EXPECT_EQ(qtImage(icon)->pixmap(128, 2.0).size(), QSize(256, 256));
  EXPECT_EQ(own.iconForFile(folder_ / "Folder"), nullptr);
}

TEST_F(QtImagesFiles, TheIconOfABundleIsThePictureItNames) {
  const auto bundle = [&](const std::string& name, const std::string& iconFile) {
    const std::filesystem::path contents = folder_.path() / name / "Contents";
    std::filesystem::create_directories(contents / "Resources");
    std::ofstream(contents / "Info.plist")
        << "<plist><dict><key>CFBundleIconFile</key><string>" << iconFile << "</string></dict></plist>";
    return name;
  };
  write(bundle("Red.app", "Red") + "/Contents/Resources/Red.png", encoded(16, 16, "PNG", Qt::red));
  const ImagePointer red = images_.iconForFile(folder_ / "Red.app");
  ASSERT_NE(red, nullptr);
  EXPECT_EQ(middleOf(qtImage(red)->pixmap(16, 1.0)), QColor(Qt::red));
  // Neither a name that leads out of the bundle, nor a folder that is none.
  write("Outside.png", encoded(16, 16, "PNG", Qt::red));
  for (const std::string& name : {bundle("Out.app", "../../../Outside.png"), bundle("Plain", "Red")}) {
    write(name + "/Contents/Resources/Red.png", encoded(16, 16, "PNG", Qt::red));
    const ImagePointer icon = images_.iconForFile(folder_ / name);
    EXPECT_TRUE(!icon || middleOf(qtImage(icon)->pixmap(16, 1.0)) != QColor(Qt::red)) << name;
  }
}

}  // namespace
}  // namespace halvorn
