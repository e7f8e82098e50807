// Keyboards: what a key types.
#include <gtest/gtest.h>

#include "KeyboardImplementations.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

template <typename Keys>
struct KeyboardContract : testing::Test {};
TYPED_TEST_SUITE(KeyboardContract, AllKeys);

TYPED_TEST(KeyboardContract, AnswersWhatAKeyTypesNothingForKeysThatTypeNothingAndNoAnswerForOthers) {
  if (const auto missing = TypeParam::missing()) GTEST_SKIP() << *missing;
  TypeParam keys;
  const Keyboard& keyboard = keys.keyboard();
  const auto type = static_cast<std::uint8_t>(keyboard.type());
  EXPECT_EQ(keyboard.translate(0x00, 0, type), Text("a"));
  EXPECT_EQ(keyboard.translate(0x00, KeyModifier::shift, type), Text("A"));
  EXPECT_EQ(keyboard.translate(0x31, 0, type), Text(" "));
  EXPECT_EQ(keyboard.translate(0x7E, 0, type), Text(""));
  EXPECT_EQ(keyboard.translate(0x34, 0, type), std::nullopt);
  EXPECT_EQ(keyboard.translate(0xFFFF, 0, type), std::nullopt);
}

}  // namespace
}  // namespace halvorn
