// Scalars and virtual characters.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <type_traits>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;

std::vector<char32_t> scalarsOf(const Text& text) {
  std::vector<char32_t> scalars;
  forUTF32Characters(text, [&](char32_t scalar) { scalars.push_back(scalar); });
  return scalars;
}

TEST(NumberOfUnicodeCharacters, APairIsOneAndALoneSurrogateIsOne) {
  const std::pair<Text, std::uint32_t> rows[] = {
      {"", 0},
      {"a", 1},
      {"\U0001F600", 1},
      {Text(u"\xD83D"), 1},
      {Text(u"\xDE00"), 1},
      {Text(u"\xDE00\xD83D"), 2},
      {Text(u"\xD83D\xD83D\xDE00\xDE00"), 3},
      {"A\U0001F600B", 3},
  };
  for (const auto& [text, count] : rows) EXPECT_EQ(numberOfUnicodeCharacters(text), count);
}

TEST(ForUTF32Characters, PairsAreCombinedAndLoneLowSurrogatesReported) {
  EXPECT_EQ(scalarsOf("A\U0001F600\U0010FFFFB"), (std::vector<char32_t>{'A', 0x1F600, 0x10FFFF, 'B'}));
  EXPECT_EQ(scalarsOf(Text(u"a\xDE00"
                           u"b")),
            (std::vector<char32_t>{'a', 0xDE00, 'b'}));
  EXPECT_EQ(scalarsOf(""), std::vector<char32_t>());
}

TEST(ForUTF32Characters, ALoneHighSurrogateIsDroppedTogetherWithTheUnitThatFollows) {
  EXPECT_EQ(scalarsOf(Text(u"\xD83D"
                           u"Ab")),
            (std::vector<char32_t>{'b'}));
  EXPECT_EQ(scalarsOf(Text(u"a\xD83D")), (std::vector<char32_t>{'a'}));
  EXPECT_EQ(scalarsOf(Text(u"\xD83D\xD83D\xDE00")), (std::vector<char32_t>{0xDE00}));
}

TEST(ForUTF32Characters, PairsAreFoundAtEveryPlaceInALongText) {
  for (std::size_t before = 0; before < 40; ++before) {
    const Text text = repeated("a", static_cast<std::int32_t>(before)) + "\U0001F600" + repeated("b", 20);
    const auto scalars = scalarsOf(text);
    ASSERT_EQ(scalars.size(), before + 21);
    EXPECT_EQ(scalars[before], 0x1F600u);
  }
}

TEST(SequenceStrings, WriteUnitsAndScalarsAsHexadecimalNumbers) {
  EXPECT_EQ(UTF16SequenceString("A\U0001F600"), Text("0041,D83D,DE00"));
  EXPECT_EQ(UTF32SequenceString("A\U0001F600"), Text("0041,1F600"));
  EXPECT_EQ(UTF32SequenceString("\U0010FFFF"), Text("10FFFF"));
}

TEST(SequenceStrings, AnEmptyTextGivesTheEmptyText) {
  EXPECT_EQ(UTF16SequenceString(""), Text(""));
  EXPECT_EQ(UTF32SequenceString(""), Text(""));
}

TEST(SequenceStrings, AHighSurrogateFollowedByAGivesNoScalar) {
  EXPECT_EQ(UTF32SequenceString(Text(u"\xD83D"
                                     u"A")),
            Text(""));
  EXPECT_EQ(UTF16SequenceString(Text(u"\xD83D"
                                     u"A")),
            Text("D83D,0041"));
}

TEST(LongCharacterAtIndex, APairIsReadFromItsFirstHalf) {
  const Text text = "A\U0001F600";
  EXPECT_EQ(longCharacterAtIndex(text, 0), U'A');
  EXPECT_EQ(longCharacterAtIndex(text, 1), 0x1F600u);
  EXPECT_EQ(longCharacterAtIndex(text, 2), 0xDE00u);  // the middle of the pair
  EXPECT_EQ(longCharacterAtIndex(Text(u"a\xD83D"), 1), 0xD83Du);
  EXPECT_EQ(longCharacterAtIndex(Text(u"\xD83D"
                                      u"a"),
                                 0),
            0xD83Du);
}

