#include "KTStuff/CocoaExtensions/StringExtensionsLines.h"

#include "Core/TextPieces.h"
#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

namespace halvorn::StringExtensions {
namespace {

constexpr bool isBreakUnit(char16_t unit) { return (unit == u'\r') | (unit == u'\n'); }

std::vector<Text> split(const Text& text, std::u16string_view separator) {
  const std::u16string_view units = text.units();
  UnitSearch search(separator);
  std::vector<Text> parts;
  TextPieces pieces(text);
  std::size_t start = 0;
  while (true) {
    const std::size_t at = search.find(units, start, units.size());
    if (at == Text::npos) break;
    pieces.cutInto(parts, start, at - start);
    start = at + separator.size();
  }
  pieces.cutInto(parts, start, units.size() - start);
  return parts;
}

// A separator that no later pass finds again: all three passes can be made as one.
bool isReplacedOnce(std::u16string_view separator) {
  return separator.size() == 1 || findUnit(separator, 0, isBreakUnit) == Text::npos;
}

Text withEveryBreakReplaced(const Text& text, std::u16string_view separator) {
  const std::u16string_view units = text.units();
  const char16_t own = separator.size() == 1 ? separator.front() : u'\0';
  const auto isForeign = [own](char16_t unit) { return isBreakUnit(unit) & (unit != own); };
  if (findUnit(units, 0, isForeign) == Text::npos) return text;

  std::u16string result;
  result.reserve(units.size() + (separator.size() > 1 ? units.size() / 8 : 0));
  std::size_t start = 0;  // of what is not yet in the result
  forEachUnit(units, isForeign, [&](std::size_t at) {
    result.append(units, start, at - start);
    start = at + 1;
    // Of a "\r\n" one unit becomes the separator, or is it, and the other goes.
    const bool isSecond = units[at] == u'\n' && at > 0 && units[at - 1] == u'\r';
    const bool isBeforeOwn = own == u'\n' && start < units.size() && units[start] == u'\n';
    if (!isSecond && !isBeforeOwn) result.append(separator);
  });
  return Text(std::move(result.append(units, start)));
}

}  // namespace

std::vector<Text> arrayOfLines(const Text& text) {
  for (const std::u16string_view separator : {u"\r\n", u"\n"}) {
    if (UnitSearch(separator).find(text.units(), 0, text.length()) != Text::npos)
      return split(text, separator);
  }
  return split(text, u"\r");
}

Text withLineSeparator(const Text& text, const OptionalText& separator) {
  const Text wanted = separator.value_or(Text());
  if (isReplacedOnce(wanted.units())) return withEveryBreakReplaced(text, wanted.units());
  // KEEP: in this order, although a separator such as "\r\n" is then taken apart by the later passes.
  Text result = text;
  for (const Text target : {"\r\n", "\r", "\n"}) {
    if (!(wanted == target)) result = result.replacing(target, wanted);
  }
  return result;
}

std::vector<Text> componentsSeparatedByCharacter(const Text& text, char16_t character) {
  const std::u16string_view units = text.units();
  const auto isSeparator = [character](char16_t unit) { return unit == character; };
  std::vector<Text> parts;
  parts.reserve(std::max(units.size() / 10, countUnits(units, isSeparator) + 1));
  TextPieces pieces(text);
  std::size_t start = 0;
  forEachUnit(units, isSeparator, [&](std::size_t at) {
    pieces.cutInto(parts, start, at - start);
    start = at + 1;
  });
  // KEEP: a separator at the end is not followed by an empty part.
  if (start < units.size()) pieces.cutInto(parts, start, units.size() - start);
  return parts;
}

Text repeated(const Text& text, std::int32_t count) {
  if (count < 1) return Text();
  if (count == 1) return text;
  const Text half = repeated(text, count / 2);
  const Text even = half + half;
  return count % 2 == 0 ? even : even + text;
}

}  // namespace halvorn::StringExtensions
