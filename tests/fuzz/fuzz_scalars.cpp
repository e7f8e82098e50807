// Scalars, trimming, lines, skin colors.
#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "tests/fuzz/FuzzInput.h"

using namespace halvorn;
using namespace halvorn::StringExtensions;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const IcuUnicode unicode;
  FuzzInput input(data, size);
  const auto color = static_cast<std::int32_t>(input.byte() % 8);
  const Text text = input.text();
  const Text separator = input.text();

  std::u16string collected;
  std::size_t count = 0;
  forUTF32Characters(text, [&](char32_t scalar) {
    collected += Text::fromScalar(scalar).units();
    ++count;
  });
  if (!hasLoneSurrogate(text)) {
    require(Text(collected) == text, "a well-formed text is made of its scalars");
    require(count == numberOfUnicodeCharacters(text), "there are as many as are counted");
  }
  const Text colored = emojiStringWithSkinColor(text, color);
  if (color > 0 && color < 7) {
    require(emojiStringWithSkinColor(colored, color).isSameObject(colored),
            "a colour stays when asked for again");
  }
  const Text trimmed = stringByTrimmingWhitespace(text);
  require(stringByTrimmingWhitespace(trimmed).isSameObject(trimmed), "trimming is done once");
  const Text line = asSingleLine(text, unicode);
  require(asSingleLine(line, unicode) == line, "a single line is a single line");
  require(join(arrayOfLines(text), "\n").length() <= text.length(), "lines are parts of the text");
  const Text normalised = withLineSeparator(text, "\n");
  require(withLineSeparator(normalised, "\n").isSameObject(normalised), "line ends are normalised once");
  (void)withLineSeparator(text, separator);
  const Text comma = separator.isEmpty() ? Text(",") : separator.substring(0, 1);
  const Text joined = join(componentsSeparatedByCharacter(text, comma.at(0)), comma);
  require(joined == text || joined + comma == text, "parts are joined again but for an end");
  (void)UTF16SequenceString(text);
  return 0;
}
