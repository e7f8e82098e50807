#include "Platform/window/linux/pictures/QtImages.h"

#include <QMimeDatabase>
#include <QMimeType>
#include <QStringList>
#include <filesystem>

#include "Core/Paths.h"
#include "Platform/bundles/linux/BundleIcon.h"
#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/files/posix/BoundedFile.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/pictures/ImageFormats.h"
#include "Platform/window/linux/pictures/ImageLimits.h"
#include "Platform/window/linux/pictures/QtImage.h"

namespace halvorn {
namespace {

constexpr std::size_t kLargestDirectoryFile = 64UL * 1024;

// The value of Icon= in the [Desktop Entry] group; empty when there is none.
QString iconOfDirectoryFile(const QByteArray& bytes) {
  bool inGroup = false;
  for (const QByteArray& line : bytes.split('\n')) {
    const QByteArray trimmed = line.trimmed();
    if (trimmed.startsWith('[')) {
      inGroup = trimmed == "[Desktop Entry]";
    } else if (inGroup && trimmed.startsWith("Icon=")) {
      return QString::fromUtf8(trimmed.mid(5));
    }
  }
  return {};
}

QStringList iconNamesForFolder(const Text& path) {
  QStringList names;
  if (const auto bytes =
          readRegularFile(Paths::appending(path, ".directory").bytes(), kLargestDirectoryFile)) {
    const QString name = iconOfDirectoryFile(QByteArray::fromStdString(*bytes));
    if (!name.isEmpty() && !name.contains(u'/')) names << name;  // a path could lead anywhere
  }
  if (Paths::extension(path) == "app") names << QStringLiteral("application-x-executable");
  return names << QStringLiteral("folder") << QStringLiteral("inode-directory");
}

}  // namespace

ImagePointer QtImages::imageFromFile(const Text& path) {
  const auto bytes = readRegularFile(path.bytes(), kLargestImageFile);
  return bytes ? imageFromBytes(QByteArray::fromStdString(*bytes)) : nullptr;
}

ImagePointer QtImages::imageNamed(const Text& name) {
  if (name.isEmpty() || name.find(u'/') != Text::npos) return nullptr;
  std::vector<EncodedImage::Representation> sizes;
  for (const char* ending : {".png", "@2x.png", "@3x.png", ".icns", ".svg"}) {
    const Text path = Paths::appending(resourcesFolder_, name + ending);
    const auto bytes = readRegularFile(path.bytes(), kLargestImageFile);
    if (!bytes) continue;
    if (const auto image = imageFromBytes(QByteArray::fromStdString(*bytes))) {
      const auto found = image->representations();
      sizes.insert(sizes.end(), found.begin(), found.end());
    }
  }
  return sizes.empty() ? nullptr : std::make_shared<const EncodedImage>(std::move(sizes));
}

ImagePointer QtImages::iconOfBundle(const Text& path) {
  if (Paths::extension(path) != "app") return nullptr;
  const OptionalText file = bundleIconFile(LinuxBundles(path, {}), path);
  return file ? imageFromFile(*file) : nullptr;
}

ImagePointer QtImages::iconForFile(const Text& path) {
  std::error_code error;
  const auto status = std::filesystem::status(std::filesystem::path(path.bytes()), error);
  if (error || !std::filesystem::exists(status)) return nullptr;
  QStringList names;
  if (std::filesystem::is_directory(status)) {
    if (ImagePointer own = iconOfBundle(path)) return own;
    names = iconNamesForFolder(path);
  } else {
    const QMimeType type = QMimeDatabase().mimeTypeForFile(toQString(path), QMimeDatabase::MatchExtension);
    names << type.iconName() << type.genericIconName();
  }
  for (const QString& name : names) {
    if (const QIcon icon = QIcon::fromTheme(name); !icon.isNull()) {
      return std::make_shared<const ThemedImage>(icon);
    }
  }
  return Paths::extension(path) == "app" ? imageNamed("GenericApplication") : nullptr;
}

}  // namespace halvorn
