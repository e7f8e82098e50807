#include "Platform/text/posix/HtmlReferences.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace halvorn {
namespace {

constexpr std::size_t kLongestName = 31;
constexpr std::size_t kLongestOlderName = 6;

struct Entry {
  char name[kLongestName + 1];
  bool isOlder;         // known without its semicolon too
  char32_t scalars[2];  // the second may be 0

  [[nodiscard]] constexpr std::string_view nameView() const { return name; }
};

constexpr Entry kEntries[] = {
#include "Platform/text/posix/HtmlReferences.inc"
};
constexpr auto kByName = [](const Entry& a, const Entry& b) { return a.nameView() < b.nameView(); };
static_assert(std::size(kEntries) == 2125 &&
              std::is_sorted(std::begin(kEntries), std::end(kEntries), kByName));

// What pages that were written on Windows mean by the numbers from 128.
constexpr std::array<char16_t, 32> kFrom128 = {0x20AC, 0x81,   0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021,
                                               0x2C6,  0x2030, 0x160,  0x2039, 0x152,  0x8D,   0x17D,  0x8F,
                                               0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                               0x2DC,  0x2122, 0x161,  0x203A, 0x153,  0x9D,   0x17E,  0x178};
constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kBeyondUnicode = 0x110000;

void append(std::u16string& units, char32_t scalar) {
  if (scalar < 0x10000) {
    units.push_back(static_cast<char16_t>(scalar));
  } else {
    units.push_back(static_cast<char16_t>(0xD7C0 + (scalar >> 10)));
    units.push_back(static_cast<char16_t>(0xDC00 + (scalar & 0x3FF)));
  }
}

const Entry* entryNamed(std::string_view name) {
  const auto* const found =
      std::lower_bound(std::begin(kEntries), std::end(kEntries), name,
                       [](const Entry& entry, std::string_view wanted) { return entry.nameView() < wanted; });
  return found != std::end(kEntries) && found->nameView() == name ? found : nullptr;
}

HtmlReference reference(const Entry& entry, std::size_t length) {
  HtmlReference result{{}, length};
  append(result.text, entry.scalars[0]);
  if (entry.scalars[1] != 0) append(result.text, entry.scalars[1]);
  return result;
}

std::optional<HtmlReference> nameAt(std::u16string_view page) {
  char name[kLongestName];
  std::size_t length = 0;
  for (const char16_t unit : page.substr(1, kLongestName)) {
    const char16_t lower = unit | 0x20;
    if (!(unit >= u'0' && unit <= u'9') && !(unit < 0x80 && lower >= u'a' && lower <= u'z')) break;
    name[length++] = static_cast<char>(unit);
  }
  const Entry* entry = nullptr;
  const bool isEnded = page.size() > length + 1 && page[length + 1] == u';';
  if (isEnded) entry = entryNamed({name, length});
  if (entry != nullptr) return reference(*entry, length + 2);
  for (std::size_t part = std::min(length, kLongestOlderName); part > 1; --part) {
    entry = entryNamed({name, part});
    if (entry != nullptr && entry->isOlder) return reference(*entry, part + 1);
  }
  return std::nullopt;
}

// The value of a digit; 16 when it is none.
constexpr char32_t digitValue(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  const char16_t lower = unit | 0x20;
  return unit < 0x80 && lower >= u'a' && lower <= u'f' ? lower - u'a' + 10u : 16u;
}

char32_t scalarNumbered(char32_t number) {
  if (number >= 0x80 && number < 0xA0) return kFrom128[number - 0x80];
  const bool isSurrogate = number >= 0xD800 && number < 0xE000;
  return number == 0 || isSurrogate || number >= kBeyondUnicode ? kReplacement : number;
}

std::optional<HtmlReference> numberAt(std::u16string_view page) {
  const bool isHexadecimal = page.size() > 2 && (page[2] == u'x' || page[2] == u'X');
  const char32_t base = isHexadecimal ? 16 : 10;
  const std::size_t start = isHexadecimal ? 3 : 2;
  std::size_t end = start;
  char32_t number = 0;
  for (; end < page.size() && digitValue(page[end]) < base; ++end) {
    number = std::min<char32_t>(number * base + digitValue(page[end]), kBeyondUnicode);
  }
  if (end == start) return std::nullopt;
  HtmlReference result{{}, end + (end < page.size() && page[end] == u';' ? 1 : 0)};
  append(result.text, scalarNumbered(number));
  return result;
}

}  // namespace

std::optional<HtmlReference> htmlReferenceAt(std::u16string_view page) {
  if (page.substr(0, 1) != u"&") return std::nullopt;
  return page.substr(1, 1) == u"#" ? numberAt(page) : nameAt(page);
}

}  // namespace halvorn
