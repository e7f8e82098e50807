// Rich text into a document of the toolkit.

#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QUrl>
#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "Platform/window/linux/pictures/ImageFormats.h"
#include "Platform/window/linux/readme/DocumentLimits.h"
#include "Platform/window/linux/readme/RtfDocument.h"

namespace halvorn {
namespace {

constexpr double kPixelsPerTwip = 96.0 / 1440.0;
constexpr int kWidestPicture = 1200;  // pixels

double pixels(int twips) { return twips * kPixelsPerTwip; }

class Renderer {
 public:
  Renderer(const RtfDocument& read, QTextDocument& document)
      : read_(read), document_(document), cursor_(&document) {}

  void render() {
    cursor_.beginEditBlock();
    for (std::size_t i = 0; i < read_.blocks.size();) {
      if (const auto* paragraph = std::get_if<RtfParagraph>(&read_.blocks[i])) {
        addParagraph(*paragraph);
        ++i;
      } else {
        i = addTable(i);
      }
    }
    cursor_.endEditBlock();
  }

 private:
  void startBlock(const RtfParagraph& paragraph) {
    const QTextBlockFormat format = blockFormat(paragraph);
    if (blockIsFresh_) {
      cursor_.setBlockFormat(format);
    } else {
      cursor_.insertBlock(format, QTextCharFormat());
    }
    blockIsFresh_ = false;
  }

  void addParagraph(const RtfParagraph& paragraph) {
    startBlock(paragraph);
    // A list's marks and empty lines are as large as the text.
    if (!paragraph.runs.empty()) cursor_.setBlockCharFormat(characterFormat(paragraph.runs.front().format));
    if (!paragraph.listMarker.isEmpty()) {
      addToList(paragraph);
    } else if (!paragraph.runs.empty()) {
      lists_.clear();  // another text ends the lists before it, not an empty line
    }
    for (const RtfRun& run : paragraph.runs) addRun(run);
  }

  void addToList(const RtfParagraph& paragraph) {
    const QTextListFormat::Style style = listStyle(paragraph.listMarker);
    const int level = paragraph.format.listLevel;
    const auto key = std::tuple(paragraph.format.list, level, static_cast<int>(style));
    const auto known = lists_.find(key);
    if (known != lists_.end() && !startsAtOne(paragraph.listMarker)) {
      known->second->add(cursor_.block());
    } else {
      QTextListFormat format;
      format.setStyle(style);
      format.setIndent(level + 1);
      if (paragraph.listMarker.endsWith(u')')) format.setNumberSuffix(QStringLiteral(")"));
      lists_.insert_or_assign(key, cursor_.createList(format));
    }
    // A list inside another one starts anew at the next item of the outer one.
    std::erase_if(lists_, [level](const auto& entry) { return std::get<1>(entry.first) > level; });
  }

  static bool startsAtOne(const QString& marker) {
    const qsizetype one = marker.indexOf(u'1');
    return one >= 0 && one < 2 && (one + 1 == marker.size() || !marker.at(one + 1).isDigit());
  }

  static QTextListFormat::Style listStyle(const QString& marker) {
    for (const QChar character : marker) {
      if (character.isDigit()) return QTextListFormat::ListDecimal;
      if (character.isLetter()) {
        return character.isUpper() ? QTextListFormat::ListUpperAlpha : QTextListFormat::ListLowerAlpha;
      }
    }
    if (marker.startsWith(u'\u25E6') || marker.startsWith(u'o')) return QTextListFormat::ListCircle;
    return marker.startsWith(u'\u25AA') ? QTextListFormat::ListSquare : QTextListFormat::ListDisc;
  }

