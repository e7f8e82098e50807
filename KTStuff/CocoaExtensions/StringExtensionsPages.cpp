// The text of an HTML page in the character set that it declares.
#include <algorithm>
#include <string>

#include "KTStuff/CocoaExtensions/StringExtensionsEncodings.h"
#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

namespace halvorn::StringExtensions {
namespace {

constexpr char16_t lowered(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

// Where a word of lower-case ASCII letters stands, in any case; npos for nowhere.
std::size_t findWord(std::u16string_view units, std::u16string_view word, std::size_t start = 0) {
  for (std::size_t at = start; at + word.size() <= units.size(); ++at) {
    const char16_t first = word.front();
    at = findUnit(units, at, [first](char16_t unit) { return lowered(unit) == first; });
    if (at == Text::npos) return at;
    const std::u16string_view here = units.substr(at, word.size());
    const auto isSame = [](char16_t a, char16_t b) { return lowered(a) == b; };
    if (std::equal(here.begin(), here.end(), word.begin(), word.end(), isSame)) return at;
  }
  return Text::npos;
}

bool isNameUnit(char16_t unit) {
  const char16_t letter = lowered(unit);
  return (letter >= u'a' && letter <= u'z') || (unit >= u'0' && unit <= u'9') || unit == u'-';
}

// The character set that the first "<meta" or anything behind it names; "" for none.
Text declaredCharacterSet(std::u16string_view page) {
  constexpr std::u16string_view kCharset = u"charset";
  const std::size_t meta = findWord(page, u"<meta");
  if (meta == Text::npos) return Text();
  const std::size_t charset = findWord(page, kCharset, meta);
  if (charset == Text::npos) return Text();
  std::u16string_view rest = page.substr(charset + kCharset.size());
  while (!rest.empty() && (rest[0] < 33 || rest[0] == u'=')) rest.remove_prefix(1);
  const auto end = std::find_if_not(rest.begin(), rest.end(), isNameUnit);
  return Text(std::u16string(rest.begin(), end));
}

}  // namespace

Text stringWithHTML(std::string_view data, const TextCodecs& codecs, const Log& log) {
  // Every byte is a character of Latin-1.
  const Text latin = codecs.decode(data, TextEncodings::latin1).value_or(Text());
  if (findWord(latin.units(), u"html") == Text::npos) {
    log("no HTML in Latin");
    const auto inUnicode = codecs.decode(data, TextEncodings::unicode);
    if (inUnicode && findWord(inUnicode->units(), u"html") != Text::npos) return *inUnicode;
    log("no HTML in Unicode");
    return latin;
  }
  const Text name = declaredCharacterSet(latin.units());
  const auto encoding = name.isEmpty() ? std::nullopt : codecs.encodingForIanaName(name);
  if (!encoding || *encoding == TextEncodings::latin1) return latin;
  return codecs.decode(data, *encoding).value_or(latin);
}

}  // namespace halvorn::StringExtensions
