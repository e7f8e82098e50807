#include "tools/kt/Answer.h"

#include <charconv>
#include <cmath>

#include "Core/Log.h"

namespace halvorn {
namespace {

// A lone surrogate or a byte that is no UTF-8 has no place in JSON; it becomes U+FFFD.
std::string jsonText(const Text& text) {
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

std::string number(double value) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return {digits, end};
}

struct Lines {
  std::string operator()(std::monostate) const { return "-"; }
  std::string operator()(bool value) const { return value ? "yes" : "no"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return number(value); }
  std::string operator()(const Text& value) const { return Log::escapedForLog(value).bytes(); }
};

struct Json {
  std::string operator()(std::monostate) const { return "null"; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return std::isfinite(value) ? number(value) : "null"; }
  std::string operator()(const Text& value) const { return jsonText(value); }
};

}  // namespace

std::string printed(const AnswerRow& row, AnswerForm form) {
  const bool isJson = form == AnswerForm::Json;
  std::string result;
  for (const auto& [name, value] : row) {
    if (!result.empty()) result += isJson ? ", " : "\t";
    if (isJson) result += jsonText(name) + ": ";
    result += isJson ? std::visit(Json(), value) : std::visit(Lines(), value);
  }
  return isJson ? "{" + result + "}\n" : result + "\n";
}

}  // namespace halvorn
