// Groups, bytes and where the text goes.

#include "Platform/window/linux/readme/RtfReader.h"

#include <algorithm>
#include <utility>

#include "Platform/window/linux/readme/RtfCodePages.h"

namespace halvorn {
namespace {

constexpr std::size_t kDeepest = 128;
constexpr qsizetype kMostCharacters = 1'000'000;
constexpr std::size_t kMostParagraphs = 50'000;
constexpr std::size_t kMostRuns = 200'000;
constexpr std::size_t kMostFonts = 4096;
constexpr std::size_t kMostColors = 4096;
constexpr std::size_t kMostPictures = 64;
constexpr qsizetype kMostPictureBytes = 8LL * 1024 * 1024;
constexpr int kTokensBetweenLooks = 512;  // at the budget

// The address in an instruction: HYPERLINK "https://example.com"; empty for any other instruction.
QString addressOf(const QString& instruction) {
  const QString trimmed = instruction.trimmed();
  if (!trimmed.startsWith(u"HYPERLINK", Qt::CaseInsensitive)) return {};
  const qsizetype open = trimmed.indexOf(u'"');
  if (open < 0) return trimmed.mid(9).trimmed().section(u' ', 0, 0);
  const QString before = trimmed.mid(9, open - 9);
  if (before.contains(u"\\l")) return {};  // a place in this document
  const qsizetype close = trimmed.indexOf(u'"', open + 1);
  return close < 0 ? QString() : trimmed.mid(open + 1, close - open - 1);
}

}  // namespace

std::optional<RtfDocument> readRtf(const QByteArray& bytes, const ReadingBudget& budget) {
  if (!bytes.startsWith("{\\rtf")) return std::nullopt;
  return RtfReader().read(bytes, budget);
}

RtfDocument RtfReader::read(const QByteArray& bytes, const ReadingBudget& budget) {
  RtfTokens tokens(bytes);
  int untilLook = kTokensBetweenLooks;
  for (RtfToken token = tokens.next(); token.kind != RtfToken::Kind::End; token = tokens.next()) {
    if (--untilLook == 0) untilLook = budget.isSpent() ? -1 : kTokensBetweenLooks;
    document_.isWhole = untilLook >= 0 && !isFull();
    if (!document_.isWhole) break;
    take(token);
    // What follows the end of the document's group is no part of it.
    if (groups_.size() == 1 && token.kind == RtfToken::Kind::GroupEnd) break;
  }
  finish();
  return std::move(document_);
}

bool RtfReader::isFull() const {
  return characters_ > kMostCharacters || paragraphs_ > kMostParagraphs || runCount_ > kMostRuns;
}

void RtfReader::take(const RtfToken& token) {
  if (tooDeep_ > 0) {
    if (token.kind == RtfToken::Kind::GroupStart) ++tooDeep_;
    if (token.kind == RtfToken::Kind::GroupEnd) --tooDeep_;
    return;
  }
  switch (token.kind) {
    case RtfToken::Kind::GroupStart:
      flushBytes();
      openGroup();
      break;
    case RtfToken::Kind::GroupEnd:
      flushBytes();
      closeGroup();
      break;
    case RtfToken::Kind::Word:
      flushBytes();
      takeWord(token.text, token.number);
      break;
    case RtfToken::Kind::Symbol:
      flushBytes();
      takeSymbol(token.text[0]);
      break;
    case RtfToken::Kind::Byte:
    case RtfToken::Kind::Text:
      takeBytes(token.text);
      break;
    case RtfToken::Kind::Binary:
      if (group().destination == Destination::Picture) picture_.bytes = token.text.toByteArray();
      break;
    case RtfToken::Kind::End:
      break;
  }
}

void RtfReader::openGroup() {
  toSkip_ = 0;
  if (groups_.size() > kDeepest) {
    ++tooDeep_;
    return;
  }
  groups_.push_back(group());
}

void RtfReader::closeGroup() {
  toSkip_ = 0;
  optional_ = false;
  if (groups_.size() < 2) return;
  if (groups_.size() == 2 && !runs_.empty()) endParagraph();  // the document's own group
  const Group closed = group();
  groups_.pop_back();
  if (group().destination != closed.destination) endDestination(closed.destination);
  // In a font table each font may have a group of its own, and need not end in a semicolon.
  if (closed.destination == Destination::Fonts) takeFontText(QStringLiteral(";"));
}

void RtfReader::endDestination(Destination ended) {
  if (ended == Destination::Picture) endPicture();
  // The group around the instruction is the field's own; the text it stands for follows there.
  if (ended == Destination::Instruction) group().link = addressOf(std::exchange(instruction_, {}));
}

void RtfReader::takeSymbol(char symbol) {
  switch (symbol) {
    case '*':
      optional_ = true;
      return;
    case '\\':
    case '{':
    case '}':
      takeBytes(QByteArrayView(&symbol, 1));
      flushBytes();
      return;
    case '\n':
    case '\r':
      if (group().destination == Destination::Body) endParagraph();
      return;
    case '~':
      return append(QString(QChar::Nbsp));
    case '-':
      return append(QString(QChar::SoftHyphen));
    case '_':
      return append(QString(QChar(u'\u2011')));
    case '\t':
      return append(QStringLiteral("\t"));
    default:
      return;
  }
}

void RtfReader::takeBytes(QByteArrayView bytes) {
  const qsizetype skipped = std::min<qsizetype>(toSkip_, bytes.size());
  toSkip_ -= static_cast<int>(skipped);
  bytes = bytes.sliced(skipped);
  if (bytes.isEmpty()) return;
  switch (group().destination) {
    case Destination::Nowhere:
      break;
    case Destination::Picture:
      if (pictureBytes_ + pictureHex_.size() < kMostPictureBytes)
        pictureHex_.append(bytes.data(), bytes.size());
      break;
    case Destination::Colors:
      for (const char byte : bytes) {
        if (byte == ';') endColor();
      }
      break;
    default:
      bytes_.append(bytes.data(), bytes.size());
  }
}

int RtfReader::codePage() const {
  const Destination destination = groups_.back().destination;
  if (destination == Destination::Fonts) return font_.codePage != 0 ? font_.codePage : documentCodePage_;
  const int place = fontPlaces_.value(groups_.back().character.font, -1);
  if (place >= 0 && document_.fonts[static_cast<std::size_t>(place)].codePage != 0) {
    return document_.fonts[static_cast<std::size_t>(place)].codePage;
  }
  return documentCodePage_;
}

void RtfReader::flushBytes() {
  if (bytes_.isEmpty()) return;
  const QByteArray waiting = std::exchange(bytes_, {});
  append(decodeCodePage(waiting, codePage()));
}

void RtfReader::append(const QString& text) {
  switch (group().destination) {
    case Destination::Body:
      return appendToBody(text);
    case Destination::Fonts:
      return takeFontText(text);
    case Destination::Instruction:
      instruction_ += text.left(4096);
      return;
    case Destination::ListMarker:
      listMarker_ += text.left(16);
      return;
    case Destination::Nowhere:
    case Destination::Colors:
    case Destination::Picture:
      return;
  }
}

void RtfReader::appendToBody(const QString& text) {
  if (group().character.hidden || text.isEmpty()) return;
  characters_ += text.size();
  if (!runs_.empty() && runs_.back().picture < 0 && runs_.back().format == group().character &&
      runs_.back().link == group().link) {
    runs_.back().text += text;
    return;
  }
  ++runCount_;
  runs_.push_back({group().character, text, group().link, -1});
}

void RtfReader::takeFontText(const QString& text) {
  for (const QChar character : text) {
    if (character != u';') {
      if (font_.name.size() < 128) font_.name += character;
      continue;
    }
    font_.name = font_.name.trimmed();
    if (fontNumber_ >= 0 && !font_.name.isEmpty() && document_.fonts.size() < kMostFonts) {
      if (font_.codePage == 0 && font_.name == u"Symbol") font_.codePage = kSymbolCodePage;
      fontPlaces_.insert(fontNumber_, static_cast<int>(document_.fonts.size()));
      document_.fonts.push_back(font_);
    }
    font_ = {};
    fontNumber_ = -1;
  }
}

void RtfReader::endColor() {
  if (document_.colors.size() < kMostColors) document_.colors.push_back(color_);
  color_.reset();
}

void RtfReader::endPicture() {
  if (picture_.bytes.isEmpty()) picture_.bytes = QByteArray::fromHex(pictureHex_);
  pictureHex_.clear();
  pictureBytes_ += picture_.bytes.size();
  const bool fits = pictureBytes_ <= kMostPictureBytes && document_.pictures.size() < kMostPictures;
  if (pictureReadable_ && fits && !picture_.bytes.isEmpty()) {
    const int number = static_cast<int>(document_.pictures.size());
    document_.pictures.push_back(std::move(picture_));
    runs_.push_back({group().character, {}, group().link, number});
  }
  picture_ = {};
  pictureReadable_ = false;
}

void RtfReader::endParagraph() {
  ++paragraphs_;
  RtfParagraph paragraph{group().paragraph, std::exchange(listMarker_, {}).trimmed(),
                         std::exchange(runs_, {})};
  if (paragraph.format.inTable) {
    cell_.push_back(std::move(paragraph));
    return;
  }
  endRow();
  document_.blocks.emplace_back(std::move(paragraph));
}

void RtfReader::endCell() {
  group().paragraph.inTable = true;
  endParagraph();
  row_.cells.push_back(std::exchange(cell_, {}));
}

void RtfReader::endRow() {
  if (!cell_.empty()) row_.cells.push_back(std::exchange(cell_, {}));
  if (row_.cells.empty()) return;
  // The edges stay for the next row: a row need not be described again.
  document_.blocks.emplace_back(row_);
  row_.cells.clear();
}

void RtfReader::finish() {
  flushBytes();
  if (!runs_.empty()) endParagraph();  // a cut document ends inside its groups
  endRow();
  // Font numbers of the document become places in its table.
  const auto place = [this](int number) { return fontPlaces_.value(number < 0 ? defaultFont_ : number, -1); };
  const auto settle = [&](RtfParagraph& paragraph) {
    for (RtfRun& run : paragraph.runs) run.format.font = place(run.format.font);
  };
  for (auto& block : document_.blocks) {
    if (auto* paragraph = std::get_if<RtfParagraph>(&block)) settle(*paragraph);
    if (auto* row = std::get_if<RtfTableRow>(&block)) {
      for (auto& cell : row->cells) std::for_each(cell.begin(), cell.end(), settle);
    }
  }
}

}  // namespace halvorn
