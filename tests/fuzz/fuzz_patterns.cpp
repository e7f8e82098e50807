// Wildcards, beside a matcher that tries every place.
#include <vector>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/fuzz/FuzzInput.h"

using namespace halvorn;
using namespace halvorn::StringExtensions;

namespace {

// Row by row: whether the pattern so far matches the text up to each place.
bool expectedMatch(std::u16string_view text, std::u16string_view pattern) {
  std::vector<bool> matches(text.size() + 1, false);
  matches[0] = true;
  for (const char16_t unit : pattern) {
    for (std::size_t i = text.size() + 1; i-- > 0 && unit != u'*';) {
      matches[i] = i > 0 && matches[i - 1] && text[i - 1] == unit;
    }
    for (std::size_t i = 1; i <= text.size() && unit == u'*'; ++i) matches[i] = matches[i] || matches[i - 1];
  }
  return matches[text.size()];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const Text text = input.text();
  const Text pattern = input.text();
  if (text.length() * pattern.length() > 1'000'000) return 0;
  require(matchesWildcardPattern(text, pattern) == expectedMatch(text.units(), pattern.units()),
          "the match is right");
  return 0;
}
