#include "Core/ForPeople.h"

#include <gtest/gtest.h>

#include <string>

#include "Core/Log.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

TEST(ForPeople, AnOrdinaryNameIsTheSameObject) {
  for (const char* name : {"Sample Studio 2.1", "Größe", "東京", "عربي", "C++ (beta)", ""}) {
    const Text text(name);
    EXPECT_TRUE(undisguised(text).isSameObject(text)) << name;
  }
}

TEST(ForPeople, WhatNobodySeesIsShownAsWhatItIs) {
  const struct {
    const char* name;
    const char* shown;
    const char* why;
  } kCases[] = {{"a\u202Egpj.exe", "a\\u{202E}gpj.exe", "a right-to-left override"},
                {"a\u2066b\u2069c", "a\\u{2066}b\\u{2069}c", "isolates, which would end ours"},
                {"Pay\u200BPal", "Pay\\u{200B}Pal", "a blank without width"},
                {"Pay\u00ADPal", "Pay\\u{00AD}Pal", "a soft hyphen"},
                {"a\u034Fb", "a\\u{034F}b", "a grapheme joiner"},
                {"a\u3164b", "a\\u{3164}b", "a filler"},
                {"a\u2800b", "a\\u{2800}b", "an empty Braille cell"},
                {"a\uFE0Fb", "a\\u{FE0F}b", "a variation of a letter"},
                {"a\U000E0041b", "a\\u{E0041}b", "a tag"},
                {"a\nb\tc", "a\\u{000A}b\\u{0009}c", "controls"},
                {"a\u200Db", "a\\u{200D}b", "a joiner where nothing joins"},
                {"\u200Dا", "\\u{200D}ا", "a joiner at the start"}};
  for (const auto& each : kCases) EXPECT_EQ(undisguised(each.name), Text(each.shown)) << each.why;
}

TEST(ForPeople, WhatBelongsToLettersAndPicturesStays) {
  for (const char* name : {"می\u200Cخواهم", "\u1820\u200D\u1820", "क्\u200Dष", "👨\u200D👩\u200D👧",
                           "❤\uFE0F\u200D🔥", "1\uFE0F\u20E3", "㊙\uFE0F"}) {
    const Text text(name);
    EXPECT_EQ(undisguised(text), text) << name;
  }
}

TEST(ForPeople, BytesThatAreNoCharactersStayAsTheyAre) {
  const Text name("a\xE4\u200B");
  EXPECT_EQ(undisguised(name), Text("a\xE4\\u{200B}"));
}

TEST(ForPeople, ANameIsIsolatedWhereItOrTheSentenceRunsFromRightToLeft) {
  EXPECT_EQ(formatForPeople("Install %@ %@", "Sample", "2.1"), Text("Install Sample 2.1"));
  EXPECT_EQ(formatForPeople("Install %@", "שלום!"), Text("Install \u2068שלום!\u2069"));
  EXPECT_EQ(formatForPeople("התקנת %@", "C++"), Text("התקנת \u2068C++\u2069"));
  EXPECT_EQ(formatForPeople("%1$@ %2$@ %1$@", "א", "2"), Text("\u2068א\u2069 \u20682\u2069 \u2068א\u2069"));
  EXPECT_EQ(formatForPeople("%d of %@", 3, std::nullopt), Text("3 of (null)"));
}

TEST(ForPeople, ANameCannotEndItsIsolation) {
  EXPECT_EQ(formatForPeople("Install %@ now", "א\u2069\u202Eb"),
            Text("Install \u2068א\\u{2069}\\u{202E}b\u2069 now"));
}

TEST(ForPeople, TheLogEscapesTheSameCharacters) {
  for (char32_t character = 1; character < 0x110000; ++character) {
    if (!isInvisible(character) || character == '\n' || character == '\r' || character == '\t') continue;
    std::u16string units;
    if (character > 0xFFFF) units.push_back(static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10U)));
    units.push_back(static_cast<char16_t>(character > 0xFFFF ? 0xDC00 + (character & 0x3FFU) : character));
    ASSERT_EQ(Log::escapedForLog(Text(std::move(units))), Text(shownAsNumber(character)))
        << std::hex << static_cast<unsigned>(character);
  }
}

}  // namespace
}  // namespace halvorn
