#include "Platform/window/linux/readme/ReadMeDocument.h"

#include <QImage>
#include <QStringDecoder>
#include <QTextBlock>
#include <QTextCursor>
#include <QUrl>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Core/ForPeople.h"
#include "Core/Paths.h"
#include "Platform/files/posix/BoundedFile.h"
#include "Platform/window/linux/QtText.h"
#include "Platform/window/linux/pictures/ImageFormats.h"
#include "Platform/window/linux/readme/DocumentLimits.h"
#include "Platform/window/linux/readme/MarkupGuard.h"
#include "Platform/window/linux/readme/RtfDocument.h"
#include "Platform/window/linux/readme/TextGuess.h"

namespace halvorn {
namespace {

// More is not read. Of rich text most may be pictures, in two letters a byte.
constexpr std::size_t kMostOfRichText = 16UL * 1024 * 1024;
constexpr std::size_t kMostOfText = 1024UL * 1024;
constexpr qsizetype kLargestHtml = 512LL * 1024;
constexpr qsizetype kLargestMarkdown = 128LL * 1024;
constexpr int kWidestPicture = 1200;  // pixels
constexpr qsizetype kMostPictureBytes = 4LL * 1024 * 1024;
constexpr long long kMostPixels = 8'000'000;

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
      const auto image = imageFromBytes(QByteArray::fromBase64(bytes));
      const long long side = image ? image->representations().back().side : 0;
      pixels_ += side * side;
      if (image && pixels_ < kMostPixels) return image->pixmap(kWidestPicture, 1.0);
    }
    QImage nothing(1, 1, QImage::Format_ARGB32_Premultiplied);
    nothing.fill(Qt::transparent);
    return nothing;
  }

  qsizetype pictureBytes_ = 0;
  long long pixels_ = 0;
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

// What could be read of a file.
struct Beginning {
  std::string bytes;
  bool isWhole = true;
};

std::optional<Beginning> beginningOf(const Text& file, std::size_t most) {
  // One byte more tells that there is more.
  auto bytes = readStartOfRegularFile(file.bytes(), most + 1);
  if (!bytes) return std::nullopt;
  Beginning beginning{std::move(*bytes)};
  if (beginning.bytes.size() <= most) return beginning;
  beginning.isWhole = false;
  beginning.bytes.resize(most);
  // No half of a character at the end, which would speak against the encoding of all of them. Where there are zeros,
  // characters have two bytes, and the number of bytes is even.
  if (beginning.bytes.find('\0') != std::string::npos) return beginning;
  const auto isInside = [](char byte) { return (byte & '\xC0') == '\x80'; };
  while (beginning.bytes.size() + 4 > most && isInside(beginning.bytes.back())) beginning.bytes.pop_back();
  beginning.bytes.pop_back();
  return beginning;
}

// The encoding that the document names, else a guess.
QString decodeHtml(const QByteArray& bytes) {
  QStringDecoder named = QStringDecoder::decoderForHtml(bytes);
  if (named.isValid() && bytes.left(1024).toLower().contains("charset")) return named.decode(bytes);
  return decodeGuessing(bytes);
}

// What the reading of one file works with.
struct Reading {
  const QByteArray& bytes;
  const ReadingBudget& budget;
  bool isWhole;
};

using DocumentPointer = std::unique_ptr<QTextDocument>;

// A link is told by more than its color, whatever the document says.
void underlineLinks(QTextDocument& document, const ReadingBudget& budget) {
  QTextCharFormat underlined;
  underlined.setFontUnderline(true);
  QTextCursor cursor(&document);
  for (QTextBlock block = document.begin(); block.isValid() && !budget.isSpent(); block = block.next()) {
    std::vector<QTextFragment> links;  // runs with the same format become one run
    for (auto run = block.begin(); !run.atEnd(); ++run) {
      const QTextCharFormat format = run.fragment().charFormat();
      if (!format.anchorHref().isEmpty() && !format.fontUnderline()) links.push_back(run.fragment());
    }
    for (const QTextFragment& link : links) {
      cursor.setPosition(link.position());
      cursor.setPosition(link.position() + link.length(), QTextCursor::KeepAnchor);
      cursor.mergeCharFormat(underlined);
    }
  }
}

