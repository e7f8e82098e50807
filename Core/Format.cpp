#include "Core/Format.h"

#include <cstdio>
#include <string>

#include "Core/RealPrinting.h"

namespace halvorn {
namespace {

struct Placeholder {
  std::optional<std::size_t> position;  // counted from 0, of "%1$@"
  std::string flags;                    // with width and precision, as C has them
  char conversion = 0;
  std::size_t length = 0;  // in units, the percent sign included
};

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// Numbers in a placeholder have at most three digits, so no format can ask for a gigabyte of blanks.
constexpr std::size_t kLongestNumber = 3;

std::size_t digitsAt(std::u16string_view text, std::size_t start) {
  std::size_t i = start;
  while (i < text.size() && isDigit(text[i])) ++i;
  return i - start;
}

std::string ascii(std::u16string_view text) { return std::string(text.begin(), text.end()); }

std::optional<Placeholder> placeholderAt(std::u16string_view text, std::size_t percent) {
  Placeholder result;
  std::size_t i = percent + 1;
  const std::size_t positionDigits = digitsAt(text, i);
  if (positionDigits > 0 && i + positionDigits < text.size() && text[i + positionDigits] == u'$') {
    if (positionDigits > kLongestNumber) return std::nullopt;
    const int number = std::stoi(ascii(text.substr(i, positionDigits)));
    if (number < 1) return std::nullopt;
    result.position = static_cast<std::size_t>(number - 1);
    i += positionDigits + 1;
  }
  const std::size_t flagsStart = i;
  while (i < text.size() && std::u16string_view(u"-+ #0").find(text[i]) != std::u16string_view::npos) ++i;
  if (i - flagsStart > kLongestNumber) return std::nullopt;
  const std::size_t width = digitsAt(text, i);
  i += width;
  std::size_t precision = 0;
  if (i < text.size() && text[i] == u'.') {
    precision = digitsAt(text, ++i);
    i += precision;
  }
  if (width > kLongestNumber || precision > kLongestNumber || i >= text.size()) return std::nullopt;
  if (std::u16string_view(u"@dius%xXf").find(text[i]) == std::u16string_view::npos) return std::nullopt;
  result.flags = ascii(text.substr(flagsStart, i - flagsStart));
  result.conversion = static_cast<char>(text[i]);
  // Texts are never padded or cut, and so "100% sure" is no placeholder.
  if ((text[i] == u'@' || text[i] == u's') && !result.flags.empty()) return std::nullopt;
  result.length = i + 1 - percent;
  return result;
}

// Whole numbers only: what C prints of them is the same in every locale.
template <std::integral Value>
Text printed(const std::string& pattern, Value value) {
  const int length = std::snprintf(nullptr, 0, pattern.c_str(), value);
  if (length < 0) return Text();
  std::string buffer(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(buffer.data(), buffer.size(), pattern.c_str(), value);
  buffer.pop_back();
  return buffer;
}

// nullopt when the argument is of another kind than the placeholder wants.
std::optional<Text> filled(const Placeholder& placeholder, const FormatArgument& argument) {
  const std::string percent = "%" + placeholder.flags;
  switch (placeholder.conversion) {
    case '@':
      if (argument.integer()) return printed("%lld", static_cast<long long>(*argument.integer()));
      if (argument.real()) return printedBriefly(*argument.real(), 6);
      return *argument.text();
    case 's':
      if (!argument.text()) return std::nullopt;
      return *argument.text();
    case 'f':
      if (argument.integer())
        return printedInFull(static_cast<double>(*argument.integer()), placeholder.flags);
      if (!argument.real()) return std::nullopt;
      return printedInFull(*argument.real(), placeholder.flags);
    case 'd':
    case 'i':
      if (!argument.integer()) return std::nullopt;
      return printed(percent + "lld", static_cast<long long>(*argument.integer()));
    default:  // u, x, X
      if (!argument.integer()) return std::nullopt;
      return printed(percent + "ll" + placeholder.conversion,
                     static_cast<unsigned long long>(*argument.integer()));
  }
}

}  // namespace

Text formatWithArguments(const Text& format, const std::vector<FormatArgument>& arguments) {
  const std::u16string_view text = format.units();
  if (text.find(u'%') == std::u16string_view::npos) return format;
  std::u16string result;
  std::size_t next = 0;
  for (std::size_t i = 0; i < text.size();) {
    const auto placeholder = text[i] == u'%' ? placeholderAt(text, i) : std::nullopt;
    if (!placeholder) {
      result.push_back(text[i++]);
      continue;
    }
    const std::u16string_view written = text.substr(i, placeholder->length);
    i += placeholder->length;
    if (placeholder->conversion == '%') {
      result.push_back(u'%');
      continue;
    }
    const std::size_t position = placeholder->position ? *placeholder->position : next++;
    const auto value = position < arguments.size() ? filled(*placeholder, arguments[position]) : std::nullopt;
    result.append(value ? value->units() : written);
  }
  return Text(std::move(result));
}

}  // namespace halvorn
