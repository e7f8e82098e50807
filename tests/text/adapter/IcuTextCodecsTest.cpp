#include <gtest/gtest.h>

#include "Platform/text/linux/IcuTextCodecs.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

TEST(IcuTextCodecs, KnowsNamesAliasesAndOtherEncodings) {
  const IcuTextCodecs codecs;
  const std::pair<const char*, TextEncoding> rows[] = {
      {"utf8", 4},
      {"latin1", 5},
      {"mac", 30},
      {"windows-1252", 12},
      {"cp1252", 12},
      {"Shift_JIS", 8},
      {"EUC-JP", 3},
      {"iso-8859-2", 9},
      {"KOI8-R", 0x80000A02},
      {"big5", 0x80000A03},
      {"gb18030", 0x80000632},
      {"iso-8859-15", 0x8000020F},
      {"UTF-32BE", 0x98000100},
      {"iso-2022-jp", 21},
  };
  for (const auto& [name, encoding] : rows) EXPECT_EQ(codecs.encodingForIanaName(name), encoding) << name;
  EXPECT_EQ(codecs.decode("\x93\xFA\x96\x7B", 8), Text("日本"));
  EXPECT_EQ(codecs.encode("€", 12), "\x80");
  EXPECT_EQ(codecs.encode("Привет", 0x80000A02), "\xF0\xD2\xC9\xD7\xC5\xD4");
}

TEST(IcuTextCodecs, ControlCharactersAreThemselvesInEveryEncodingThatHoldsAscii) {
  const IcuTextCodecs codecs;
  int count = 0;
  for (const char* const name :
       {"Shift_JIS",    "IBM437",       "IBM850",       "IBM852",       "IBM866",         "ISO-2022-KR",
        "ISO-2022-JP",  "EUC-JP",       "EUC-KR",       "GBK",          "GB2312",         "GB18030",
        "Big5",         "KOI8-R",       "KOI8-U",       "macintosh",    "x-mac-cyrillic", "windows-1250",
        "windows-1251", "windows-1252", "windows-1253", "windows-1254", "windows-1255",   "windows-1256",
        "windows-1257", "windows-1258", "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-3",     "ISO-8859-4",
        "ISO-8859-5",   "ISO-8859-6",   "ISO-8859-7",   "ISO-8859-8",   "ISO-8859-9",     "ISO-8859-13",
        "ISO-8859-15",  "US-ASCII",     "UTF-8"}) {
    const auto encoding = codecs.encodingForIanaName(name);
    ASSERT_TRUE(encoding) << name;
    const bool isStateful = std::string_view(name).starts_with("ISO-2022");
    for (char16_t unit = 0; unit < 0x80; ++unit) {
      // Escape and the two shifts are not text there.
      if (isStateful && (unit == 0x0E || unit == 0x0F || unit == 0x1B)) continue;
      const std::string byte(1, static_cast<char>(unit));
      const Text text(std::u16string(1, unit));
      EXPECT_EQ(codecs.decode(byte, *encoding), text) << name << " " << static_cast<int>(unit);
      const auto encoded = codecs.encode(text, *encoding);
      ASSERT_TRUE(encoded) << name << " " << static_cast<int>(unit);
      // ISO-2022-KR announces itself first.
      EXPECT_TRUE(encoded->ends_with(byte)) << name << " " << static_cast<int>(unit);
      ++count;
    }
  }
  EXPECT_EQ(count, 39 * 128 - 2 * 3);
}

TEST(IcuTextCodecs, ControlCharactersAmongOthersComeBackAsTheyWere) {
  const IcuTextCodecs codecs;
  const std::pair<const char*, const char*> rows[] = {{"Shift_JIS", "\x1A\x93\xFA\x1C\x96\x7B\x7F"},
                                                      {"IBM437", "\x84\x1A\x94\x7F\x81"},
                                                      {"IBM866", "\x8F\x1C\xE0"}};
  const Text texts[] = {"\u001A日\u001C本\u007F", "ä\u001Aö\u007Fü", "П\u001Cр"};
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const auto encoding = codecs.encodingForIanaName(rows[i].first);
    ASSERT_TRUE(encoding);
    EXPECT_EQ(codecs.decode(rows[i].second, *encoding), texts[i]) << rows[i].first;
    EXPECT_EQ(codecs.encode(texts[i], *encoding), rows[i].second) << rows[i].first;
  }
}

TEST(IcuTextCodecs, TheSignOfTheWonIsNoBackslash) {
  const IcuTextCodecs codecs;
  const auto korean = codecs.encodingForIanaName("ISO-2022-KR");
  ASSERT_TRUE(korean);
  EXPECT_EQ(codecs.encode("₩", *korean), std::nullopt) << "it would come back as a backslash";
  EXPECT_EQ(codecs.decode("\x1B$)Ca\\b\x0E\x30\x21\x0F", *korean), Text("a\\b가"));
}

}  // namespace
}  // namespace halvorn
