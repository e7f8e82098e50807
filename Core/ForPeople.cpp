#include "Core/ForPeople.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

namespace halvorn {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Controls; what the standard calls ignorable by default; marks in the text and its fillers.
constexpr std::array<Range, 23> kInvisible = {
    {{0x00, 0x1F},       {0x7F, 0x9F},       {0xAD, 0xAD},      {0x34F, 0x34F},     {0x61C, 0x61C},
     {0x115F, 0x1160},   {0x17B4, 0x17B5},   {0x180B, 0x180F},  {0x200B, 0x200F},   {0x2028, 0x202E},
     {0x2060, 0x206F},   {0x2800, 0x2800},   {0x3164, 0x3164},  {0xFDD0, 0xFDEF},   {0xFE00, 0xFE0F},
     {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},   {0xFFF0, 0xFFFB},  {0x13430, 0x1343F}, {0x1BCA0, 0x1BCA3},
     {0x1D159, 0x1D159}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}}};

constexpr std::array<Range, 5> kRightToLeft = {
    {{0x590, 0x8FF}, {0xFB1D, 0xFDCF}, {0xFDF0, 0xFEFC}, {0x10800, 0x10FFF}, {0x1E800, 0x1EFFF}}};

template <std::size_t Count>
bool isIn(const std::array<Range, Count>& ranges, char32_t character) {
  return std::any_of(ranges.begin(), ranges.end(), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

constexpr char32_t kNonJoiner = 0x200C;
constexpr char32_t kJoiner = 0x200D;
constexpr char16_t kBeginIsolation = 0x2068;
constexpr char16_t kEndIsolation = 0x2069;

// Scripts whose letters take another shape beside each other: from Arabic to Khmer, and Mongolian.
bool joins(char32_t character) {
  return (character >= 0x620 && character <= 0x17FF && !isInvisible(character)) ||
         (character >= 0x1820 && character <= 0x1CFF) || (character >= 0xA800 && character <= 0xABFF);
}
bool isPicture(char32_t character) {
  return (character >= 0x203C && character <= 0x3299 && !isInvisible(character)) ||
         (character >= 0x1F000 && character <= 0x1FAFF);
}

std::u32string charactersOf(const Text& text) {
  std::u32string characters;
  const std::u16string_view units = text.units();
  for (std::size_t i = 0; i < units.size(); ++i) {
    const bool isPair = units[i] >= 0xD800 && units[i] < 0xDC00 && i + 1 < units.size() &&
                        units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
    characters.push_back(isPair ? 0x10000U + ((units[i] - 0xD800U) << 10U) + (units[i + 1] - 0xDC00U)
                                : units[i]);
    i += isPair ? 1 : 0;
  }
  return characters;
}

void append(std::u16string& units, char32_t character) {
  if (character < 0x10000) {
    units.push_back(static_cast<char16_t>(character));
    return;
  }
  units.push_back(static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10U)));
  units.push_back(static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FFU)));
}

// Whether the character at the place has a part in what stands around it.
bool belongs(const std::u32string& all, std::size_t at) {
  if (at == 0) return false;
  const char32_t before = all[at - 1];
  const char32_t after = at + 1 < all.size() ? all[at + 1] : 0;
  if (all[at] == 0xFE0F || all[at] == 0xFE0E) return isPicture(before) || after == 0x20E3;
  if (all[at] == kJoiner && isPicture(after)) return isPicture(before) || before == 0xFE0F;
  return (all[at] == kJoiner || all[at] == kNonJoiner) && joins(before) && joins(after);
}

Text isolated(const Text& text) {
  std::u16string units(1, kBeginIsolation);
  units.append(text.units()).push_back(kEndIsolation);
  return Text(std::move(units));
}

}  // namespace

bool isInvisible(char32_t character) { return isIn(kInvisible, character); }

std::u16string shownAsNumber(char32_t character) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "\\u{%04X}", static_cast<unsigned>(character));
  std::u16string shown;
  for (const char* sign = buffer; *sign != '\0'; ++sign) shown.push_back(static_cast<char16_t>(*sign));
  return shown;
}

Text undisguised(const Text& name) {
  const std::u32string all = charactersOf(name);
  if (std::none_of(all.begin(), all.end(), isInvisible)) return name;
  std::u16string shown;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (isInvisible(all[i]) && !belongs(all, i)) {
      shown += shownAsNumber(all[i]);
    } else {
      append(shown, all[i]);
    }
  }
  return Text(std::move(shown));
}

bool hasRightToLeft(const Text& text) {
  const std::u32string all = charactersOf(text);
  return std::any_of(all.begin(), all.end(),
                     [](char32_t character) { return isIn(kRightToLeft, character); });
}

Text formatNames(const Text& text, std::vector<FormatArgument> arguments) {
  bool isMixed = hasRightToLeft(text);
  for (FormatArgument& argument : arguments) {
    if (argument.text() == nullptr) continue;
    argument = FormatArgument(undisguised(*argument.text()));
    isMixed = isMixed || hasRightToLeft(*argument.text());
  }
  for (FormatArgument& argument : arguments) {
    if (isMixed && argument.text() != nullptr) argument = FormatArgument(isolated(*argument.text()));
  }
  return formatWithArguments(text, arguments);
}

}  // namespace halvorn
