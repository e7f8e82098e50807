#include "Platform/window/linux/QtLocalizedSizes.h"

#include <gtest/gtest.h>

#include <string>

namespace halvorn {
namespace {

std::string both(const char* language, std::uint64_t bytes, std::uint64_t whole) {
  const auto amounts = QtLocalizedSizes(Text(language)).partOf(bytes, whole);
  std::string text = amounts.part.bytes() + " of " + amounts.whole.bytes();
  for (const char* blank : {"\u00A0", "\u202F"}) {
    for (auto at = text.find(blank); at != std::string::npos; at = text.find(blank))
      text.replace(at, std::string(blank).size(), " ");
  }
  return text;
}

TEST(QtLocalizedSizes, BothAmountsHaveTheUnitOfTheWhole) {
  EXPECT_EQ(both("en", 1'234'567'890, 2'000'000'000), "1.2 of 2.0 GB");
  EXPECT_EQ(both("en", 999, 1'000'000'000), "0.0 of 1.0 GB");
  EXPECT_EQ(both("en", 1'240'000, 99'940'000), "1.2 of 99.9 MB");
  EXPECT_EQ(both("en", 54'321'000, 654'321'000), "54 of 654 MB") << "a tenth of much is nothing";
  EXPECT_EQ(both("en", 1'000, 54'300), "1.0 of 54.3 kB");
  EXPECT_EQ(both("en", 12, 999), "12 of 999 bytes");
  EXPECT_EQ(both("en", 1'234'567'890'123, 2'000'000'000'000), "1.2 of 2.0 TB");
}

TEST(QtLocalizedSizes, NumbersAreWrittenAsTheLanguageDoes) {
  EXPECT_EQ(both("de", 1'234'567'890, 2'000'000'000), "1,2 of 2,0 GB");
  EXPECT_EQ(both("pt_BR", 1'234'567'890, 2'000'000'000), "1,2 of 2,0 GB");
  EXPECT_EQ(both("fr", 1'234'567'890, 2'000'000'000), "1,2 of 2,0 Go");
  EXPECT_EQ(both("ru", 1'234'567'890, 2'000'000'000), "1,2 of 2,0 ГБ");
  EXPECT_EQ(QtLocalizedSizes("en").number(10), Text("10"));
  EXPECT_EQ(QtLocalizedSizes("fa").number(10), Text("۱۰"));
}

TEST(QtLocalizedSizes, ANumberAndItsUnitStayOnOneLine) {
  for (const char* language : {"en", "fr", "ru", "ar"}) {
    const Text whole = QtLocalizedSizes(Text(language)).partOf(1, 2'000'000'000).whole;
    EXPECT_EQ(whole.bytes().find(' '), std::string::npos) << language << ": " << whole.bytes();
  }
}

TEST(QtLocalizedSizes, ALanguageThatNobodyKnowsHasNumbersNevertheless) {
  EXPECT_EQ(both("xx_XX", 1'234'567'890, 2'000'000'000), "1.2 of 2.0 GB");
}

}  // namespace
}  // namespace halvorn
