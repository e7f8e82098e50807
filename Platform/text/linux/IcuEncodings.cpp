#include "Platform/text/linux/IcuEncodings.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace halvorn::IcuEncodings {
namespace {

struct Entry {
  TextEncoding encoding;
  const char* converter;
};

constexpr TextEncoding kUtf32 = 0x8C000100;  // with byte-order detection

constexpr TextEncoding kKorean7Bit = 0x80000840;

constexpr Entry kEntries[] = {
    {TextEncodings::ascii, "US-ASCII"},
    {3, "EUC-JP"},
    {TextEncodings::utf8, "UTF-8"},
    {TextEncodings::latin1, "ISO-8859-1"},
    {8, "Shift_JIS"},
    {TextEncodings::latin2, "ISO-8859-2"},
    {TextEncodings::unicode, "UTF-16"},
    {11, "windows-1251"},
    {TextEncodings::windowsLatin1, "windows-1252"},
    {13, "windows-1253"},
    {TextEncodings::windowsTurkish, "windows-1254"},
    {TextEncodings::windowsLatin2, "windows-1250"},
    {21, "ISO-2022-JP"},
    {TextEncodings::macRoman, "macintosh"},
    {TextEncodings::utf16BigEndian, "UTF-16BE"},
    {TextEncodings::utf16LittleEndian, "UTF-16LE"},
    {TextEncodings::utf32BigEndian, "UTF-32BE"},
    {TextEncodings::utf32LittleEndian, "UTF-32LE"},
    {kUtf32, "UTF-32"},
    {0x80000007, "x-mac-cyrillic"},
    {0x80000203, "ISO-8859-3"},
    {0x80000204, "ISO-8859-4"},
    {0x80000205, "ISO-8859-5"},
    {0x80000206, "ISO-8859-6"},
    {0x80000207, "ISO-8859-7"},
    {0x80000208, "ISO-8859-8"},
    {TextEncodings::latin5, "ISO-8859-9"},
    {0x8000020D, "ISO-8859-13"},
    {0x8000020F, "ISO-8859-15"},
    {0x80000400, "IBM437"},
    {0x80000410, "IBM850"},
    {0x80000412, "IBM852"},
    {0x80000419, "IBM866"},
    {0x80000505, "windows-1255"},
    {0x80000506, "windows-1256"},
    {0x80000507, "windows-1257"},
    {0x80000508, "windows-1258"},
    {0x80000631, "GBK"},
    {0x80000632, "GB18030"},
    {kKorean7Bit, "ISO-2022-KR"},
    {0x80000930, "GB2312"},
    {0x80000940, "EUC-KR"},
    {0x80000A02, "KOI8-R"},
    {0x80000A03, "Big5"},
    {0x80000A08, "KOI8-U"},
};

// The name that ICU itself uses; null when it knows no such converter.
const char* canonicalName(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  const char* const canonical = ucnv_getAlias(name, 0, &error);
  return U_SUCCESS(error) ? canonical : nullptr;
}

}  // namespace

const char* converterForReading(TextEncoding encoding) {
  for (const Entry& entry : kEntries) {
    if (entry.encoding == encoding) return entry.converter;
  }
  return nullptr;
}

const char* converterForWriting(TextEncoding encoding) {
  if (encoding == TextEncodings::unicode) return "UTF-16BE";
  return encoding == kUtf32 ? "UTF-32BE" : converterForReading(encoding);
}

Misreading misreadingOf(TextEncoding encoding) {
  // Tables for the machines of one maker, where 0x1A, 0x1C and 0x7F changed places.
  constexpr TextEncoding kMixingControlCharacters[] = {8, 0x80000400, 0x80000410, 0x80000412, 0x80000419};
  if (encoding == kKorean7Bit) return {u"\x1C\x7F\x1A\u20A9\\", u"\x1A\x1C\x7F\\\u20A9"};
  const bool mixes = std::find(std::begin(kMixingControlCharacters), std::end(kMixingControlCharacters),
                               encoding) != std::end(kMixingControlCharacters);
  return mixes ? Misreading{u"\x1C\x7F\x1A", u"\x1A\x1C\x7F"} : Misreading();
}

std::optional<TextEncoding> encodingNamed(const char* name) {
  const char* const wanted = canonicalName(name);
  if (wanted == nullptr) return std::nullopt;
  for (const Entry& entry : kEntries) {
    const char* const known = canonicalName(entry.converter);
    if (known != nullptr && std::strcmp(known, wanted) == 0) return entry.encoding;
  }
  return std::nullopt;
}

}  // namespace halvorn::IcuEncodings
