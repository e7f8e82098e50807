#include "KTStuff/CocoaExtensions/StringExtensionsPatterns.h"
#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

namespace halvorn::StringExtensions {

bool matchesWildcardPattern(const Text& text, const Text& pattern) {
  const std::u16string_view units = text.units();
  std::u16string_view rest = pattern.units();
  const auto isStar = [](char16_t unit) { return unit == u'*'; };
  std::size_t star = findUnit(rest, 0, isStar);
  if (star == Text::npos) return text == pattern;

  if (!units.starts_with(rest.substr(0, star))) return false;
  std::size_t position = star;
  rest.remove_prefix(star + 1);
  for (star = findUnit(rest, 0, isStar); star != Text::npos; star = findUnit(rest, 0, isStar)) {
    const std::u16string_view part = rest.substr(0, star);
    rest.remove_prefix(star + 1);
    if (part.empty()) continue;
    const std::size_t at = UnitSearch(part).find(units, position, units.size());
    if (at == Text::npos) return false;
    position = at + part.size();
  }
  // The end may not take back what the parts before it have taken.
  return units.ends_with(rest) && position + rest.size() <= units.size();
}

}  // namespace halvorn::StringExtensions
