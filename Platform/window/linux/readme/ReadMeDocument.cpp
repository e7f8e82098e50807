#include "Platform/window/linux/readme/ReadMeDocument.h"

#include <QImage>
#include <QStringDecoder>
#include <QUrl>

#include "Core/Paths.h"
#include "Platform/files/posix/BoundedFile.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/pictures/ImageFormats.h"
#include "Platform/window/linux/readme/MarkupGuard.h"
#include "Platform/window/linux/readme/RtfDocument.h"
#include "Platform/window/linux/readme/TextGuess.h"

namespace halvorn {
namespace {

constexpr std::size_t kLargestFile = 16UL * 1024 * 1024;
constexpr qsizetype kLargestText = 8LL * 1024 * 1024;
// The toolkit takes about a second for that much.
constexpr qsizetype kLargestHtml = 1024LL * 1024;
constexpr qsizetype kLargestMarkdown = 256LL * 1024;
constexpr int kWidestPicture = 1200;  // pixels
constexpr qsizetype kMostPictureBytes = 4LL * 1024 * 1024;

// A document that asks nobody for what it names. The toolkit's own would read files and style sheets.
class ClosedDocument : public QTextDocument {
 public:
  ClosedDocument() { setUndoRedoEnabled(false); }

 protected:
  QVariant loadResource(int type, const QUrl& name) override {
    if (type != ImageResource) return {};
    QVariant picture = pictureInside(name);
    addResource(type, name, picture);
    return picture;
  }

 private:
  // A picture that stands in the address itself (data:image/png;base64,...); any other is an empty spot.
  QVariant pictureInside(const QUrl& name) {
    const QByteArray address = name.toEncoded();
    const qsizetype comma = address.indexOf(',');
    pictureBytes_ += address.size();
    if (address.startsWith("data:image/") && comma > 0 && address.left(comma).endsWith(";base64") &&
        pictureBytes_ < kMostPictureBytes) {
      const QByteArray bytes = QByteArray::fromPercentEncoding(address.mid(comma + 1));
      if (const auto image = imageFromBytes(QByteArray::fromBase64(bytes))) {
        return image->pixmap(kWidestPicture, 1.0);
      }
    }
    QImage nothing(1, 1, QImage::Format_ARGB32_Premultiplied);
    nothing.fill(Qt::transparent);
    return nothing;
  }

  qsizetype pictureBytes_ = 0;
};

enum class Kind { Plain, Rich, Html, Markdown };

Kind kindOf(const Text& path, const QByteArray& bytes) {
  if (bytes.startsWith("{\\rtf")) return Kind::Rich;
  const QString extension = toQString(Paths::extension(path)).toLower();
  const QByteArray start = bytes.left(512).trimmed().toLower();
  if (extension == u"html" || extension == u"htm" || extension == u"xhtml" ||
      start.startsWith("<!doctype html") || start.startsWith("<html")) {
    return Kind::Html;
  }
  return extension == u"md" || extension == u"markdown" ? Kind::Markdown : Kind::Plain;
}

// The encoding that the document names, else a guess.
QString decodeHtml(const QByteArray& bytes) {
  QStringDecoder named = QStringDecoder::decoderForHtml(bytes);
  if (named.isValid() && bytes.left(1024).toLower().contains("charset")) return named.decode(bytes);
  return decodeGuessing(bytes);
}

void fill(QTextDocument& document, Kind kind, const QByteArray& bytes) {
  if (kind == Kind::Rich) {
    if (const auto read = readRtf(bytes)) renderRtf(*read, document);
    return;
  }
  const QString text = kind == Kind::Html ? decodeHtml(bytes) : decodeGuessing(bytes);
  if (kind == Kind::Html && bytes.size() <= kLargestHtml && isShallowHtml(text)) {
    document.setHtml(text);
  } else if (kind == Kind::Html) {
    document.setPlainText(textOfHtml(text));
  } else if (kind == Kind::Markdown && bytes.size() <= kLargestMarkdown && isShallowMarkdown(text)) {
    document.setMarkdown(text, QTextDocument::MarkdownFeatures(QTextDocument::MarkdownDialectGitHub |
                                                               QTextDocument::MarkdownNoHTML));
  } else {
    document.setPlainText(text);
  }
}

}  // namespace

std::unique_ptr<QTextDocument> readMeDocument(const Text& path) {
  const bool folder = Paths::extension(path) == "rtfd";
  const Text file = folder ? Paths::appending(path, "TXT.rtf") : path;
  const auto read = readRegularFile(file.bytes(), kLargestFile);
  if (!read) return nullptr;
  const QByteArray bytes = QByteArray::fromStdString(*read);
  const Kind kind = kindOf(file, bytes);
  if (kind != Kind::Rich && bytes.size() > kLargestText) return nullptr;
  auto document = std::make_unique<ClosedDocument>();
  fill(*document, kind, bytes);
  return document;
}

}  // namespace halvorn