TEST(LongCharacterAtIndex, AnIndexOutsideTheTextGivesZero) {
  EXPECT_EQ(longCharacterAtIndex("a", 1), 0u);
  EXPECT_EQ(longCharacterAtIndex("a", -1), 0u);
  EXPECT_EQ(longCharacterAtIndex("", 0), 0u);
}

TEST(EmojiStringWithSkinColor, AddsReplacesAndKeepsTheModifier) {
  EXPECT_EQ(emojiStringWithSkinColor("\U0001F44D", 3), Text("\U0001F44D\U0001F3FC"));
  EXPECT_EQ(emojiStringWithSkinColor("\U0001F44D\U0001F3FC", 6), Text("\U0001F44D\U0001F3FF"));
  EXPECT_EQ(emojiStringWithSkinColor("\u261D", 5), Text("\u261D\U0001F3FE"));
}

TEST(EmojiStringWithSkinColor, TheColorThatIsThereReturnsTheReceiver) {
  const Text thumb = "\U0001F44D\U0001F3FC";
  EXPECT_TRUE(emojiStringWithSkinColor(thumb, 3).isSameObject(thumb));
  const Text plain = "\U0001F44D";
  for (const std::int32_t none : {0, 7, -1})
    EXPECT_TRUE(emojiStringWithSkinColor(plain, none).isSameObject(plain));
  const Text empty = "";
  EXPECT_TRUE(emojiStringWithSkinColor(empty, 3).isSameObject(empty));
}

TEST(EmojiStringWithSkinColor, TheColors1And2ShareTheLightestModifier) {
  const char* const modifiers[] = {"\U0001F3FB", "\U0001F3FB", "\U0001F3FC",
                                   "\U0001F3FD", "\U0001F3FE", "\U0001F3FF"};
  for (std::int32_t color = 1; color <= 6; ++color) {
    EXPECT_EQ(emojiStringWithSkinColor("\U0001F44D", color), Text("\U0001F44D") + Text(modifiers[color - 1]))
        << color;
  }
}

TEST(EmojiStringWithSkinColor, TheVariationSelectorBeforeAJoinerIsDropped) {
  EXPECT_EQ(emojiStringWithSkinColor("\U0001F441\uFE0F\u200D\U0001F5E8\uFE0F", 1),
            Text("\U0001F441\U0001F3FB\u200D\U0001F5E8\uFE0F"));
  EXPECT_EQ(emojiStringWithSkinColor("\u261D\uFE0F", 1),
            Text("\u261D\U0001F3FB\uFE0F"));  // no joiner, no dropping
}

TEST(EmojiStringWithSkinColor, OnlyTheFirstModifierIsChangedAndOneAtTheStartIsNone) {
  EXPECT_EQ(emojiStringWithSkinColor("a\U0001F3FBb\U0001F3FB", 6), Text("a\U0001F3FFb\U0001F3FB"));
  EXPECT_EQ(emojiStringWithSkinColor("\U0001F3FB", 3), Text("\U0001F3FB\U0001F3FC"));
}

TEST(EmojiStringWithSkinColor, Color0OnATextWithAModifierPutsU0000InItsPlace) {
  EXPECT_EQ(emojiStringWithSkinColor("\U0001F44D\U0001F3FC", 0), Text(std::u16string(u"\xD83D\xDC4D\0", 3)));
}

TEST(VirtualCharacters, StandForFlagsSequencesAndKeycaps) {
  const VirtualCharacters characters;
  EXPECT_EQ(characters.stringWithUTF32Character(0xA0000 + 26 * 5 + 17), Text("\U0001F1EB\U0001F1F7"));
  EXPECT_EQ(characters.stringWithUTF32Character(0xA0000), Text("\U0001F1E6\U0001F1E6"));
  EXPECT_EQ(characters.stringWithUTF32Character(0xA02A3), Text("\U0001F1FF\U0001F1FF"));
  EXPECT_EQ(characters.stringWithUTF32Character(0xA1002), Text("0\u20E3"));
  EXPECT_EQ(characters.stringWithUTF32Character(0xA0300), Text("\U0001F468\u200D\u2695\uFE0F"));
  EXPECT_EQ(characters.initWithUTF32Character(0xA0399), Text("\U0001F3F3\uFE0F\u200D\U0001F308"));
}

