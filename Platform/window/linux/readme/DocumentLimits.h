// What a document may consist of, so that the toolkit reads, lays out and paints it in a short time.
//
// Its readers and its layout take time in the square, or worse, of most of these. The figures are far above what
// a read-me has, and far below what takes a second.
#pragma once

#include <QString>
#include <QTextDocument>

namespace halvorn {

struct DocumentLimits {
  static constexpr qsizetype kMostCharacters = 250'000;
  static constexpr int kMostParagraphs = 6'000;
  // A longer line becomes several paragraphs.
  static constexpr int kLongestParagraph = 4'096;
  static constexpr int kMostRuns = 12'000;      // stretches of text in one format
  static constexpr int kMostFonts = 48;         // families, sizes and weights, each combination of them
  static constexpr int kMostFormats = 1'000;    // of characters, paragraphs and tables
  static constexpr int kMostCells = 1'000;      // of all tables
  static constexpr int kMostListItems = 1'000;  // of all lists
  static constexpr int kMostColumns = 64;       // of a table
  static constexpr int kDeepestTable = 3;       // tables in tables
  static constexpr int kLargestFont = 200;      // points or pixels
};

// A text fit to be shown, each line a paragraph.
struct LimitedText {
  QString text;
  bool isWhole = true;  // false when only the beginning stayed within the limits
};
[[nodiscard]] LimitedText limitedText(const QString& text);

// Whether a document that has been read, and not yet laid out, stays within the limits.
[[nodiscard]] bool isWithinLimits(const QTextDocument& document);

}  // namespace halvorn
