#include "Core/FourCharCode.h"

#include <string>

#include "Core/MacRoman.h"

namespace halvorn {

FourCharCode fourCharCodeFromText(const Text& text) {
  if (text.length() != 4) return 0;
  FourCharCode code = 0;
  for (const char16_t unit : text.units()) {
    const auto byte = macRomanFromUnit(unit);
    if (!byte || *byte < 0x20 || *byte == 0x7F) return 0;
    code = code << 8 | *byte;
  }
  return code;
}

Text textFromFourCharCode(FourCharCode code) {
  std::string bytes;
  for (const int shift : {24, 16, 8, 0}) bytes.push_back(static_cast<char>(code >> shift & 0xFF));
  return Text::fromMacRoman(bytes);
}

}  // namespace halvorn
