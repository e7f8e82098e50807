// Percent escapes.
#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/fuzz/FuzzInput.h"

using namespace halvorn;
using namespace halvorn::StringExtensions;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Text text = FuzzInput(data, size).text();
  const Text expanded = stringWithExpandedPercentEscapes(text);
  require(expanded.length() <= text.length(), "expanding makes no text longer");
  const Text escaped = stringWithPercentEscapes(text);
  if (hasLoneSurrogate(text)) {
    require(escaped.isSameObject(text), "a lone surrogate cannot be escaped");
    return 0;
  }
  require(stringWithPercentEscapes(escaped) == escaped, "escaping is done once");
  require(stringWithExpandedPercentEscapes(escaped) == expanded, "escapes can be taken back");
  for (const char16_t unit : escaped.units()) require(unit > 0x20 && unit < 0x7F, "only ASCII is left");
  return 0;
}
