// StringExtensions, numbers: parsing, and comparing texts with numbers in them.
#pragma once

#include <cstdint>

#include "Core/Ordering.h"
#include "Core/Text.h"
#include "Platform/text/Unicode.h"

namespace halvorn::StringExtensions {

// The integer at the start, as a C program writes it: white space, a sign, then "0x" and
// hexadecimal, "0" and octal, or decimal digits, up to the first unfit character. 0 for none; beyond
// 64 bits the largest or smallest value.
[[nodiscard]] std::int64_t numericValue(const Text& text);

// True when the first unit is T, t, Y, y or 1, or else when intValue() is not 0. "0x1" is false.
[[nodiscard]] bool booleanValue(const Text& text);

// True when there is at least one unit and all are ASCII digits.
[[nodiscard]] bool isIntegerNumber(const Text& text);

// The number at the start, whichever of "," and "." its decimal separator is: "3,5" is 3.5, "1.234,5" and
// "1,234.5" are 1234.5. A single separator is a decimal one: "1,234" is 1.234. 0 for none.
[[nodiscard]] float smartFloatValue(const Text& text);

// Compares by characters, runs of ASCII digits by value: "a9" before "a10", "a01" the same as "a1". Composed
// and decomposed characters are the same.
[[nodiscard]] Ordering numericCompare(const Text& text, const Text& other, const Unicode& unicode);
// The same without regard to case.
[[nodiscard]] Ordering caseInsensitiveNumericCompare(const Text& text, const Text& other,
                                                     const Unicode& unicode);

}  // namespace halvorn::StringExtensions
