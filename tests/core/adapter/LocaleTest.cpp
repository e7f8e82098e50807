// A toolkit sets the locale of the whole program; what is logged and read stays the same.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "Core/Format.h"
#include "Core/PropertyValue.h"
#include "tests/support/MadeLocale.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class InTheLocale : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (const auto missing = MadeLocale::missing(GetParam())) GTEST_SKIP() << *missing;
    locale_ = std::make_unique<MadeLocale>(GetParam());
    ASSERT_EQ(::setenv("LOCPATH", locale_->folder().c_str(), 1), 0);
    ASSERT_NE(std::setlocale(LC_ALL, locale_->name().c_str()), nullptr);
  }
  void TearDown() override {
    std::setlocale(LC_ALL, "C");
    ::unsetenv("LOCPATH");
  }

 private:
  std::unique_ptr<MadeLocale> locale_;
};

TEST_P(InTheLocale, NumbersArePrintedWithAPoint) {
  EXPECT_EQ(format("quit delay: %1.1f", 2.5F), Text("quit delay: 2.5"));
  EXPECT_EQ(format("%1.3fs %08.2f %@ %d", 0.001, -1234.5, 0.5, 1'234'567),
            Text("0.001s -1234.50 0.5 1234567"));
  EXPECT_EQ(PropertyValue(0.25).description(), Text("0.25"));
  EXPECT_EQ(describe(PropertyDictionary{{"a", PropertyValue(1.5)}}), Text("{\"a\" = 1.5; }"));
}

TEST_P(InTheLocale, NumbersAreReadWithAPoint) {
  EXPECT_EQ(Text("2.5").floatValue(), 2.5F);
  EXPECT_EQ(Text("2,5").doubleValue(), 2.0);
  EXPECT_EQ(Text("1.234e2").doubleValue(), 123.4);
}

INSTANTIATE_TEST_SUITE_P(Locales, InTheLocale, testing::Values("de_DE", "ar_EG", "fa_IR", "fr_FR"),
                         [](const auto& locale) { return std::string(locale.param); });

TEST(MadeLocale, IsInForceWithItsOwnDecimalPoint) {
  if (const auto missing = MadeLocale::missing("de_DE")) GTEST_SKIP() << *missing;
  const MadeLocale german("de_DE");
  ASSERT_EQ(::setenv("LOCPATH", german.folder().c_str(), 1), 0);
  ASSERT_NE(std::setlocale(LC_ALL, german.name().c_str()), nullptr);
  char text[8];
  std::snprintf(text, sizeof text, "%.1f", 2.5);
  std::setlocale(LC_ALL, "C");
  ::unsetenv("LOCPATH");
  EXPECT_STREQ(text, "2,5") << "else the tests above would show nothing";
}

}  // namespace
}  // namespace halvorn