  static QTextBlockFormat blockFormat(const RtfParagraph& paragraph) {
    using Alignment = RtfParagraphFormat::Alignment;
    const RtfParagraphFormat& from = paragraph.format;
    QTextBlockFormat format;
    switch (from.alignment) {
      case Alignment::Leading:
        break;
      case Alignment::Left:
        format.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
        break;
      case Alignment::Right:
        format.setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
        break;
      case Alignment::Center:
        format.setAlignment(Qt::AlignHCenter);
        break;
      case Alignment::Justify:
        format.setAlignment(Qt::AlignJustify);
        break;
    }
    if (from.rightToLeft) format.setLayoutDirection(Qt::RightToLeft);
    format.setTopMargin(pixels(from.spaceBefore));
    format.setBottomMargin(pixels(from.spaceAfter));
    if (paragraph.listMarker.isEmpty()) {  // a list has its own indent
      format.setLeftMargin(std::max(0.0, pixels(from.leftIndent)));
      format.setRightMargin(std::max(0.0, pixels(from.rightIndent)));
      format.setTextIndent(std::max(pixels(from.firstIndent), -format.leftMargin()));
    }
    return format;
  }

  void addRun(const RtfRun& run) {
    if (run.picture >= 0) {
      addPicture(read_.pictures[static_cast<std::size_t>(run.picture)], run.picture);
      return;
    }
    QTextCharFormat format = characterFormat(run.format);
    if (!run.link.isEmpty()) {
      format.setAnchor(true);
      format.setAnchorHref(run.link);
      format.setFontUnderline(true);
      format.setForeground(QColor(0x1A, 0x5F, 0xB4));
    }
    QString text = run.text;
    text.remove(QChar(0xFFFC));  // would stand for a picture that is not there
    cursor_.insertText(text, format);
  }

  [[nodiscard]] QTextCharFormat characterFormat(const RtfCharacterFormat& from) const {
    QTextCharFormat format;
    if (from.font >= 0) {
      const RtfFont& font = read_.fonts[static_cast<std::size_t>(from.font)];
      QStringList families{font.name};
      if (font.family == RtfFont::Family::Fixed) families << QStringLiteral("monospace");
      if (font.family == RtfFont::Family::Serif) families << QStringLiteral("serif");
      if (font.family == RtfFont::Family::Sans) families << QStringLiteral("sans-serif");
      format.setFontFamilies(families);
      format.setFontFixedPitch(font.family == RtfFont::Family::Fixed);
    }
    format.setFontPointSize(from.halfPoints / 2.0);
    if (from.bold) format.setFontWeight(QFont::Bold);
    if (from.italic) format.setFontItalic(true);
    if (from.underline) format.setFontUnderline(true);
    if (from.strike) format.setFontStrikeOut(true);
    if (from.capitals) format.setFontCapitalization(QFont::AllUppercase);
    if (const auto color = colorAt(from.color)) format.setForeground(*color);
    if (const auto color = colorAt(from.background)) format.setBackground(*color);
    if (from.position == RtfCharacterFormat::Position::Super) {
      format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    } else if (from.position == RtfCharacterFormat::Position::Sub) {
      format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
    }
    return format;
  }

  [[nodiscard]] std::optional<QColor> colorAt(int index) const {
    const auto place = static_cast<std::size_t>(index);
    return index > 0 && place < read_.colors.size() ? read_.colors[place] : std::nullopt;
  }

  void addPicture(const RtfPicture& picture, int number) {
    if (pixelsLeft_ <= 0) return;
    const auto image = imageFromBytes(picture.bytes);
    if (!image) return;
    const long long side = image->representations().back().side;
    pixelsLeft_ -= side * side;
    const QPixmap drawn = image->pixmap(kWidestPicture, 1.0);
    const QString name = QStringLiteral("rtf-picture:%1").arg(number);
    document_.addResource(QTextDocument::ImageResource, QUrl(name), drawn);
    QTextImageFormat format;
    format.setName(name);
    if (picture.width > 0 && picture.height > 0) {
      const double shrink = std::min(1.0, kWidestPicture / std::max(pixels(picture.width), 1.0));
      format.setWidth(pixels(picture.width) * shrink);
      format.setHeight(pixels(picture.height) * shrink);
    }
    cursor_.insertImage(format);
  }

