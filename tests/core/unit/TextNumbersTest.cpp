// Numbers at the start of a text, held against the C library's readers.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <type_traits>

#include "Core/RealReading.h"
#include "Core/Text.h"

namespace halvorn {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

template <typename Real>
bool isSameBits(Real a, Real b) {
  using Bits = std::conditional_t<sizeof(Real) == sizeof(std::uint32_t), std::uint32_t, std::uint64_t>;
  return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
}

// Both readings of a number, bit for bit; the C library's are correctly rounded.
void expectReadAsByTheCLibrary(const std::string& number) {
  const float single = std::strtof(number.c_str(), nullptr);
  const double real = std::strtod(number.c_str(), nullptr);
  EXPECT_TRUE(isSameBits(Text(number).floatValue(), single))
      << number << " read as " << Text(number).floatValue() << " for " << single;
  EXPECT_TRUE(isSameBits(Text(number).doubleValue(), real))
      << number << " read as " << Text(number).doubleValue() << " for " << real;
}

TEST(TextNumbers, OneNumberInADigitFarBehindThePointIsNearlyNothing) {
  EXPECT_EQ(Text("0." + std::string(60, '0') + "1").floatValue(), 0.0F);
  EXPECT_EQ(Text("0." + std::string(400, '0') + "1").doubleValue(), 0.0);
  EXPECT_EQ(Text("-0." + std::string(400, '0') + "1e380").doubleValue(), -1e-21);
}

TEST(TextNumbers, OnlyWhiteSpaceMayStandBeforeANumber) {
  EXPECT_EQ(Text(" \t\n\v\f\r1.5").doubleValue(), 1.5);
  for (const char* text : {"~1.5", "\"1.5", "a1.5"}) EXPECT_EQ(Text(text).doubleValue(), 0.0) << text;
}

TEST(TextNumbers, ManyDigitsAndASmallExponentAreALargeNumber) {
  EXPECT_EQ(Text("1" + std::string(60, '0') + "e-5").floatValue(), kInfinity);
  EXPECT_EQ(Text("1" + std::string(400, '0') + "e-5").doubleValue(), std::numeric_limits<double>::infinity());
  EXPECT_EQ(Text("1" + std::string(400, '0') + "e-395").doubleValue(), 1e5);
}

TEST(TextNumbers, WhatIsTooLargeIsInfinite) {
  EXPECT_EQ(Text("1e400").floatValue(), kInfinity);
  EXPECT_EQ(Text("-1e40").floatValue(), -kInfinity);
  EXPECT_EQ(Text("-1e400").doubleValue(), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(Text("1e99999999999999999999").doubleValue(), std::numeric_limits<double>::infinity());
}

TEST(TextNumbers, TheEdgesOfTheTypesAreReadExactly) {
  for (const char* number : {
           "3.4028234663852886e38",   // the largest single number
           "3.4028235677973366e38",   // half way from there to where the next would be
           "3.40282356779733642e38",  // just below the half way
           "1.1754943508222875e-38",  // the smallest normal one
           "1.401298464324817e-45",   // the smallest of all
           "7.006492321624085e-46",   // half of it
           "7.0064923216240854e-46",  // just above the half
           "1.7976931348623157e308",
           "1.7976931348623158e308",
           "1.797693134862315807e308",
           "1.7976931348623159e308",  // the largest real, and around the half way to the next
           "2.2250738585072014e-308",
           "2.2250738585072011e-308",
           "4.9406564584124654e-324",
           "2.4703282292062327e-324",
           "2.4703282292062328e-324",
           "1e-400",
           "-1e-400",
           "0",
           "-0",
           "0e999",
           "0.000e-999",
           "9007199254740993",
           "9007199254740992.99999999999999999999",
           "16777217",
           "8388608.5",
           "8388609.5",
           "1e23",
           "1e22",
           "123456789012345678901234567890",
           "5e-324",
           "1e-5",
           "0.1",
           ".5",
           "1.",
       }) {
    expectReadAsByTheCLibrary(number);
  }
}

TEST(TextNumbers, HalfWayNumbersOfAllSizesAreRoundedToEven) {
  std::mt19937_64 random(20);
  for (int round = 0; round < 2000; ++round) {
    // Printed in full, such a number is exactly half way between two neighbours.
    const auto exponent = static_cast<int>(random() % 300) - 150;
    const double odd = std::ldexp(static_cast<double>(random() >> 40 | 1), exponent);
    std::string number(1200, '\0');
    number.resize(static_cast<std::size_t>(std::snprintf(number.data(), number.size(), "%.250f", odd)));
    expectReadAsByTheCLibrary(number);
    expectReadAsByTheCLibrary(number + "1");
    number.back() = '0';
    expectReadAsByTheCLibrary(number);
  }
}

TEST(TextNumbers, LongRandomNumbersAreReadAsTheCLibraryReadsThem) {
  std::mt19937_64 random(8);
  const auto below = [&](std::uint64_t limit) { return random() % limit; };
  const auto digits = [&](std::uint64_t limit, std::string_view from) {
    std::string result;
    for (std::uint64_t count = below(limit); count > 0; --count) result += from[below(from.size())];
    return result;
  };
  for (int round = 0; round < 20'000; ++round) {
    const std::uint64_t length = round % 50 == 0 ? 1500 : 1 + below(60);
    const std::string_view from = below(4) == 0 ? "0" : below(3) == 0 ? "09" : "0123456789";
    std::string number = below(3) == 0 ? "-" : "";
    number += digits(length, from) + "7";
    if (below(3) != 0) number += "." + digits(length, from);
    if (below(2) != 0) {
      const char* const signs[] = {"e", "E-", "e+"};
      number += signs[below(3)] + std::to_string(below(below(2) == 0 ? 30 : 400));
    }
    expectReadAsByTheCLibrary(number);
  }
}

TEST(TextNumbers, ReadingEndsWhereTheNumberEnds) {
  const struct {
    const char* text;
    double value;
  } cases[] = {{"1e", 1},     {"1e+", 1},   {"1e-x", 1},   {"2.5.7", 2.5},  {"1,5", 1},  {"0x1p3", 0},
               {"12 34", 12}, {"+-1", 0},   {"++1", 0},    {"-+1", 0},      {"- 1", 0},  {".", 0},
               {"-.", 0},     {".e1", 0},   {"-.5", -.5},  {"infinity", 0}, {"-inf", 0}, {"NAN", 0},
               {"\n\t 3", 3}, {"+7e1", 70}, {"1E2x", 100}, {"1e0002", 100}, {"--1", 0},  {"+", 0}};
  for (const auto& [text, value] : cases) EXPECT_EQ(Text(text).doubleValue(), value) << text;
}

TEST(TextNumbers, TheLengthThatWasReadIsThatOfTheNumberAlone) {
  const struct {
    const char* text;
    std::size_t length;
  } cases[] = {{"12", 2},    {"-1.5e3", 6}, {"1e", 1}, {"1e+", 1}, {"1e-x", 1}, {"2.5.7", 3},
               {"7e10 ", 4}, {".", 0},      {"-.", 0}, {"", 0},    {"x1", 0},   {".5", 2}};
  for (const auto& [text, length] : cases) EXPECT_EQ(realAtStart<double>(text).length, length) << text;
}

// 2 to the 53 and a half: what stands far behind decides.
TEST(TextNumbers, OneDigitBehindAllThatAreKeptIsEnoughToRoundUp) {
  const std::string halfWay = "9007199254740993." + std::string(784, '0');
  EXPECT_EQ(Text(halfWay + "0").doubleValue(), 9007199254740992.0);
  EXPECT_EQ(Text(halfWay + "1").doubleValue(), 9007199254740994.0);
}

}  // namespace
}  // namespace halvorn
