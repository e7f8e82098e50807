// The encodings that rich text names.
#pragma once

#include <QByteArray>
#include <QString>

namespace halvorn {

// The code page that a font's character set stands for; 0 for the default set.
[[nodiscard]] int codePageOfCharacterSet(int characterSet);

// A code page of our own for symbol fonts, whose bytes are signs and not letters.
inline constexpr int kSymbolCodePage = 42;

// Bytes that are not in the code page become replacement marks; an unknown code
// page is taken for Windows Latin.
[[nodiscard]] QString decodeCodePage(const QByteArray& bytes, int codePage);

}  // namespace halvorn