TEST(VirtualCharacters, OtherCodesAreThemselves) {
  const VirtualCharacters characters;
  EXPECT_EQ(characters.stringWithUTF32Character('A'), Text("A"));
  EXPECT_EQ(characters.stringWithUTF32Character(0xFFFF), Text(u"\xFFFF"));
  EXPECT_EQ(characters.stringWithUTF32Character(0xD83D), Text(u"\xD83D"));
  EXPECT_EQ(characters.stringWithUTF32Character(0).length(), 1u);
  EXPECT_EQ(characters.stringWithUTF32Character(0x1F600), Text("\U0001F600"));
  for (const std::uint32_t gap : {0xA02A4u, 0xA02FFu, 0xA039Au, 0xA0FFFu, 0xA100Cu, 0xB0000u, 0xBFFFFu}) {
    EXPECT_EQ(characters.stringWithUTF32Character(gap), Text::fromScalar(gap)) << gap;
  }
}

TEST(VirtualCharacters, CodesAbove10FFFFGiveMeaninglessSurrogates) {
  const VirtualCharacters characters;
  EXPECT_EQ(characters.stringWithUTF32Character(0x110000), Text(u"\xDC00\xDC00"));
  EXPECT_EQ(characters.stringWithUTF32Character(0xFFFFFFFF).length(), 2u);
}

TEST(VirtualCharacters, ALigatureIsTheStoredObject) {
  VirtualCharacters characters;
  const std::vector<Text> ligatures = {"ffi", "st"};
  characters.defineLigatures(ligatures);
  EXPECT_TRUE(characters.stringWithUTF32Character(0xB0001).isSameObject(ligatures[1]));
  EXPECT_EQ(characters.stringWithUTF32Character(0xB0002), Text::fromScalar(0xB0002));
  characters.defineLigatures({"fl"});
  EXPECT_EQ(characters.stringWithUTF32Character(0xB0000), Text("fl"));
  EXPECT_EQ(characters.stringWithUTF32Character(0xB0001), Text::fromScalar(0xB0001));
}

// Only isVirtualCharacter() knows where the range of ligatures ends.
TEST(VirtualCharacters, ALigatureBeyondTheRangeOfVirtualCharactersIsTheStoredObjectToo) {
  VirtualCharacters characters;
  const std::vector<Text> ligatures(0x10001, Text("ffi"));
  characters.defineLigatures(ligatures);
  for (const std::int32_t code : {0xBFFFF, 0xC0000}) {
    EXPECT_FALSE(VirtualCharacters::isVirtualCharacter(code));
    EXPECT_TRUE(
        characters.stringWithUTF32Character(static_cast<std::uint32_t>(code)).isSameObject(ligatures[0]));
  }
  EXPECT_EQ(characters.stringWithUTF32Character(0xC0001), Text::fromScalar(0xC0001));
}

TEST(VirtualCharacters, AreOneForTheWholeProgram) {
  EXPECT_FALSE(std::is_copy_constructible_v<VirtualCharacters>);
  EXPECT_FALSE(std::is_copy_assignable_v<VirtualCharacters>);
}

TEST(VirtualCharacters, DefiningLigaturesKeepsACopy) {
  VirtualCharacters characters;
  std::vector<Text> ligatures = {"ffi"};
  characters.defineLigatures(ligatures);
  ligatures[0] = "changed";
  EXPECT_EQ(characters.stringWithUTF32Character(0xB0000), Text("ffi"));
}

