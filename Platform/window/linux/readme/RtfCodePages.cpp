#include "Platform/window/linux/readme/RtfCodePages.h"

#include <QStringDecoder>

#include "Core/MacRoman.h"
#include "Core/Text.h"
#include "Platform/window/linux/QtText.h"

namespace halvorn {
namespace {

struct CharacterSet {
  int number;
  int codePage;
};
constexpr CharacterSet kCharacterSets[] = {
    {2, kSymbolCodePage}, {77, 10000}, {128, 932},  {129, 949},  {130, 1361}, {134, 936},
    {136, 950},           {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256},
    {186, 1257},          {204, 1251}, {222, 874},  {238, 1250}, {254, 437},  {255, 850}};

QByteArray encodingName(int codePage) {
  switch (codePage) {
    case 437:
    case 850:
    case 852:
    case 866:
      return "IBM" + QByteArray::number(codePage);
    case 932:
      return "Shift_JIS";
    case 936:
      return "GBK";
    case 949:
      return "windows-949";
    case 950:
      return "Big5";
    case 65001:
      return "UTF-8";
    default:
      return "windows-" + QByteArray::number(codePage);
  }
}

// The signs that documents use symbol fonts for; others stay in the private
// area where symbol fonts keep them.
QString decodeSymbols(const QByteArray& bytes) {
  QString text;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    if (value == 0xB7 || value == 0xA7) {
      text += value == 0xB7 ? u'\u2022' : u'\u25AA';
    } else {
      text += value < 0x20 || value == ' ' ? QChar(value) : QChar(0xF000 + value);
    }
  }
  return text;
}

}  // namespace

int codePageOfCharacterSet(int characterSet) {
  for (const CharacterSet& set : kCharacterSets) {
    if (set.number == characterSet) return set.codePage;
  }
  return 0;
}

QString decodeCodePage(const QByteArray& bytes, int codePage) {
  if (codePage == kSymbolCodePage) return decodeSymbols(bytes);
  if (codePage == 10000) {
    return toQString(Text::fromMacRoman({bytes.constData(), static_cast<std::size_t>(bytes.size())}));
  }
  QStringDecoder decoder(encodingName(codePage).constData());
  if (!decoder.isValid()) decoder = QStringDecoder("windows-1252");
  return decoder.isValid() ? QString(decoder.decode(bytes)) : QString::fromLatin1(bytes);
}

}  // namespace halvorn