// The document, when the toolkit can bear it.
DocumentPointer ifBearable(DocumentPointer document, const ReadingBudget& budget) {
  if (budget.isSpent() || !isWithinLimits(*document)) return nullptr;
  underlineLinks(*document, budget);
  return document;
}

ReadMeDocument plainDocument(const QString& text, const Reading& reading) {
  const LimitedText limited = limitedText(text);
  auto document = std::make_unique<ClosedDocument>();
  document->setPlainText(limited.text);
  return {std::move(document), reading.isWhole && limited.isWhole};
}

ReadMeDocument richDocument(const Reading& reading) {
  const auto read = readRtf(reading.bytes, reading.budget);
  if (!read) return plainDocument({}, reading);
  const Reading whatWasRead{reading.bytes, reading.budget, reading.isWhole && read->isWhole};
  if (isModestRtf(*read) && !reading.budget.isSpent()) {
    auto document = std::make_unique<ClosedDocument>();
    renderRtf(*read, *document);
    if (auto bearable = ifBearable(std::move(document), reading.budget))
      return {std::move(bearable), whatWasRead.isWhole};
  }
  return plainDocument(textOfRtf(*read), whatWasRead);
}

ReadMeDocument htmlDocument(const Reading& reading) {
  const QString text = decodeHtml(reading.bytes);
  if (reading.isWhole && reading.bytes.size() <= kLargestHtml && isModestHtml(text) && isShallowHtml(text)) {
    auto document = std::make_unique<ClosedDocument>();
    document->setHtml(text);
    if (auto bearable = ifBearable(std::move(document), reading.budget)) return {std::move(bearable), true};
  }
  return plainDocument(textOfHtml(text), reading);
}

ReadMeDocument markdownDocument(const Reading& reading) {
  const QString text = decodeGuessing(reading.bytes);
  if (reading.isWhole && reading.bytes.size() <= kLargestMarkdown && isModestMarkdown(text) &&
      isShallowMarkdown(text)) {
    auto document = std::make_unique<ClosedDocument>();
    document->setMarkdown(text, QTextDocument::MarkdownFeatures(QTextDocument::MarkdownDialectGitHub |
                                                                QTextDocument::MarkdownNoHTML));
    if (auto bearable = ifBearable(std::move(document), reading.budget)) return {std::move(bearable), true};
  }
  return plainDocument(text, reading);
}

ReadMeDocument readDocument(const Text& path, const ReadingBudget& budget) {
  const bool folder = Paths::extension(path) == "rtfd";
  const Text file = folder ? Paths::appending(path, "TXT.rtf") : path;
  auto beginning = beginningOf(file, kMostOfText);
  if (!beginning) return {};
  const Kind kind = kindOf(file, QByteArray::fromStdString(beginning->bytes.substr(0, 512)));
  if (kind == Kind::Rich && !beginning->isWhole) beginning = beginningOf(file, kMostOfRichText);
  if (!beginning) return {};
  const QByteArray bytes =
      QByteArray::fromRawData(beginning->bytes.data(), static_cast<qsizetype>(beginning->bytes.size()));
  const Reading reading{bytes, budget, beginning->isWhole};
  switch (kind) {
    case Kind::Rich:
      return richDocument(reading);
    case Kind::Html:
      return htmlDocument(reading);
    case Kind::Markdown:
      return markdownDocument(reading);
    case Kind::Plain:
      break;
  }
  return plainDocument(decodeGuessing(bytes), reading);
}

}  // namespace

ReadMeDocument readMeDocument(const Text& path, const ReadingBudget& budget) {
  ReadMeDocument read = readDocument(path, budget);
  read.fileName = forDisplay(undisguised(Paths::lastComponent(path)));
  return read;
}

}  // namespace halvorn
