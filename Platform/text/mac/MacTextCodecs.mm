#include "Platform/text/mac/MacTextCodecs.h"

#import <CoreFoundation/CoreFoundation.h>

#include <utility>

#include "Platform/running/mac/Conversions.h"

namespace halvorn {
namespace {

using namespace TextEncodings;

constexpr bool isPair(char16_t first, char16_t second) {
  return (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00;
}

bool hasLoneSurrogate(std::u16string_view units) {
  for (std::size_t i = 0; i < units.size(); ++i) {
    if ((units[i] & 0xF800) != 0xD800) continue;
    if (i + 1 == units.size() || !isPair(units[i], units[i + 1])) return true;
    ++i;
  }
  return false;
}

// The byte-order mark of an encoding that has one and order.
std::string_view markOf(TextEncoding encoding) {
  switch (encoding) {
    case utf8:
      return "\xEF\xBB\xBF";
    case utf16BigEndian:
      return "\xFE\xFF";
    case utf16LittleEndian:
      return "\xFF\xFE";
    case utf32BigEndian:
      return std::string_view("\0\0\xFE\xFF", 4);
    case utf32LittleEndian:
      return std::string_view("\xFF\xFE\0\0", 4);
    default:
      return "";
  }
}

bool isUtf16(TextEncoding encoding) { return encoding == utf16BigEndian || encoding == utf16LittleEndian; }

// A text consists of UTF-16: there is nothing to convert but the order of the bytes.
std::optional<Text> textOfUtf16(std::string_view bytes, TextEncoding encoding) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  const std::size_t high = encoding == utf16BigEndian ? 0 : 1;
  std::u16string units;
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    const auto byteAt = [&](std::size_t place) { return static_cast<unsigned char>(bytes[i + place]); };
    units.push_back(static_cast<char16_t>(byteAt(high) << 8 | byteAt(1 - high)));
  }
  return Text(std::move(units));
}

std::string utf16Of(const Text& text, TextEncoding encoding) {
  std::string bytes;
  for (const char16_t unit : text.units()) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += encoding == utf16BigEndian ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}

// Unicode by its mark, else with the high byte first.
TextEncoding orderOf(std::string_view bytes) {
  return bytes.starts_with(markOf(utf16LittleEndian)) ? utf16LittleEndian : utf16BigEndian;
}

std::optional<std::string> bytesIn(NSString* string, TextEncoding encoding) {
  NSData* const data = [string dataUsingEncoding:static_cast<NSStringEncoding>(encoding)
                            allowLossyConversion:NO];
  return data != nil ? std::optional(bytesOf(data)) : std::nullopt;
}

// The system's strings take some bytes for what they nearly are: those of an encoding that can write every text are of
// it when they are what it writes.
bool isExactly(NSString* string, std::string_view bytes, TextEncoding encoding) {
  if (markOf(encoding).empty()) return true;
  const auto written = bytesIn(string, encoding);
  return written && (*written == bytes || *written == std::string(markOf(encoding)).append(bytes));
}

std::optional<Text> textIn(std::string_view bytes, TextEncoding encoding) {
  NSString* const string =
      [[[NSString alloc] initWithData:dataOf(bytes)
                             encoding:static_cast<NSStringEncoding>(encoding)] autorelease];
  return isExactly(string, bytes, encoding) ? textOf(string) : std::nullopt;
}

}  // namespace

std::optional<Text> MacTextCodecs::decode(std::string_view bytes, TextEncoding encoding) const {
  if (encoding == 0) return std::nullopt;
  return answered(std::optional<Text>(), [&]() -> std::optional<Text> {
    const TextEncoding exact = encoding == unicode ? orderOf(bytes) : encoding;
    std::string_view rest = bytes;
    if (rest.starts_with(markOf(exact))) rest.remove_prefix(markOf(exact).size());
    const auto text = isUtf16(exact)      ? textOfUtf16(rest, exact)
                      : exact == macRoman ? std::optional(Text::fromMacRoman(rest))
                                          : textIn(rest, exact);
    return text && !hasLoneSurrogate(text->units()) ? text : std::nullopt;
  });
}

std::optional<std::string> MacTextCodecs::encode(const Text& text, TextEncoding encoding) const {
  if (encoding == 0 || hasLoneSurrogate(text.units())) return std::nullopt;
  return answered(std::optional<std::string>(), [&] {
    const TextEncoding exact = encoding == unicode ? utf16BigEndian : encoding;
    if (isUtf16(exact)) return std::optional(utf16Of(text, exact));
    auto bytes = bytesIn(stringOf(text), exact);
    const std::string_view mark = markOf(exact);
    const bool isMarkOfText = !text.isEmpty() && text.at(0) == u'\uFEFF';
    if (bytes && !mark.empty() && !isMarkOfText && bytes->starts_with(mark)) bytes->erase(0, mark.size());
    return bytes;
  });
}

std::optional<TextEncoding> MacTextCodecs::encodingForIanaName(const Text& name) const {
  return answered(std::optional<TextEncoding>(), [&]() -> std::optional<TextEncoding> {
    const CFStringEncoding found = CFStringConvertIANACharSetNameToEncoding((CFStringRef)stringOf(name));
    if (found == kCFStringEncodingInvalidId) return std::nullopt;
    const auto number = CFStringConvertEncodingToNSStringEncoding(found);
    if (number == kCFStringEncodingInvalidId) return std::nullopt;
    return static_cast<TextEncoding>(number);
  });
}

// The system's own guess comes alone and says nothing of how sure it is.
std::vector<DetectedEncoding> MacTextCodecs::detectEncodings(std::string_view bytes) const {
  return answered(std::vector<DetectedEncoding>(), [&] {
    const NSStringEncoding found = [NSString stringEncodingForData:dataOf(bytes)
                                                   encodingOptions:nil
                                                   convertedString:nullptr
                                               usedLossyConversion:nullptr];
    std::vector<DetectedEncoding> guesses;
    if (found != 0) guesses.push_back({static_cast<TextEncoding>(found), 50});
    return guesses;
  });
}

}  // namespace halvorn
