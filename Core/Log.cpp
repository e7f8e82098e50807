#include "Core/Log.h"

#include <cstdio>
#include <string>

namespace halvorn {
namespace {

bool isHigh(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLow(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// What would break a line, hide text or turn its direction around.
bool isHidden(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x061C ||
         (unit >= 0x200B && unit <= 0x200F) || (unit >= 0x2028 && unit <= 0x202E) ||
         (unit >= 0x2060 && unit <= 0x206F) || unit == 0xFEFF;
}

std::string escaped(char16_t unit) {
  char buffer[16];
  const bool isByte = unit >= 0xDC80 && unit <= 0xDCFF;
  std::snprintf(buffer, sizeof buffer, isByte ? "\\x%02X" : "\\u{%04X}",
                isByte ? unit - 0xDC00u : static_cast<unsigned>(unit));
  return buffer;
}

}  // namespace

Text Log::escapedForLog(const Text& text) {
  std::u16string result;
  const std::u16string_view units = text.units();
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    if (isHigh(unit) && i + 1 < units.size() && isLow(units[i + 1])) {
      result.push_back(unit);
      result.push_back(units[++i]);
    } else if (unit == u'\\') {
      result.append(u"\\\\");
    } else if (unit == u'\n') {
      result.append(u"\\n");
    } else if (unit == u'\r') {
      result.append(u"\\r");
    } else if (unit == u'\t') {
      result.append(u"\\t");
    } else if (isHidden(unit) || isHigh(unit) || isLow(unit)) {
      for (const char character : escaped(unit)) result.push_back(static_cast<char16_t>(character));
    } else {
      result.push_back(unit);
    }
  }
  return Text(std::move(result));
}

}  // namespace halvorn
