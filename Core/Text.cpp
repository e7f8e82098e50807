#include "Core/Text.h"

#include <algorithm>

#include "Core/MacRoman.h"
#include "Core/TextPieces.h"

namespace halvorn {
namespace {

// A part may keep a buffer of up to that many times its own length.
constexpr std::size_t kLargestShare = 8;

void appendScalar(std::u16string& units, char32_t scalar) {
  if (scalar < 0x10000) {
    units.push_back(static_cast<char16_t>(scalar));
    return;
  }
  const char32_t offset = scalar - 0x10000;
  units.push_back(static_cast<char16_t>(0xD800 + (offset >> 10)));
  units.push_back(static_cast<char16_t>(0xDC00 + (offset & 0x3FF)));
}

// The length in bytes of the well-formed sequence at `index`, and its scalar; 0 when there is none.
std::size_t decodeSequence(std::string_view bytes, std::size_t index, char32_t& scalar) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char first = byteAt(index);
  std::size_t length = 0;
  char32_t smallest = 0;
  if (first < 0x80) {
    scalar = first;
    return 1;
  } else if (first >= 0xC2 && first < 0xE0) {
    length = 2, smallest = 0x80, scalar = first & 0x1F;
  } else if (first >= 0xE0 && first < 0xF0) {
    length = 3, smallest = 0x800, scalar = first & 0x0F;
  } else if (first >= 0xF0 && first < 0xF5) {
    length = 4, smallest = 0x10000, scalar = first & 0x07;
  } else {
    return 0;
  }
  if (index + length > bytes.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned char next = byteAt(index + i);
    if ((next & 0xC0) != 0x80) return 0;
    scalar = scalar << 6 | (next & 0x3F);
  }
  const bool isSurrogate = scalar >= 0xD800 && scalar < 0xE000;
  return scalar < smallest || isSurrogate || scalar > 0x10FFFF ? 0 : length;
}

enum class Invalid { Keep, Refuse };

std::optional<std::u16string> decode(std::string_view bytes, Invalid invalid) {
  std::u16string units;
  units.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size();) {
    char32_t scalar = 0;
    const std::size_t length = decodeSequence(bytes, i, scalar);
    if (length == 0) {
      if (invalid == Invalid::Refuse) return std::nullopt;
      units.push_back(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(bytes[i])));
      ++i;
      continue;
    }
    appendScalar(units, scalar);
    i += length;
  }
  return units;
}

void appendUtf8(std::string& bytes, char32_t scalar) {
  const auto tail = [&](int shift) { bytes.push_back(static_cast<char>(0x80 | (scalar >> shift & 0x3F))); };
  if (scalar < 0x80) {
    bytes.push_back(static_cast<char>(scalar));
  } else if (scalar < 0x800) {
    bytes.push_back(static_cast<char>(0xC0 | scalar >> 6));
    tail(0);
  } else if (scalar < 0x10000) {
    bytes.push_back(static_cast<char>(0xE0 | scalar >> 12));
    tail(6), tail(0);
  } else {
    bytes.push_back(static_cast<char>(0xF0 | scalar >> 18));
    tail(12), tail(6), tail(0);
  }
}

bool isTrimmable(char16_t unit) {
  return (unit >= 0x09 && unit <= 0x0D) || unit == 0x20 || unit == 0x85 || unit == 0xA0 || unit == 0x1680 ||
         (unit >= 0x2000 && unit <= 0x200B) || unit == 0x2028 || unit == 0x2029 || unit == 0x202F ||
         unit == 0x205F || unit == 0x3000;
}

}  // namespace

Text::Text(const char* utf8) : Text(std::string_view(utf8)) {}
Text::Text(std::string_view utf8) : Text(*decode(utf8, Invalid::Keep)) {}
Text::Text(const std::string& utf8) : Text(std::string_view(utf8)) {}
Text::Text(std::u16string units) {
  if (units.empty()) return;
  buffer_ = std::make_shared<const std::u16string>(std::move(units));
  units_ = *buffer_;
}

std::optional<Text> Text::fromStrictUtf8(std::string_view bytes) {
  auto units = decode(bytes, Invalid::Refuse);
  if (!units) return std::nullopt;
  return Text(std::move(*units));
}