TEST(IsVirtualCharacter, RangesAreHalfOpenAndLigaturesNeedNotBeDefined) {
  for (const std::int32_t code : {0xA0000, 0xA02A3, 0xA0300, 0xA0399, 0xA1000, 0xA100B, 0xB0000, 0xBFFFE}) {
    EXPECT_TRUE(VirtualCharacters::isVirtualCharacter(code)) << std::hex << code;
  }
  for (const std::int32_t code : {0, 0x41, 0x9FFFF, 0xA02A4, 0xA02FF, 0xA039A, 0xA0FFF, 0xA100C, 0xAFFFF,
                                  0xBFFFF, 0xC0000, -1, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_FALSE(VirtualCharacters::isVirtualCharacter(code)) << std::hex << code;
  }
}

TEST(Utf32CharactersForVirtualCharacter, AnswersTheRowOfTheTable) {
  VirtualCharacters characters;
  EXPECT_EQ(characters.utf32CharactersForVirtualCharacter(0xA0301), ZWJ_SEQUENCES[1].data());
  EXPECT_EQ(characters.utf32CharactersForVirtualCharacter(0xA100B), KEYCAP_SEQUENCES[11].data());
}

TEST(Utf32CharactersForVirtualCharacter, AFlagIsGoodUntilTheNextFlagIsAskedFor) {
  VirtualCharacters characters;
  const char32_t* const flag = characters.utf32CharactersForVirtualCharacter(0xA0000 + 26 * 5 + 17);
  ASSERT_NE(flag, nullptr);
  EXPECT_EQ(std::u32string(flag), U"\U0001F1EB\U0001F1F7");
  EXPECT_EQ(characters.utf32CharactersForVirtualCharacter(0xA0001), flag);
  EXPECT_EQ(std::u32string(flag), U"\U0001F1E6\U0001F1E7");
}

TEST(Utf32CharactersForVirtualCharacter, AnythingElseIsNullLigaturesIncluded) {
  VirtualCharacters characters;
  characters.defineLigatures({"ffi"});
  for (const std::uint32_t code : {0u, 0x41u, 0xA02A4u, 0xA039Au, 0xA100Cu, 0xB0000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(characters.utf32CharactersForVirtualCharacter(code), nullptr) << code;
  }
}

// tests/data/text/zwj_sequences.txt lists every row as a person reads it.
TEST(ZWJSequences, EveryRowIsTheOneWrittenDown) {
  std::ifstream file(KT_SOURCE_DIR "/tests/data/text/zwj_sequences.txt");
  std::size_t row = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('#')) continue;
    std::istringstream fields(line);
    std::string code, scalars;
    std::getline(fields, code, ';');
    std::getline(fields, scalars, ';');
    ASSERT_LT(row, N_ZWJ_SEQUENCES);
    EXPECT_EQ(std::stoul(code, nullptr, 16), 0xA0300 + row);
    ZWJSequence expected{};
    std::size_t length = 0;
    std::istringstream numbers(scalars);
    for (std::uint32_t scalar = 0; numbers >> std::hex >> scalar;) expected.at(length++) = scalar;
    EXPECT_EQ(ZWJ_SEQUENCES[row], expected) << line;
    ++row;
  }
  EXPECT_EQ(row, N_ZWJ_SEQUENCES);
}

TEST(ZWJSequences, RowLengthsAreAsCounted) {
  std::map<std::size_t, int> rowsOfLength;
  for (const ZWJSequence& row : ZWJ_SEQUENCES) {
    const auto end = std::find(row.begin(), row.end(), char32_t{0});
    EXPECT_TRUE(std::all_of(end, row.end(), [](char32_t scalar) { return scalar == 0; }));
    ++rowsOfLength[static_cast<std::size_t>(end - row.begin())];
  }
  EXPECT_EQ(N_ZWJ_SEQUENCES, 154u);
  EXPECT_EQ(rowsOfLength,
            (std::map<std::size_t, int>{{4, 85}, {3, 30}, {5, 21}, {7, 9}, {8, 3}, {6, 3}, {1, 3}}));
}

TEST(ZWJSequences, EveryRowIsDifferent) {
  for (std::size_t i = 0; i < N_ZWJ_SEQUENCES; ++i) {
    for (std::size_t j = 0; j < i; ++j) EXPECT_NE(ZWJ_SEQUENCES[i], ZWJ_SEQUENCES[j]) << i << " and " << j;
  }
}

TEST(KeycapSequences, AreAKeyAndTheEnclosingKeycap) {
  const std::u32string keys = U"#*0123456789";
  ASSERT_EQ(KEYCAP_SEQUENCES.size(), keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    EXPECT_EQ(KEYCAP_SEQUENCES[i], (KeycapSequence{keys[i], 0x20E3, 0}));
  }
}

}  // namespace
}  // namespace halvorn
