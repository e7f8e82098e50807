#include "Platform/text/mac/MacUnicode.h"

#import <CoreFoundation/CoreFoundation.h>

#include <utility>

#include "Platform/running/mac/Conversions.h"

namespace halvorn {
namespace {

constexpr bool isSurrogate(char16_t unit) { return (unit & 0xF800) == 0xD800; }
constexpr bool isPair(char16_t first, char16_t second) {
  return (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00;
}

bool isIn(char32_t scalar, SEL set) {
  return answered(false, [&] {
    NSCharacterSet* const members = [NSCharacterSet performSelector:set];
    return static_cast<bool>([members longCharacterIsMember:scalar]);
  });
}

// What the change makes of the text. Lone surrogates stay: what stands between them is changed by itself.
template <typename Change>
Text changed(const Text& text, Change change) {
  return answered(text, [&] {
    const std::u16string_view units = text.units();
    std::u16string result;
    std::size_t start = 0;
    const auto add = [&](std::size_t end) {
      if (end > start) result += textOf(change(stringOf(text.substring(start, end - start))))->units();
    };
    for (std::size_t i = 0; i < units.size(); ++i) {
      if (!isSurrogate(units[i])) continue;
      if (i + 1 < units.size() && isPair(units[i], units[i + 1])) {
        ++i;
        continue;
      }
      add(i);
      result.push_back(units[i]);
      start = i + 1;
    }
    add(units.size());
    return Text(std::move(result));
  });
}

}  // namespace

bool MacUnicode::isLetter(char32_t scalar) const { return isIn(scalar, @selector(letterCharacterSet)); }

bool MacUnicode::isAlphanumeric(char32_t scalar) const {
  return isIn(scalar, @selector(alphanumericCharacterSet));
}

bool MacUnicode::isControl(char32_t scalar) const { return isIn(scalar, @selector(controlCharacterSet)); }

// Some releases of the system still have the zero-width space in the set.
bool MacUnicode::isWhiteSpace(char32_t scalar) const {
  return scalar != U'\u200B' && isIn(scalar, @selector(whitespaceAndNewlineCharacterSet));
}

bool MacUnicode::isUnassigned(char32_t scalar) const {
  const bool isSurrogateCode = scalar >= 0xD800 && scalar <= 0xDFFF;
  return !isSurrogateCode && isIn(scalar, @selector(illegalCharacterSet));
}

Text MacUnicode::caseFolded(const Text& text) const {
  return changed(text, [](NSString* part) {
    NSMutableString* const folded = [NSMutableString stringWithString:part];
    CFStringFold((CFMutableStringRef)folded, kCFCompareCaseInsensitive, nullptr);
    return static_cast<NSString*>(folded);
  });
}

Text MacUnicode::decomposed(const Text& text) const {
  return changed(text, [](NSString* part) { return [part decomposedStringWithCanonicalMapping]; });
}

Ordering MacUnicode::compareCaseInsensitive(const Text& a, const Text& b) const {
  const auto order = caseFolded(a) <=> caseFolded(b);
  return order < 0 ? Ordering::Ascending : order > 0 ? Ordering::Descending : Ordering::Same;
}

}  // namespace halvorn
