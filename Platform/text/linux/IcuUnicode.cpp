#include "Platform/text/linux/IcuUnicode.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <string>

namespace halvorn {
namespace {

bool isInCategory(char32_t scalar, std::uint32_t mask) {
  return (U_GET_GC_MASK(static_cast<UChar32>(scalar)) & mask) != 0;
}

std::int32_t lengthOf(std::u16string_view units) { return static_cast<std::int32_t>(units.size()); }

// Runs an ICU conversion (buffer, capacity, error) -> needed length, a second time
// when the first guess was too short.
template <typename Conversion>
Text converted(const Text& text, Conversion conversion) {
  std::u16string result(text.length() + 16, u'\0');
  for (int attempt = 0; attempt < 2; ++attempt) {
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t length = conversion(result.data(), lengthOf(result), &error);
    if (error == U_BUFFER_OVERFLOW_ERROR) {
      result.resize(static_cast<std::size_t>(length) + 1);
      continue;
    }
    if (U_FAILURE(error)) return text;
    result.resize(static_cast<std::size_t>(length));
    return Text(std::move(result));
  }
  return text;
}

}  // namespace

bool IcuUnicode::isLetter(char32_t scalar) const { return isInCategory(scalar, U_GC_L_MASK | U_GC_M_MASK); }

bool IcuUnicode::isAlphanumeric(char32_t scalar) const {
  return isInCategory(scalar, U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK);
}

bool IcuUnicode::isControl(char32_t scalar) const {
  return isInCategory(scalar, U_GC_CC_MASK | U_GC_CF_MASK);
}

bool IcuUnicode::isWhiteSpace(char32_t scalar) const {
  return u_isUWhiteSpace(static_cast<UChar32>(scalar)) != 0;
}

bool IcuUnicode::isUnassigned(char32_t scalar) const { return isInCategory(scalar, U_GC_CN_MASK); }

Text IcuUnicode::caseFolded(const Text& text) const {
  const auto units = text.units();
  return converted(text, [&](char16_t* buffer, std::int32_t capacity, UErrorCode* error) {
    return u_strFoldCase(buffer, capacity, units.data(), lengthOf(units), U_FOLD_CASE_DEFAULT, error);
  });
}

Text IcuUnicode::decomposed(const Text& text) const {
  const auto units = text.units();
  return converted(text, [&](char16_t* buffer, std::int32_t capacity, UErrorCode* error) {
    const UNormalizer2* normalizer = unorm2_getNFDInstance(error);
    return unorm2_normalize(normalizer, units.data(), lengthOf(units), buffer, capacity, error);
  });
}

Ordering IcuUnicode::compareCaseInsensitive(const Text& a, const Text& b) const {
  UErrorCode error = U_ZERO_ERROR;
  const auto order = u_strCaseCompare(a.units().data(), lengthOf(a.units()), b.units().data(),
                                      lengthOf(b.units()), U_COMPARE_CODE_POINT_ORDER, &error);
  return order < 0 ? Ordering::Ascending : order > 0 ? Ordering::Descending : Ordering::Same;
}

}  // namespace halvorn
