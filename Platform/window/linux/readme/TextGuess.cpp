#include "Platform/window/linux/readme/TextGuess.h"

#include <QStringDecoder>
#include <algorithm>
#include <optional>

#include "Platform/window/linux/readme/RtfCodePages.h"

namespace halvorn {
namespace {

// The share of zeros among every second byte of the start, in percent.
int zerosInPercent(const QByteArray& bytes, qsizetype first) {
  const qsizetype end = std::min<qsizetype>(bytes.size(), 4096);
  int zeros = 0;
  int looked = 0;
  for (qsizetype i = first; i < end; i += 2) {
    ++looked;
    zeros += bytes.at(i) == '\0' ? 1 : 0;
  }
  return looked == 0 ? 0 : zeros * 100 / looked;
}

}  // namespace

QString decodeGuessing(const QByteArray& bytes) {
  if (const auto marked = QStringConverter::encodingForData(bytes)) {
    return QStringDecoder(*marked).decode(bytes);
  }
  QStringDecoder strict(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
  QString utf8 = strict.decode(bytes);
  const bool wide = bytes.size() % 2 == 0 && bytes.contains('\0');
  if (!strict.hasError() && !wide) return utf8;
  if (wide && zerosInPercent(bytes, 1) > 40) return QStringDecoder(QStringDecoder::Utf16LE).decode(bytes);
  if (wide && zerosInPercent(bytes, 0) > 40) return QStringDecoder(QStringDecoder::Utf16BE).decode(bytes);
  return strict.hasError() ? decodeCodePage(bytes, 1252) : utf8;
}

}  // namespace halvorn
