// Texts of the house and of the toolkit.
#pragma once

#include <QString>

#include "Core/Text.h"

namespace halvorn {

[[nodiscard]] inline QString toQString(const Text& text) {
  const std::u16string_view units = text.units();
  return QString(reinterpret_cast<const QChar*>(units.data()), static_cast<qsizetype>(units.size()));
}

[[nodiscard]] inline Text toText(const QString& string) { return Text(string.toStdU16String()); }

// The text as people see it: a return is a line end, and what is no character (bytes of a file name that are
// not UTF-8) is a replacement mark.
[[nodiscard]] QString forDisplay(const Text& text);

}  // namespace halvorn
