#include "Platform/window/linux/readme/DocumentLimits.h"

#include <QFont>
#include <QStringView>
#include <QTextBlock>
#include <QTextFrame>
#include <QTextTable>
#include <algorithm>
#include <set>
#include <tuple>

namespace halvorn {
namespace {

using Limits = DocumentLimits;

bool isLineEnd(QChar unit) { return unit == u'\n' || unit == u'\r' || unit == QChar::ParagraphSeparator; }

// Whether a paragraph may end before this place: not inside a character or before its marks.
bool mayBreakBefore(QStringView line, qsizetype at) {
  const QChar unit = line.at(at);
  return !unit.isLowSurrogate() && !unit.isMark() && unit != u'\u200D' && line.at(at - 1) != u'\u200D';
}

// How much of a line that is too long becomes the next paragraph.
qsizetype pieceOf(QStringView line) {
  if (line.size() <= Limits::kLongestParagraph) return line.size();
  const qsizetype space = line.first(Limits::kLongestParagraph).lastIndexOf(u' ');
  if (space > Limits::kLongestParagraph / 2) return space + 1;
  qsizetype end = Limits::kLongestParagraph;
  while (end > Limits::kLongestParagraph / 2 && !mayBreakBefore(line, end)) --end;
  return end;
}

// The combinations that fonts have to be loaded for.
bool hasFewFonts(const QTextDocument& document) {
  std::set<std::tuple<QStringList, double, int, int, bool>> fonts;
  for (const QTextFormat& format : document.allFormats()) {
    if (!format.isCharFormat()) continue;
    const QTextCharFormat character = format.toCharFormat();
    const double points = character.fontPointSize();
    const int pixels = character.intProperty(QTextFormat::FontPixelSize);
    if (points > Limits::kLargestFont || pixels > Limits::kLargestFont) return false;
    fonts.emplace(character.fontFamilies().toStringList(), points, pixels, character.fontWeight(),
                  character.fontItalic());
  }
  return fonts.size() <= Limits::kMostFonts;
}

bool hasShortParagraphs(const QTextDocument& document) {
  int runs = 0;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    if (block.length() > Limits::kLongestParagraph) return false;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
      if (++runs > Limits::kMostRuns) return false;
    }
  }
  return true;
}

// Counts the cells of the tables in a frame; false when they are too many or lie too deep.
bool hasSmallTables(const QTextFrame& frame, int depth, int& cells) {
  for (const QTextFrame* child : frame.childFrames()) {
    const auto* table = qobject_cast<const QTextTable*>(child);
    if (table != nullptr) {
      if (depth >= Limits::kDeepestTable || table->columns() > Limits::kMostColumns) return false;
      cells += table->rows() * table->columns();
      if (cells > Limits::kMostCells) return false;
    }
    if (!hasSmallTables(*child, depth + 1, cells)) return false;
  }
  return true;
}

}  // namespace

LimitedText limitedText(const QString& text) {
  LimitedText limited;
  int paragraphs = 0;
  qsizetype at = 0;
  const QStringView whole(text);
  while (at < whole.size()) {
    qsizetype end = at;
    while (end < whole.size() && end - at <= Limits::kLongestParagraph && !isLineEnd(whole.at(end))) ++end;
    // One unit more than fits tells that the line goes on; what follows it is looked at when it is its turn.
    const QStringView line = whole.sliced(at, end - at);
    const qsizetype piece = pieceOf(line);
    if (paragraphs == Limits::kMostParagraphs || limited.text.size() + piece > Limits::kMostCharacters) {
      limited.isWhole = false;
      return limited;
    }
    if (paragraphs++ > 0) limited.text += u'\n';
    limited.text += line.first(piece);
    at += piece;
    if (piece < line.size() || at == whole.size()) continue;
    at += whole.at(at) == u'\r' && at + 1 < whole.size() && whole.at(at + 1) == u'\n' ? 2 : 1;
    if (at == whole.size()) limited.text += u'\n';
  }
  return limited;
}

bool isWithinLimits(const QTextDocument& document) {
  int cells = 0;
  return document.characterCount() <= Limits::kMostCharacters &&
         document.blockCount() <= Limits::kMostParagraphs + Limits::kMostCells &&
         document.allFormats().size() <= Limits::kMostFormats && hasFewFonts(document) &&
         hasShortParagraphs(document) && hasSmallTables(*document.rootFrame(), 0, cells);
}

}  // namespace halvorn
