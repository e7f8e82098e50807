#include "KTStuff/CocoaExtensions/StringExtensionsEscapes.h"

#include <algorithm>
#include <utility>

#include "KTStuff/CocoaExtensions/StringExtensionsEdits.h"
#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

namespace halvorn {

namespace StringExtensions {
namespace {

// A set of units that is asked for every unit of a text.
class UnitSet {
 public:
  explicit UnitSet(std::u16string_view units) : others_(units) {
    for (const char16_t unit : units) {
      if (unit < kSmall) small_[unit] = true;
    }
    std::erase_if(others_, [](char16_t unit) { return unit < kSmall; });
    std::sort(others_.begin(), others_.end());
  }
  [[nodiscard]] bool contains(char16_t unit) const {
    return unit < kSmall ? small_[unit] : std::binary_search(others_.begin(), others_.end(), unit);
  }
  [[nodiscard]] std::size_t findIn(std::u16string_view units, std::size_t start) const {
    for (std::size_t i = start; i < units.size(); ++i) {
      if (contains(units[i])) return i;
    }
    return Text::npos;
  }

 private:
  static constexpr char16_t kSmall = 128;
  bool small_[kSmall] = {};
  std::u16string others_;
};

// Control characters with what stands for them: a backslash and a letter.
struct ControlEscape {
  char16_t unit;
  std::u16string_view escape;
};
constexpr ControlEscape kControlEscapes[] = {{u'\t', u"\\t"}, {u'\r', u"\\r"}, {u'\n', u"\\n"}};

// What takes the place of a control character, or goes before another unit.
std::u16string_view escapeFor(char16_t unit) {
  for (const ControlEscape& control : kControlEscapes) {
    if (control.unit == unit) return control.escape;
  }
  return u"\\";
}

// The letter that stands for a control character after a backslash, or the unit itself.
char16_t letterFor(char16_t unit) {
  const std::u16string_view escape = escapeFor(unit);
  return escape.size() == 2 ? escape[1] : unit;
}

char16_t unitForLetter(char16_t letter) {
  for (const ControlEscape& control : kControlEscapes) {
    if (control.escape[1] == letter) return control.unit;
  }
  return letter;
}

Text expandableLetters(const Text& characters) {
  if (characters.isSameObject(KTEscapeCharacters)) return "nrt\\";
  std::u16string letters(characters.units());
  std::transform(letters.begin(), letters.end(), letters.begin(), letterFor);
  return Text(std::move(letters));
}

}  // namespace

Text stringByEscapingCharacters(const Text& text, const Text& characters) {
  const std::u16string_view units = text.units();
  const UnitSet set(characters.units());
  std::size_t at = set.findIn(units, 0);
  if (at == Text::npos) return text;
  ForwardEdits copy(units);
  // KEEP: the search runs over the receiver with positions of the copy. The copy is never the shorter one, so
  // the search ends at the receiver's end.
  for (; at != Text::npos; at = set.findIn(units, at + 2)) {
    const std::u16string_view escape = escapeFor(copy.moveTo(at));
    copy.replace(escape.size() - 1, escape);
  }
  return Text(std::move(copy).finish());
}

Text stringByExpandingEscapedCharacters(const Text& text, const Text& characters) {
  const std::u16string_view units = text.units();
  const Text letters = expandableLetters(characters);
  const UnitSet set(letters.units());
  std::u16string result;
  std::size_t start = 0;  // of what is not yet in the result
  const auto isBackslash = [](char16_t unit) { return unit == u'\\'; };
  std::size_t at = findUnit(units, 0, isBackslash);
  while (at != Text::npos && at + 1 < units.size()) {
    const bool isEscape = set.contains(units[at + 1]);
    if (isEscape) {
      result.append(units, start, at - start).push_back(unitForLetter(units[at + 1]));
      start = at + 2;
    }
    at = findUnit(units, at + (isEscape ? 2 : 1), isBackslash);
  }
  if (start == 0) return text;
  return Text(std::move(result.append(units, start)));
}

Text stringByReplacingUnescapedOccurrencesOfString(const Text& text, const Text& target,
                                                   const Text& withString) {
  const std::u16string_view units = text.units();
  UnitSearch search(target.units());
  std::size_t at = search.find(units, 0, units.size());
  if (at == Text::npos) return text;
  ForwardEdits result(units);
  bool isChanged = false;
  while (at != Text::npos) {
    (void)result.moveTo(at);
    if (result.backslashesBefore() % 2 == 0) {
      result.replace(target.length(), withString.units());
      isChanged = true;
    }
    // KEEP: the search runs over the receiver with positions of the result.
    at = search.find(units, at + 1, result.length());
  }
  return isChanged ? Text(std::move(result).finish()) : text;
}

Text stringByExpandingEscapedControlCharacters(const Text& text) {
  Text result = stringByReplacingUnescapedOccurrencesOfString(text, "\\r", "\r");
  result = stringByReplacingUnescapedOccurrencesOfString(result, "\\n", "\n");
  return stringByReplacingUnescapedOccurrencesOfString(result, "\\t", "\t");
}

Text stringWithObjCString(const Text& literal) {
  if (literal.length() <= 2) return Text();
  const Text quoted = literal.substring(2, literal.length() - 3);
  const std::pair<const char*, const char*> replacements[] = {
      {"\\\\", "\\"}, {"\\\"", "\""}, {"\\r", "\r"}, {"\\n", "\n"}, {"\\t", "\t"}};
  Text result = quoted;
  for (const auto& [escape, unit] : replacements) result = result.replacing(escape, unit);
  return result;
}

Text objCStringWithString(const Text& text) { return text; }

}  // namespace StringExtensions
}  // namespace halvorn
