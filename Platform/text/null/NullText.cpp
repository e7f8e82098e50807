#include "Platform/text/null/NullText.h"

#include <string>
#include <utility>

namespace halvorn {
namespace {

bool isIn(char32_t scalar, char32_t first, char32_t last) { return scalar >= first && scalar <= last; }

}  // namespace

bool NullUnicode::isLetter(char32_t scalar) const {
  return isIn(scalar, U'A', U'Z') || isIn(scalar, U'a', U'z');
}

bool NullUnicode::isAlphanumeric(char32_t scalar) const {
  return isLetter(scalar) || isIn(scalar, U'0', U'9');
}

bool NullUnicode::isControl(char32_t scalar) const { return scalar < U' ' || scalar == 0x7F; }

bool NullUnicode::isWhiteSpace(char32_t scalar) const { return scalar == U' ' || isIn(scalar, U'\t', U'\r'); }

Text NullUnicode::caseFolded(const Text& text) const {
  constexpr char16_t toSmall = u'a' - u'A';
  std::u16string folded;
  for (const char16_t unit : text.units()) {
    folded.push_back(isIn(unit, U'A', U'Z') ? static_cast<char16_t>(unit + toSmall) : unit);
  }
  return Text(std::move(folded));
}

Ordering NullUnicode::compareCaseInsensitive(const Text& a, const Text& b) const {
  const Text foldedA = caseFolded(a);
  const Text foldedB = caseFolded(b);
  if (foldedA == foldedB) return Ordering::Same;
  return foldedA.units() < foldedB.units() ? Ordering::Ascending : Ordering::Descending;
}

}  // namespace halvorn
