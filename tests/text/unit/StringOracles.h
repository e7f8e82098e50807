// Every algorithm beside one that is slow and obvious, on random texts.
//
// The oracles change whole copies in place, unit by unit, as the operations are described; nothing is shared
// with the code under test. "The text itself" is compared as identity. All tests of the suite share the
// random texts among them, so adding one makes the share of each smaller.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/support/RandomTexts.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {

using namespace StringExtensions;
using Units = std::u16string;

inline std::size_t numberOfOracles() {
  const testing::UnitTest& program = *testing::UnitTest::GetInstance();
  for (int i = 0; i < program.total_test_suite_count(); ++i) {
    const testing::TestSuite& suite = *program.GetTestSuite(i);
    if (std::string_view(suite.name()) == "StringOracle")
      return static_cast<std::size_t>(suite.total_test_count());
  }
  return 1;
}

inline void forRandomTexts(const std::function<void(RandomTexts&)>& look) {
  RandomTexts random;
  for (std::size_t i = RandomTexts::share(numberOfOracles()); i > 0 && !testing::Test::HasFailure(); --i)
    look(random);
}

// The result must be the receiver itself just when the oracle changed nothing.
inline void expectResult(const Text& receiver, const Text& result, const Units& expected, bool isChanged) {
  EXPECT_EQ(result, Text(expected)) << testing::PrintToString(receiver);
  EXPECT_EQ(result.isSameObject(receiver), !isChanged || receiver.isEmpty())
      << testing::PrintToString(receiver);
}

inline Units unitsOf(const Text& text) { return Units(text.units()); }

inline bool isIn(char16_t unit, const Units& set) { return set.find(unit) != Units::npos; }
inline bool isHigh(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
inline bool isLow(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

inline int replaceAll(Units& units, const Units& target, const Units& with) {
  int count = 0;
  for (std::size_t at = 0; (at = units.find(target, at)) != Units::npos; at += with.size(), ++count) {
    units.replace(at, target.size(), with);
  }
  return count;
}

}  // namespace halvorn
