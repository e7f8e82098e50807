#include "Platform/bundles/linux/OldPropertyList.h"

#include <algorithm>
#include <string>
#include <utility>

#include "Platform/bundles/linux/PropertyListDates.h"

namespace halvorn {
namespace {

int hexadecimalDigit(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  return -1;
}

bool isBlank(char16_t unit) {
  return unit == u' ' || (unit >= 0x09 && unit <= 0x0D) || unit == 0x2028 || unit == 0x2029 || unit == 0xFEFF;
}

bool isUnquoted(char16_t unit) {
  if (unit >= 0x80) return false;
  const bool isLetter = (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
  const bool isNumber = unit >= u'0' && unit <= u'9';
  return isLetter || isNumber || std::u16string_view(u"_$/:.-").find(unit) != std::u16string_view::npos;
}

class OldReader {
 public:
  OldReader(const Text& text, const PropertyListLimits& limits)
      : text_(text), units_(text_.units()), budget_(limits) {}

  std::optional<PropertyValue> readList() {
    auto result = value(1);
    if (!result || !skipBlanks() || !isAtEnd()) return std::nullopt;
    return result;
  }

  std::optional<PropertyDictionary> readTable() {
    auto result = entries(1);
    if (!result || !isAtEnd()) return std::nullopt;
    return result;
  }

 private:
  bool isAtEnd() const { return position_ >= units_.size(); }
  bool isNext(char16_t unit) const { return !isAtEnd() && units_[position_] == unit; }
  bool take(char16_t unit) {
    if (!isNext(unit)) return false;
    ++position_;
    return true;
  }
  bool takeAfterBlanks(char16_t unit) { return skipBlanks() && take(unit); }

  // Blanks and comments; false when a comment does not end.
  bool skipBlanks() {
    while (!isAtEnd()) {
      if (isBlank(units_[position_])) {
        ++position_;
      } else if (units_.substr(position_, 2) == u"//") {
        position_ = std::min(units_.find_first_of(u"\r\n\u2028\u2029", position_), units_.size());
      } else if (units_.substr(position_, 2) == u"/*") {
        const std::size_t end = units_.find(u"*/", position_ + 2);
        if (end == std::u16string_view::npos) return false;
        position_ = end + 2;
      } else {
        return true;
      }
    }
    return true;
  }

  std::optional<PropertyValue> value(int depth) {
    if (!budget_.allowsDepth(depth) || !skipBlanks() || isAtEnd()) return std::nullopt;
    if (take(u'{')) {
      auto result = entries(depth);
      if (!result || !take(u'}')) return std::nullopt;
      return std::make_optional<PropertyValue>(std::move(*result));
    }
    if (take(u'(')) return array(depth);
    if (take(u'<')) return take(u'*') ? typed() : data();
    const auto words = string();
    return words ? std::optional(PropertyValue(*words)) : std::nullopt;
  }

  // Up to the closing brace, which is left, or to the end.
  std::optional<PropertyDictionary> entries(int depth) {
    PropertyDictionary result;
    if (!budget_.spend()) return std::nullopt;
    for (;;) {
      if (!skipBlanks()) return std::nullopt;
      if (isAtEnd() || isNext(u'}')) return result;
      const auto key = string();
      if (!key || !skipBlanks()) return std::nullopt;
      std::optional<PropertyValue> content = PropertyValue(*key);
      if (take(u'=')) content = value(depth + 1);
      if (!content) return std::nullopt;
      result.insert_or_assign(*key, std::move(*content));
      // The last entry within braces may do without its semicolon.
      if (!takeAfterBlanks(u';') && !isNext(u'}')) return std::nullopt;
    }
  }

  std::optional<PropertyValue> array(int depth) {
    PropertyArray result;
    if (!budget_.spend()) return std::nullopt;
    for (;;) {
      if (takeAfterBlanks(u')')) return PropertyValue(std::move(result));
      auto element = value(depth + 1);
      if (!element) return std::nullopt;
      result.push_back(std::move(*element));
      if (!takeAfterBlanks(u',') && !isNext(u')')) return std::nullopt;
    }
  }

  OptionalText string() {
    if (take(u'"')) return quoted(u'"');
    if (take(u'\'')) return quoted(u'\'');
    const std::size_t start = position_;
    while (!isAtEnd() && isUnquoted(units_[position_])) ++position_;
    const std::size_t count = position_ - start;
    if (count == 0 || !budget_.spend(count)) return std::nullopt;
    return text_.substring(start, count);
  }

  OptionalText quoted(char16_t mark) {
    std::u16string result;
    while (!isAtEnd()) {
      const char16_t unit = units_[position_++];
      if (unit == mark) {
        if (!budget_.spend(result.size())) return std::nullopt;
        return Text(std::move(result));
      }
      if (unit != u'\\') {
        result.push_back(unit);
      } else if (isAtEnd()) {
        return std::nullopt;
      } else {
        result.push_back(escaped());
      }
    }
    return std::nullopt;
  }

  // What stands behind a backslash; there is at least one unit.
  char16_t escaped() {
    const char16_t unit = units_[position_++];
    if (unit >= u'0' && unit <= u'7') {
      --position_;
      return number(8, 3);
    }
    if (unit == u'U' || unit == u'u') return number(16, 4);
    const std::size_t known = std::u16string_view(u"abfnrtv").find(unit);
    return known == std::u16string_view::npos ? unit : std::u16string_view(u"\a\b\f\n\r\t\v")[known];
  }

  char16_t number(int base, int mostDigits) {
    unsigned result = 0;
    for (int i = 0; i < mostDigits && !isAtEnd(); ++i) {
      const int digit = hexadecimalDigit(units_[position_]);
      if (digit < 0 || digit >= base) break;
      result = result * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
      ++position_;
    }
    return static_cast<char16_t>(result);
  }

  // Behind "<": pairs of hexadecimal digits, or base64 in brackets.
  std::optional<PropertyValue> data() {
    const std::size_t end = units_.find(u'>', position_);
    if (end == std::u16string_view::npos || !budget_.spend(end - position_)) return std::nullopt;
    const std::string content = text_.substring(position_, end - position_).trimmed().bytes();
    position_ = end + 1;
    if (content.size() >= 2 && content.front() == '[' && content.back() == ']') {
      auto bytes = bytesFromBase64(std::string_view(content).substr(1, content.size() - 2));
      return bytes ? std::optional(PropertyValue(PropertyData{std::move(*bytes)})) : std::nullopt;
    }
    std::string bytes;
    int high = -1;
    for (const char character : content) {
      if (isBlank(static_cast<unsigned char>(character))) continue;
      const int digit = hexadecimalDigit(static_cast<unsigned char>(character));
      if (digit < 0) return std::nullopt;
      if (high >= 0) bytes.push_back(static_cast<char>(high << 4 | digit));
      high = high >= 0 ? -1 : digit;
    }
    if (high >= 0) return std::nullopt;
    return PropertyValue(PropertyData{std::move(bytes)});
  }

  // Behind "<*": B with Y or N, I with an integer, R with a real, D with a date.
  std::optional<PropertyValue> typed() {
    const std::size_t end = units_.find(u'>', position_);
    if (end == std::u16string_view::npos || end == position_ || !budget_.spend()) return std::nullopt;
    const char16_t type = units_[position_];
    Text content = text_.substring(position_ + 1, end - position_ - 1);
    position_ = end + 1;
    if (content.length() >= 2 && content.hasPrefix("\"") && content.hasSuffix("\"")) {
      content = content.substring(1, content.length() - 2);
    }
    if (type == u'B') return PropertyValue(content == Text("Y"));
    if (type == u'R') return PropertyValue(content.doubleValue());
    if (type == u'I') return integerFrom(content);
    if (type != u'D') return std::nullopt;
    const auto date = dateWithZone(content.bytes());
    return date ? std::optional(PropertyValue(*date)) : std::nullopt;
  }

  static std::optional<PropertyValue> integerFrom(const Text& content) {
    const double number = content.doubleValue();
    if (number >= -9.0e15 && number <= 9.0e15) return PropertyValue(static_cast<std::int64_t>(number));
    return PropertyValue(number);
  }

  Text text_;
  std::u16string_view units_;
  std::size_t position_ = 0;
  PropertyListBudget budget_;
};

}  // namespace

std::optional<PropertyValue> readOldPropertyList(const Text& text, const PropertyListLimits& limits) {
  return OldReader(text, limits).readList();
}

std::optional<PropertyDictionary> readOldStringTable(const Text& text, const PropertyListLimits& limits) {
  return OldReader(text, limits).readTable();
}

}  // namespace halvorn
