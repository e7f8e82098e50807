#include "Core/Log.h"

#include <cstdio>
#include <string>

#include "Core/ForPeople.h"

namespace halvorn {
namespace {

bool isHigh(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLow(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// A byte that is no character, or half of a pair.
std::u16string escapedUnit(char16_t unit) {
  if (unit < 0xDC80 || unit > 0xDCFF) return shownAsNumber(unit);
  char buffer[8];
  std::snprintf(buffer, sizeof buffer, "\\x%02X", unit - 0xDC00U);
  return std::u16string(buffer, buffer + 4);
}

}  // namespace

Text Log::escapedForLog(const Text& text) {
  std::u16string result;
  const std::u16string_view units = text.units();
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    if (isHigh(unit) && i + 1 < units.size() && isLow(units[i + 1])) {
      const char32_t character = 0x10000U + ((unit - 0xD800U) << 10U) + (units[++i] - 0xDC00U);
      result += isInvisible(character) ? shownAsNumber(character) : std::u16string{unit, units[i]};
    } else if (unit == u'\\') {
      result.append(u"\\\\");
    } else if (unit == u'\n') {
      result.append(u"\\n");
    } else if (unit == u'\r') {
      result.append(u"\\r");
    } else if (unit == u'\t') {
      result.append(u"\\t");
    } else if (isHigh(unit) || isLow(unit)) {
      result += escapedUnit(unit);
    } else if (isInvisible(unit)) {
      result += shownAsNumber(unit);
    } else {
      result.push_back(unit);
    }
  }
  return Text(std::move(result));
}

}  // namespace halvorn
