#include "Core/FourCharCode.h"

#include <gtest/gtest.h>

namespace halvorn {
namespace {

TEST(FourCharCode, FourCharactersMakeACode) {
  EXPECT_EQ(fourCharCodeFromText("ABCD"), 0x41424344u);
  EXPECT_EQ(fourCharCodeFromText("ABCD"), fourCharCode("ABCD"));
  EXPECT_EQ(fourCharCodeFromText("a\xC3\xA4 1"), 0x618A2031u) << "Mac OS Roman";
}

TEST(FourCharCode, AnythingElseConvertsToZero) {
  for (const char* text : {"", "ABC", "ABCDE", "AB日D", "ABC\n", "ABC\x7F", "\x01\x02\x03\x04"}) {
    EXPECT_EQ(fourCharCodeFromText(text), 0u) << text;
  }
}

TEST(FourCharCode, EveryCodeReadsAsFourCharactersAndBack) {
  for (FourCharCode byte = 0x20; byte < 0x100; ++byte) {
    if (byte == 0x7F) continue;
    const FourCharCode code = byte << 24 | byte << 16 | 0x4142;
    EXPECT_EQ(textFromFourCharCode(code).length(), 4u);
    EXPECT_EQ(fourCharCodeFromText(textFromFourCharCode(code)), code);
  }
}

}  // namespace
}  // namespace halvorn
