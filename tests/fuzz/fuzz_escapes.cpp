// Backslashes in and out, source literals.
#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/fuzz/FuzzInput.h"

using namespace halvorn;
using namespace halvorn::StringExtensions;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  const Text text = input.text();
  const Text characters = input.text();
  const Text target = input.text();
  const Text replacement = input.text();

  const Text escaped = stringByEscapingCharacters(text, characters);
  require(escaped.length() >= text.length(), "escaping makes no text shorter");
  const Text expanded = stringByExpandingEscapedCharacters(text, characters);
  require(expanded.length() <= text.length(), "expanding makes no text longer");
  // With one character to escape, the escape is exact. Letters that stand for
  // control characters are none to escape.
  const bool hasLetters = characters.contains("n") || characters.contains("r") || characters.contains("t");
  if (escaped.length() == text.length() + 1 && !hasLetters && !characters.contains("\\") &&
      !text.contains("\\")) {
    require(stringByExpandingEscapedCharacters(escaped, characters) == text, "one escape can be taken back");
  }
  const Text replaced = stringByReplacingUnescapedOccurrencesOfString(text, target, replacement);
  if (!text.contains(target) || target.isEmpty()) require(replaced.isSameObject(text), "nothing to replace");
  require(stringByExpandingEscapedControlCharacters(text).length() <= text.length(), "no text grows");
  require(text.length() > 2 || stringWithObjCString(text).isEmpty(), "a short literal is empty");
  return 0;
}
