// The state of reading rich text: a stack of groups over the document being made.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <vector>

#include "Platform/window/linux/readme/RtfDocument.h"
#include "Platform/window/linux/readme/RtfTokens.h"

namespace halvorn {

class RtfReader {
 public:
  [[nodiscard]] RtfDocument read(const QByteArray& bytes, const ReadingBudget& budget);

 private:
  // Where the text of a group goes.
  enum class Destination { Body, Nowhere, Fonts, Colors, Instruction, Picture, ListMarker };
  struct Group {
    Destination destination = Destination::Body;
    RtfCharacterFormat character;
    RtfParagraphFormat paragraph;
    QString link;
    int skipAfterUnicode = 1;
  };

  void take(const RtfToken& token);
  void openGroup();
  void closeGroup();
  void takeSymbol(char symbol);
  void takeBytes(QByteArrayView bytes);
  // Appends what waits in bytes_ to the text, in the encoding it stands in.
  void flushBytes();
  void append(const QString& text);
  void appendToBody(const QString& text);
  void endDestination(Destination ended);
  [[nodiscard]] int codePage() const;
  [[nodiscard]] bool isFull() const;

  // Each takes the word when it is one of its own.
  void takeWord(QByteArrayView word, std::optional<int> number);
  bool takeDestinationWord(QByteArrayView word);
  bool takeCharacterWord(QByteArrayView word, std::optional<int> number);
  bool takeSizeAndColorWord(QByteArrayView word, int value);
  bool takeParagraphWord(QByteArrayView word, int value);
  bool takeAlignmentWord(QByteArrayView word);
  bool takeTextWord(QByteArrayView word);
  bool takeTableWord(QByteArrayView word, int value);
  bool takeDocumentWord(QByteArrayView word, int value);
  bool takeFontWord(QByteArrayView word, int value);
  bool takeColorWord(QByteArrayView word, int value);
  bool takePictureWord(QByteArrayView word, int value);
  void takeUnicode(int value);

  void takeFontText(const QString& text);
  void endColor();
  void endPicture();
  void endParagraph();
  void endCell();
  void endRow();
  void finish();

  Group& group() { return groups_.back(); }

  RtfDocument document_;
  std::vector<Group> groups_ = std::vector<Group>(1);
  int tooDeep_ = 0;        // groups that were left out
  bool optional_ = false;  // \* stood before the word
  int toSkip_ = 0;         // characters that stand in for a Unicode one
  QByteArray bytes_;
  int documentCodePage_ = 1252;
  int defaultFont_ = -1;

  RtfFont font_;
  int fontNumber_ = -1;
  QHash<int, int> fontPlaces_;  // number in the document, place in fonts
  std::optional<QColor> color_;
  QString instruction_;
  RtfPicture picture_;
  bool pictureReadable_ = false;
  QByteArray pictureHex_;

  std::vector<RtfRun> runs_;
  QString listMarker_;
  std::vector<RtfParagraph> cell_;
  RtfTableRow row_;
  qsizetype characters_ = 0;
  std::size_t paragraphs_ = 0;
  std::size_t runCount_ = 0;
  qsizetype pictureBytes_ = 0;
};

}  // namespace halvorn
