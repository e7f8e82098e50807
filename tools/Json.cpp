#include "tools/Json.h"

#include <charconv>
#include <cmath>

namespace halvorn {

std::string json(const Text& text) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string result = "\"";
  const std::u16string_view units = text.units();
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    const bool isHigh = (unit & 0xFC00) == 0xD800;
    const bool isPair = isHigh && i + 1 < units.size() && (units[i + 1] & 0xFC00) == 0xDC00;
    if (unit == u'"' || unit == u'\\') {
      result += {'\\', static_cast<char>(unit)};
    } else if (unit < 0x20 || unit == 0x7F) {
      result += {'\\', 'u', '0', '0', kDigits[unit >> 4], kDigits[unit & 15]};
    } else if ((unit & 0xF800) == 0xD800 && !isPair) {
      result += "\\ufffd";
    } else {
      result += text.substring(i, isPair ? 2 : 1).bytes();
      i += isPair ? 1 : 0;
    }
  }
  return result + "\"";
}

std::string json(double number) {
  if (!std::isfinite(number)) return "null";
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  return {digits, end};
}

namespace {

std::string json(const PropertyArray& array) {
  std::string result;
  for (const PropertyValue& value : array) result += (result.empty() ? "" : ", ") + json(value);
  return "[" + result + "]";
}

std::string json(const PropertyDictionary& dictionary) {
  std::string result;
  for (const auto& [key, value] : dictionary)
    result += (result.empty() ? "" : ", ") + json(key) + ": " + json(value);
  return "{" + result + "}";
}

}  // namespace

std::string json(const PropertyValue& value) {
  if (const Text* text = value.text()) return json(*text);
  if (const bool* boolean = value.boolean()) return *boolean ? "true" : "false";
  if (const std::int64_t* integer = value.integer()) return std::to_string(*integer);
  if (const double* real = value.real()) return json(*real);
  if (const PropertyArray* array = value.array()) return json(*array);
  if (const PropertyDictionary* dictionary = value.dictionary()) return json(*dictionary);
  if (const PropertyData* data = value.data()) return std::to_string(data->bytes.size());
  return json(value.date()->secondsSince1970);
}

}  // namespace halvorn
