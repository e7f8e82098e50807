// Parts of texts: what they are, what they share and what they do not keep.
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "Core/TextPieces.h"

namespace halvorn {
namespace {

Text longText(std::size_t length) {
  std::u16string units;
  while (units.size() < length) units.append(u"some words and ");
  units.resize(length);
  return Text(std::move(units));
}

// Whether the units of the part lie in those of the text.
bool isInside(const Text& part, const Text& text) {
  const std::less_equal<const char16_t*> isAtOrBefore;
  const char16_t* const start = text.units().data();
  const char16_t* const partStart = part.units().data();
  return isAtOrBefore(start, partStart) && isAtOrBefore(partStart + part.length(), start + text.length());
}

TEST(TextParts, APartOfAShortTextSharesItsUnits) {
  const Text text("a short text");
  const Text part = text.substring(2, 5);
  EXPECT_EQ(part, Text("short"));
  EXPECT_TRUE(isInside(part, text));
  EXPECT_FALSE(part.isSameObject(text));
}

TEST(TextParts, ALargePartOfALongTextSharesItsUnits) {
  const Text text = longText(100'000);
  EXPECT_TRUE(isInside(text.substring(1), text));
  EXPECT_TRUE(isInside(text.substring(70'000, 20'000), text));
}

TEST(TextParts, ASmallPartOfALongTextDoesNotKeepIt) {
  const Text text = longText(100'000);
  const Text part = text.substring(70'000, 10'000);
  EXPECT_FALSE(isInside(part, text));
  EXPECT_EQ(part.units(), text.units().substr(70'000, 10'000));
}

TEST(TextParts, PartsOfPartsAreHeldAgainstTheWholeBuffer) {
  const Text text = longText(100'000);
  const Text half = text.substring(0, 50'000);
  ASSERT_TRUE(isInside(half, text));
  EXPECT_FALSE(isInside(half.substring(100, 10'000), text));
  EXPECT_EQ(half.substring(100, 10'000).units(), text.units().substr(100, 10'000));
}

TEST(TextParts, TheWholeOfAPartIsThePart) {
  const Text part = longText(100'000).substring(10, 50'000);
  EXPECT_TRUE(part.substring(0).isSameObject(part));
  EXPECT_TRUE(part.substring(0, 50'000).isSameObject(part));
}

TEST(TextParts, APartOutlivesItsText) {
  Text text("a short text");
  const Text part = text.substring(2, 5);
  text = Text();
  EXPECT_EQ(part, Text("short"));
  EXPECT_EQ(part.bytes(), "short");
}

TEST(TextParts, APartWithoutUnitsIsTheEmptyText) {
  const Text text("abc");
  EXPECT_TRUE(text.substring(1, 0).isSameObject(Text()));
  EXPECT_TRUE(text.substring(7, 2).isSameObject(Text()));
  EXPECT_TRUE(Text().substring(0, 0).isSameObject(Text()));
}

TEST(TextParts, APartIsATextLikeAnyOther) {
  const Text part = Text("<name: 12>").substring(1, 8);
  EXPECT_EQ(part, Text("name: 12"));
  EXPECT_LT(part, Text("name: 13"));
  EXPECT_EQ(std::hash<Text>{}(part), std::hash<Text>{}(Text("name: 12")));
  EXPECT_TRUE(part.hasSuffix("12"));
  EXPECT_FALSE(part.hasSuffix(">"));
  EXPECT_EQ(part.find(u'>'), Text::npos);
  EXPECT_EQ(part.substring(6).intValue(), 12);
  EXPECT_EQ(part + part, Text("name: 12name: 12"));
  EXPECT_EQ(part.replacing("12", "7"), Text("name: 7"));
}

TEST(TextPieces, PiecesThatLieTogetherShareAPageAndDoNotKeepTheText) {
  const Text text = longText(100'000);
  TextPieces pieces(text);
  std::vector<Text> parts;
  pieces.cutInto(parts, 50'000, 10);
  pieces.cutInto(parts, 50'020, 10);
  EXPECT_EQ(parts[1].units().data(), parts[0].units().data() + 20);
  for (const Text& part : parts) EXPECT_FALSE(isInside(part, text));
}

TEST(TextPieces, PiecesOfAShortTextShareItsUnits) {
  const Text text("a short text");
  TextPieces pieces(text);
  std::vector<Text> parts;
  pieces.cutInto(parts, 2, 5);
  EXPECT_EQ(parts, std::vector<Text>{"short"});
  EXPECT_TRUE(isInside(parts[0], text));
}

TEST(TextPieces, PiecesOfAShortPartOfALongTextDoNotKeepTheLongOne) {
  const Text text = longText(6'000);
  const Text part = text.substring(100, 1'500);
  ASSERT_TRUE(isInside(part, text));
  TextPieces pieces(part);
  std::vector<Text> parts;
  pieces.cutInto(parts, 2, 5);
  EXPECT_FALSE(isInside(parts[0], text));
}

TEST(TextPieces, LongPiecesAreTextsOfTheirOwn) {
  const Text text = longText(100'000);
  TextPieces pieces(text);
  std::vector<Text> parts;
  pieces.cutInto(parts, 0, 1'000);
  pieces.cutInto(parts, 1'000, 50'000);
  EXPECT_FALSE(isInside(parts[0], text));
  EXPECT_TRUE(isInside(parts[1], text));
  EXPECT_EQ(parts[0] + parts[1], text.substring(0, 51'000));
}

TEST(TextPieces, PiecesOfAnyRangeInAnyOrderAreItsUnits) {
  std::mt19937 random(20240901);
  for (const std::size_t length : {0u, 1u, 500u, 2'048u, 2'049u, 9'000u}) {
    const Text text = longText(length);
    TextPieces pieces(text);
    std::vector<Text> parts;
    for (int i = 0; i < 2'000; ++i) {
      const std::size_t start = random() % (length + 1);
      const std::size_t count = random() % (std::min<std::size_t>(length - start, 600) + 1);
      pieces.cutInto(parts, start, count);
      ASSERT_EQ(parts.back().units(), text.units().substr(start, count)) << length << ": " << start;
    }
  }
}

TEST(TextPieces, SplittingALongTextGivesItsParts) {
  std::u16string units;
  for (int i = 0; i < 5'000; ++i) units.append(static_cast<std::size_t>(i % 400), u'x').push_back(u',');
  const std::vector<Text> parts = Text(units).split(u',');
  ASSERT_EQ(parts.size(), 5'001u);
  for (std::size_t i = 0; i < 5'000; ++i)
    ASSERT_EQ(parts[i].units(), std::u16string(i % 400, u'x')) << "part " << i;
  EXPECT_TRUE(parts.back().isEmpty());
  EXPECT_EQ(join(parts, ",").units(), units);
}

}  // namespace
}  // namespace halvorn