Text Text::fromMacRoman(std::string_view bytes) {
  std::u16string units;
  units.reserve(bytes.size());
  for (const char byte : bytes) units.push_back(unitFromMacRoman(static_cast<unsigned char>(byte)));
  return Text(std::move(units));
}

Text Text::fromScalar(char32_t scalar) {
  std::u16string units;
  appendScalar(units, scalar);
  return Text(std::move(units));
}

std::string Text::bytes() const {
  std::string result;
  result.reserve(units_.size());
  for (std::size_t i = 0; i < units_.size(); ++i) {
    const char16_t unit = units_[i];
    const bool isHigh = unit >= 0xD800 && unit < 0xDC00;
    const char16_t next = i + 1 < units_.size() ? units_[i + 1] : u'\0';
    if (isHigh && next >= 0xDC00 && next < 0xE000) {
      appendUtf8(result, 0x10000 + (static_cast<char32_t>(unit - 0xD800) << 10) + (next - 0xDC00u));
      ++i;
    } else if (unit >= 0xDC80 && unit <= 0xDCFF) {
      result.push_back(static_cast<char>(unit - 0xDC00));
    } else {
      appendUtf8(result, unit);
    }
  }
  return result;
}

bool Text::isSameObject(const Text& other) const {
  return units_.data() == other.units_.data() && units_.size() == other.units_.size();
}

Text Text::substring(std::size_t start, std::size_t count) const {
  if (start == 0 && count >= length()) return *this;
  if (start >= length()) return Text();
  count = std::min(count, length() - start);
  const bool isShared = buffer_->capacity() <= kPage || count >= buffer_->capacity() / kLargestShare;
  return isShared ? sharedPart(start, count) : Text(std::u16string(units_.substr(start, count)));
}

bool Text::hasPrefix(const Text& prefix) const {
  return !prefix.isEmpty() && units().starts_with(prefix.units());
}
bool Text::hasSuffix(const Text& suffix) const {
  return !suffix.isEmpty() && units().ends_with(suffix.units());
}
bool Text::contains(const Text& part) const { return find(part) != npos; }
std::size_t Text::find(const Text& part, std::size_t start) const {
  return units().find(part.units(), start);
}
std::size_t Text::find(char16_t unit, std::size_t start) const { return units().find(unit, start); }

std::vector<Text> Text::split(char16_t separator) const {
  std::vector<Text> parts;
  TextPieces pieces(*this);
  std::size_t start = 0;
  while (true) {
    const std::size_t end = std::min(find(separator, start), length());
    pieces.cutInto(parts, start, end - start);
    if (end == length()) return parts;
    start = end + 1;
  }
}

Text Text::replacing(const Text& part, const Text& with) const {
  if (part.isEmpty() || !contains(part)) return *this;
  std::u16string result;
  std::size_t start = 0;
  for (std::size_t at = find(part); at != npos; at = find(part, start)) {
    result.append(units().substr(start, at - start)).append(with.units());
    start = at + part.length();
  }
  result.append(units().substr(start));
  return Text(std::move(result));
}

Text Text::trimmed() const {
  const auto text = units();
  const auto first = std::find_if_not(text.begin(), text.end(), isTrimmable);
  const auto last = std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), isTrimmable).base();
  return substring(static_cast<std::size_t>(first - text.begin()), static_cast<std::size_t>(last - first));
}

bool operator==(const Text& a, const Text& b) { return a.isSameObject(b) || a.units_ == b.units_; }
std::strong_ordering operator<=>(const Text& a, const Text& b) { return a.units_.compare(b.units_) <=> 0; }

Text operator+(const Text& a, const Text& b) {
  if (a.isEmpty()) return b;
  if (b.isEmpty()) return a;
  std::u16string units;
  units.reserve(a.length() + b.length());
  return Text(std::move(units.append(a.units_).append(b.units_)));
}

Text join(const std::vector<Text>& parts, const Text& separator) {
  std::u16string result;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) result.append(separator.units());
    result.append(parts[i].units());
  }
  return Text(std::move(result));
}

}  // namespace halvorn
