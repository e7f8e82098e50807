// Unicode as far as ASCII and Latin-1 go. Every other scalar is a symbol without
// case: assigned, no letter, no blank.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "Platform/text/Unicode.h"

namespace halvorn {

class FakeUnicode : public Unicode {
 public:
  bool isLetter(char32_t scalar) const override {
    const char32_t lower = scalar | 0x20;
    if (scalar < 0x80) return lower >= 'a' && lower <= 'z';
    return scalar == 0xAA || scalar == 0xB5 || scalar == 0xBA ||
           (scalar >= 0xC0 && scalar <= 0xFF && scalar != 0xD7 && scalar != 0xF7);
  }
  bool isAlphanumeric(char32_t scalar) const override {
    const bool isFraction = scalar >= 0xBC && scalar <= 0xBE;
    const bool isRaised = scalar == 0xB2 || scalar == 0xB3 || scalar == 0xB9;
    return isLetter(scalar) || (scalar >= '0' && scalar <= '9') || isFraction || isRaised;
  }
  bool isControl(char32_t scalar) const override {
    return scalar < 0x20 || (scalar >= 0x7F && scalar < 0xA0) || scalar == 0xAD;
  }
  bool isWhiteSpace(char32_t scalar) const override {
    return (scalar >= 0x09 && scalar <= 0x0D) || scalar == 0x20 || scalar == 0x85 || scalar == 0xA0;
  }
  bool isUnassigned(char32_t) const override { return false; }

  Text caseFolded(const Text& text) const override {
    std::u16string folded;
    for (const char16_t unit : text.units()) {
      const bool isUpper = (unit >= u'A' && unit <= u'Z') || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7);
      if (unit == 0xDF) {
        folded.append(u"ss");
      } else if (unit == 0xB5) {
        folded.push_back(0x3BC);  // the micro sign folds to the Greek letter
      } else {
        folded.push_back(isUpper ? static_cast<char16_t>(unit + 0x20) : unit);
      }
    }
    return Text(std::move(folded));
  }

  Text decomposed(const Text& text) const override {
    // For U+00C0 to U+00FF: the base letter, and grave, acute, circumflex, tilde, diaeresis, ring or cedilla.
    constexpr std::string_view kBases = "AAAAAA.CEEEEIIII.NOOOOO..UUUUY..aaaaaa.ceeeeiiii.nooooo..uuuuy.y";
    constexpr std::string_view kMarks = "`'^~:o.,`'^:`'^:.~`'^~:..`'^:'..`'^~:o.,`'^:`'^:.~`'^~:..`'^:'.:";
    constexpr std::string_view kMarkNames = "`'^~:o,";
    constexpr std::u16string_view kMarkUnits = u"\u0300\u0301\u0302\u0303\u0308\u030A\u0327";
    std::u16string result;
    for (const char16_t unit : text.units()) {
      const bool isComposed = unit >= 0xC0 && unit <= 0xFF && kBases[unit - 0xC0u] != '.';
      result.push_back(isComposed ? static_cast<char16_t>(kBases[unit - 0xC0u]) : unit);
      if (isComposed) result.push_back(kMarkUnits[kMarkNames.find(kMarks[unit - 0xC0u])]);
    }
    return Text(std::move(result));
  }

  Ordering compareCaseInsensitive(const Text& a, const Text& b) const override {
    const auto order = caseFolded(a) <=> caseFolded(b);
    return std::is_lt(order)   ? Ordering::Ascending
           : std::is_gt(order) ? Ordering::Descending
                               : Ordering::Same;
  }
};

}  // namespace halvorn