  // The rows that stand in a row; answers where they end.
  std::size_t addTable(std::size_t first) {
    std::size_t last = first;
    std::size_t columns = 1;
    while (last < read_.blocks.size() && std::holds_alternative<RtfTableRow>(read_.blocks[last])) {
      columns = std::max(columns, std::get<RtfTableRow>(read_.blocks[last]).cells.size());
      ++last;
    }
    lists_.clear();
    QTextTable* table = cursor_.insertTable(static_cast<int>(last - first), static_cast<int>(columns),
                                            tableFormat(std::get<RtfTableRow>(read_.blocks[first]), columns));
    for (std::size_t row = first; row < last; ++row) {
      const auto& cells = std::get<RtfTableRow>(read_.blocks[row]).cells;
      for (std::size_t column = 0; column < cells.size(); ++column) {
        cursor_ =
            table->cellAt(static_cast<int>(row - first), static_cast<int>(column)).firstCursorPosition();
        blockIsFresh_ = true;
        for (const RtfParagraph& paragraph : cells[column]) addParagraph(paragraph);
        lists_.clear();
      }
    }
    cursor_ = QTextCursor(&document_);
    cursor_.movePosition(QTextCursor::End);
    blockIsFresh_ = true;  // the toolkit keeps an empty paragraph after a table
    return last;
  }

  static QTextTableFormat tableFormat(const RtfTableRow& row, std::size_t columns) {
    QTextTableFormat format;
    format.setBorder(1);
    format.setBorderCollapse(true);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderBrush(QColor(0xC9, 0xC9, 0xCF));
    format.setCellPadding(4);
    format.setCellSpacing(0);
    if (row.edges.size() == columns && row.edges.back() > 0) {
      QList<QTextLength> widths;
      int left = 0;
      for (const int edge : row.edges) {
        widths << QTextLength(QTextLength::PercentageLength,
                              100.0 * std::max(edge - left, 1) / row.edges.back());
        left = edge;
      }
      format.setColumnWidthConstraints(widths);
      format.setWidth(QTextLength(QTextLength::FixedLength, std::min(pixels(row.edges.back()), 900.0)));
    }
    return format;
  }

  const RtfDocument& read_;
  QTextDocument& document_;
  QTextCursor cursor_;
  std::map<std::tuple<int, int, int>, QTextList*> lists_;  // by number, level and style
  bool blockIsFresh_ = true;
  long long pixelsLeft_ = 8'000'000;  // what the pictures of one document may cost to decode
};

// Calls with each paragraph in its order, also those in tables.
template <typename Action>
void forEachParagraph(const RtfDocument& read, Action action) {
  for (const auto& block : read.blocks) {
    if (const auto* paragraph = std::get_if<RtfParagraph>(&block)) action(*paragraph);
    const auto* row = std::get_if<RtfTableRow>(&block);
    if (row == nullptr) continue;
    for (const auto& cell : row->cells) std::for_each(cell.begin(), cell.end(), action);
  }
}

}  // namespace

void renderRtf(const RtfDocument& read, QTextDocument& document) { Renderer(read, document).render(); }

bool isModestRtf(const RtfDocument& read) {
  std::size_t runs = 0;
  std::size_t paragraphs = 0;
  std::size_t items = 0;
  forEachParagraph(read, [&](const RtfParagraph& paragraph) {
    ++paragraphs;
    runs += paragraph.runs.size();
    items += paragraph.listMarker.isEmpty() ? 0 : 1;
  });
  // Rows that follow each other are one table, as wide as the widest of them.
  std::size_t cells = 0;
  std::size_t rows = 0;
  std::size_t columns = 0;
  for (const auto& block : read.blocks) {
    if (const auto* row = std::get_if<RtfTableRow>(&block)) {
      ++rows;
      columns = std::max(columns, row->cells.size());
      continue;
    }
    cells += std::exchange(rows, 0) * std::exchange(columns, 0);
  }
  cells += rows * columns;
  return runs <= DocumentLimits::kMostRuns && cells <= DocumentLimits::kMostCells &&
         items <= DocumentLimits::kMostListItems && paragraphs <= DocumentLimits::kMostParagraphs;
}

QString textOfRtf(const RtfDocument& read) {
  QString text;
  const auto add = [&text](const RtfParagraph& paragraph) {
    if (!paragraph.listMarker.isEmpty()) text += paragraph.listMarker + u' ';
    for (const RtfRun& run : paragraph.runs) text += run.text;
    text += u'\n';
  };
  forEachParagraph(read, add);
  text.chop(1);
  return text.replace(QChar::LineSeparator, u'\n');
}

}  // namespace halvorn
