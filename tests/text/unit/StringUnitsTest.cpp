// How texts are compared and searched, unit by unit.
#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

#include <gtest/gtest.h>

#include <string>

namespace halvorn {
namespace {

TEST(CommonPrefixLength, EndsAtTheFirstDifferenceHoweverSmallAndWhereverItIs) {
  const std::u16string text(100, u'b');
  for (std::size_t place = 0; place < text.size(); ++place) {
    for (const char16_t other : {u'c', u'a', u'\0', u'\xFFFF'}) {
      std::u16string changed = text;
      changed[place] = other;
      EXPECT_EQ(StringExtensions::commonPrefixLength(text, changed), place) << static_cast<int>(other);
    }
  }
}

TEST(CommonPrefixLength, EndsWithTheShorterText) {
  const std::u16string text(100, u'b');
  for (std::size_t length = 0; length <= text.size(); ++length)
    EXPECT_EQ(StringExtensions::commonPrefixLength(text, text.substr(0, length)), length);
}

}  // namespace
}  // namespace halvorn
