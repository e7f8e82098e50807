// Rich text (RTF) as paragraphs and rows of tables.
//
//   const std::optional<RtfDocument> read = readRtf(bytes);
//   if (read) document = documentFromRtf(*read);
#pragma once

#include <QByteArray>
#include <QColor>
#include <QString>
#include <QTextDocument>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include "Platform/window/linux/readme/ReadingBudget.h"

namespace halvorn {

struct RtfCharacterFormat {
  enum class Position { Normal, Super, Sub };

  int font = -1;  // index of the font table
  int halfPoints = 24;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strike = false;
  bool capitals = false;
  bool hidden = false;
  int color = 0;       // index of the color table; 0 is the color of the view
  int background = 0;  // likewise
  Position position = Position::Normal;
  friend bool operator==(const RtfCharacterFormat&, const RtfCharacterFormat&) = default;
};

struct RtfRun {
  RtfCharacterFormat format;
  QString text;      // U+2028 breaks the line
  QString link;      // an address, or empty
  int picture = -1;  // index of the pictures; the text is empty then
};

struct RtfParagraphFormat {
  enum class Alignment { Leading, Left, Right, Center, Justify };

  Alignment alignment = Alignment::Leading;
  int leftIndent = 0;  // all lengths in twips, 1/1440 inch
  int rightIndent = 0;
  int firstIndent = 0;
  int spaceBefore = 0;
  int spaceAfter = 0;
  bool rightToLeft = false;
  bool inTable = false;
  int listLevel = 0;
  int list = 0;  // number of the list; 0 when the document gives none
};

struct RtfParagraph {
  RtfParagraphFormat format;
  QString listMarker;  // "•", "1." of a list item, else empty
  std::vector<RtfRun> runs;
};

struct RtfTableRow {
  std::vector<int> edges;  // the right edge of each cell, twips from the margin
  std::vector<std::vector<RtfParagraph>> cells;
};

struct RtfFont {
  enum class Family { Any, Serif, Sans, Fixed };
  QString name;
  Family family = Family::Any;
  int codePage = 0;  // of the bytes set in it; 0 is that of the document
};

struct RtfPicture {
  QByteArray bytes;  // a PNG or JPEG file
  int width = 0;     // in twips, 0 for the picture's own
  int height = 0;
};

struct RtfDocument {
  std::vector<RtfFont> fonts;
  std::vector<std::optional<QColor>> colors;  // nullopt: the color of the view
  std::vector<RtfPicture> pictures;
  std::vector<std::variant<RtfParagraph, RtfTableRow>> blocks;
  bool isWhole = true;  // false when reading ended before the document did
};

// nullopt when the bytes are no rich text. Broken rich text gives what could be read; groups nested deeper
// than 128 are left out, and reading ends after a million characters, fifty thousand paragraphs or two hundred
// thousand runs of text, and when the budget is spent.
[[nodiscard]] std::optional<RtfDocument> readRtf(const QByteArray& bytes,
                                                 const ReadingBudget& budget = ReadingBudget());

// Whether it has no more runs and cells than a document may have (DocumentLimits.h).
[[nodiscard]] bool isModestRtf(const RtfDocument& read);

// Into a document of the toolkit, appended to an empty one.
void renderRtf(const RtfDocument& read, QTextDocument& document);
// Its text alone, a line for each paragraph, also of those in tables.
[[nodiscard]] QString textOfRtf(const RtfDocument& read);

}  // namespace halvorn
