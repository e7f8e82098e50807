// What the control words of rich text do.

#include <algorithm>
#include <array>

#include "Platform/window/linux/readme/RtfCodePages.h"
#include "Platform/window/linux/readme/RtfReader.h"

namespace halvorn {
namespace {

template <std::size_t Size>
bool contains(const std::array<QByteArrayView, Size>& words, QByteArrayView word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// Groups whose text is no part of the document's.
constexpr std::array<QByteArrayView, 30> kElsewhere = {
    "stylesheet", "info",       "header",    "headerl",   "headerr",           "headerf",
    "footer",     "footerl",    "footerr",   "footerf",   "footnote",          "annotation",
    "pn",         "nonshppict", "objdata",   "bkmkstart", "bkmkend",           "xe",
    "tc",         "themedata",  "datastore", "listtable", "listoverridetable", "rsidtbl",
    "generator",  "fldtype",    "panose",    "falt",      "datafield",         "private"};

// Marked as optional (\*), and yet of use.
constexpr std::array<QByteArrayView, 3> kOptionalButKnown = {"fldinst", "shppict", "listtext"};

struct Character {
  QByteArrayView word;
  char16_t unit;
};
constexpr Character kCharacters[] = {
    {"tab", u'\t'},           {"line", u'\u2028'},    {"emdash", u'\u2014'},  {"endash", u'\u2013'},
    {"bullet", u'\u2022'},    {"lquote", u'\u2018'},  {"rquote", u'\u2019'},  {"ldblquote", u'\u201C'},
    {"rdblquote", u'\u201D'}, {"emspace", u'\u2003'}, {"enspace", u'\u2002'}, {"qmspace", u'\u2005'},
    {"zwj", u'\u200D'},       {"zwnj", u'\u200C'},    {"ltrmark", u'\u200E'}, {"rtlmark", u'\u200F'}};

}  // namespace

void RtfReader::takeWord(QByteArrayView word, std::optional<int> number) {
  const bool optional = std::exchange(optional_, false);
  if (word == "u") return takeUnicode(number.value_or(0));
  toSkip_ = 0;
  if (optional && !contains(kOptionalButKnown, word)) {
    group().destination = Destination::Nowhere;
    return;
  }
  if (group().destination == Destination::Nowhere || takeDestinationWord(word)) return;
  const int value = number.value_or(0);
  if (group().destination == Destination::Fonts && takeFontWord(word, value)) return;
  if (group().destination == Destination::Colors && takeColorWord(word, value)) return;
  if (group().destination == Destination::Picture && takePictureWord(word, value)) return;
  // One of these, or a word that means nothing here.
  (void)(takeCharacterWord(word, number) || takeSizeAndColorWord(word, value) || takeTextWord(word) ||
         takeAlignmentWord(word) || takeParagraphWord(word, value) || takeTableWord(word, value) ||
         takeDocumentWord(word, value));
}

bool RtfReader::takeDestinationWord(QByteArrayView word) {
  Destination wanted = Destination::Nowhere;
  if (word == "fonttbl") {
    wanted = Destination::Fonts;
  } else if (word == "colortbl") {
    wanted = Destination::Colors;
  } else if (word == "fldinst") {
    wanted = Destination::Instruction;
    instruction_.clear();
  } else if (word == "pict") {
    wanted = Destination::Picture;
    picture_ = {};
    pictureHex_.clear();
  } else if (word == "listtext" || word == "pntext") {
    wanted = Destination::ListMarker;
    listMarker_.clear();
  } else if (!contains(kElsewhere, word)) {
    return false;
  }
  group().destination = wanted;
  return true;
}

bool RtfReader::takeCharacterWord(QByteArrayView word, std::optional<int> number) {
  const bool on = number.value_or(1) != 0;
  RtfCharacterFormat& format = group().character;
  if (word == "plain") {
    format = {};
  } else if (word == "b") {
    format.bold = on;
  } else if (word == "i") {
    format.italic = on;
  } else if (word == "ulnone") {
    format.underline = false;
  } else if (word == "ul" || word == "ulw" || word == "uld" || word == "uldb" || word == "uldash" ||
             word == "ulth" || word == "ulwave") {
    format.underline = on;
  } else if (word == "strike" || word == "striked") {
    format.strike = on;
  } else if (word == "caps") {
    format.capitals = on;
  } else if (word == "v") {
    format.hidden = on;
  } else if (word == "super") {
    format.position = on ? RtfCharacterFormat::Position::Super : RtfCharacterFormat::Position::Normal;
  } else if (word == "sub") {
    format.position = on ? RtfCharacterFormat::Position::Sub : RtfCharacterFormat::Position::Normal;
  } else if (word == "nosupersub") {
    format.position = RtfCharacterFormat::Position::Normal;
  } else {
    return false;
  }
  return true;
}

bool RtfReader::takeSizeAndColorWord(QByteArrayView word, int value) {
  RtfCharacterFormat& format = group().character;
  if (word == "f") {
    format.font = value;
  } else if (word == "fs") {
    format.halfPoints = std::clamp(value, 8, 288);
  } else if (word == "cf") {
    format.color = value;
  } else if (word == "cb" || word == "highlight" || word == "chcbpat") {
    format.background = value;
  } else {
    return false;
  }
  return true;
}

bool RtfReader::takeTextWord(QByteArrayView word) {
  for (const Character& known : kCharacters) {
    if (known.word != word) continue;
    append(QString(QChar(known.unit)));
    return true;
  }
  const bool ends = word == "par" || word == "sect" || word == "page" || word == "column";
  if (ends && group().destination == Destination::Body) endParagraph();
  return ends;
}

bool RtfReader::takeAlignmentWord(QByteArrayView word) {
  using Alignment = RtfParagraphFormat::Alignment;
  RtfParagraphFormat& format = group().paragraph;
  if (word == "ql") {
    format.alignment = Alignment::Left;
  } else if (word == "qr") {
    format.alignment = Alignment::Right;
  } else if (word == "qc") {
    format.alignment = Alignment::Center;
  } else if (word == "qj") {
    format.alignment = Alignment::Justify;
  } else if (word == "qnatural") {
    format.alignment = Alignment::Leading;
  } else if (word == "rtlpar") {
    format.rightToLeft = true;
  } else if (word == "ltrpar") {
    format.rightToLeft = false;
  } else {
    return false;
  }
  return true;
}

bool RtfReader::takeParagraphWord(QByteArrayView word, int value) {
  RtfParagraphFormat& format = group().paragraph;
  const int length = std::clamp(value, -14'400, 14'400);
  if (word == "pard") {
    format = {};
  } else if (word == "li" || word == "lin") {
    format.leftIndent = length;
  } else if (word == "ri" || word == "rin") {
    format.rightIndent = length;
  } else if (word == "fi") {
    format.firstIndent = length;
  } else if (word == "sb") {
    format.spaceBefore = std::max(length, 0);
  } else if (word == "sa") {
    format.spaceAfter = std::max(length, 0);
  } else if (word == "ls") {
    format.list = value;
  } else if (word == "ilvl") {
    format.listLevel = std::clamp(value, 0, 8);
  } else {
    return false;
  }
  return true;
}

bool RtfReader::takeTableWord(QByteArrayView word, int value) {
  constexpr std::size_t kMostCells = 64;
  if (group().destination != Destination::Body) return false;
  if (word == "trowd") {
    row_.edges.clear();
  } else if (word == "cellx") {
    if (row_.edges.size() < kMostCells) row_.edges.push_back(std::clamp(value, 0, 32'000));
  } else if (word == "intbl") {
    group().paragraph.inTable = true;
  } else if (word == "cell") {
    if (row_.cells.size() < kMostCells) endCell();
  } else if (word == "row") {
    endRow();
  } else if (word == "nestcell") {
    append(QStringLiteral("\t"));  // a table in a table becomes its text
  } else if (word == "nestrow") {
    endParagraph();
  } else {
    return false;
  }
  return true;
}

bool RtfReader::takeDocumentWord(QByteArrayView word, int value) {
  if (word == "ansicpg") {
    documentCodePage_ = value;
  } else if (word == "mac") {
    documentCodePage_ = 10000;
  } else if (word == "pc") {
    documentCodePage_ = 437;
  } else if (word == "pca") {
    documentCodePage_ = 850;
  } else if (word == "deff") {
    defaultFont_ = value;
  } else if (word == "uc") {
    group().skipAfterUnicode = std::clamp(value, 0, 64);
  } else {
    return false;
  }
  return true;
}

bool RtfReader::takeFontWord(QByteArrayView word, int value) {
  if (word == "f") {
    fontNumber_ = value;
  } else if (word == "fcharset") {
    font_.codePage = codePageOfCharacterSet(value);
  } else if (word == "cpg") {
    font_.codePage = value;
  } else if (word == "froman") {
    font_.family = RtfFont::Family::Serif;
  } else if (word == "fswiss") {
    font_.family = RtfFont::Family::Sans;
  } else if (word == "fmodern") {
    font_.family = RtfFont::Family::Fixed;
  } else {
    return false;
  }
  return true;
}

bool RtfReader::takeColorWord(QByteArrayView word, int value) {
  if (word != "red" && word != "green" && word != "blue") return false;
  QColor mixed = color_.value_or(QColor(0, 0, 0));
  const int part = std::clamp(value, 0, 255);
  if (word == "red") mixed.setRed(part);
  if (word == "green") mixed.setGreen(part);
  if (word == "blue") mixed.setBlue(part);
  color_ = mixed;
  return true;
}

bool RtfReader::takePictureWord(QByteArrayView word, int value) {
  if (word == "pngblip" || word == "jpegblip") {
    pictureReadable_ = true;
  } else if (word == "picwgoal") {
    picture_.width = std::clamp(value, 0, 32'000);
  } else if (word == "pichgoal") {
    picture_.height = std::clamp(value, 0, 32'000);
  } else {
    return false;
  }
  return true;
}

// One UTF-16 unit, written as a signed number; then stand-ins for readers that do not know it.
void RtfReader::takeUnicode(int value) {
  const int unit = value < 0 ? value + 65'536 : value;
  if (unit > 0 && unit < 65'536 && group().destination != Destination::Nowhere) append(QString(QChar(unit)));
  toSkip_ = group().skipAfterUnicode;
}

}  // namespace halvorn
