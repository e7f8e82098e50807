#include "Platform/window/linux/QtText.h"

namespace halvorn {

QString forDisplay(const Text& text) {
  QString shown = toQString(text);
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  for (qsizetype i = 0; i < shown.size(); ++i) {
    const QChar unit = shown.at(i);
    if (unit == u'\r') {
      shown[i] = u'\n';
    } else if (unit.isHighSurrogate() && i + 1 < shown.size() && shown.at(i + 1).isLowSurrogate()) {
      ++i;
    } else if (unit.isSurrogate() || unit.isNull()) {
      shown[i] = QChar::ReplacementCharacter;
    }
  }
  return shown;
}

}  // namespace halvorn
