// Splits, escapes and reads texts, and finds out the encoding of a file.
#include <KTStuff/CocoaExtensions/StringExtensions.h>
#include <KTStuff/KTSystem.h>

#include <filesystem>
#include <fstream>
#include <iostream>

using namespace halvorn;
using namespace halvorn::StringExtensions;

int main() {
  KTSystem system;
  for (const Text& line : arrayOfLines("first\r\nsecond\r\nthird"))
    std::cout << "line: " << line.bytes() << "\n";
  std::cout << stringByEscapingCharacters("a\tb", KTEscapeCharacters).bytes() << "\n";
  std::cout << stringWithPercentEscapes("two words").bytes() << "\n";
  std::cout << stringByExpandingHTMLEntities("<p>caf&eacute; &lt;3", system.htmlText()).bytes() << "\n";
  const auto& replacing = system.regexReplacing();
  std::cout
      << replacing.stringByReplacingOccurrencesOfRegexPattern("11/22", "(\\d+)/(\\d+)", "$2.$1.").bytes()
      << "\n";
  std::cout << MD5String("abc", system.digests()).bytes() << "\n";

  const auto file = std::filesystem::temp_directory_path() / "ktstuff-latin.txt";
  std::ofstream(file) << "caf\xE9 au lait, d\xE9j\xE0 vu";
  const OptionalText read =
      stringWithBestEncodingFromFile(file.string(), system.files(), system.textCodecs(), system.unicode());
  std::cout << read.value_or("unreadable").bytes() << "\n";
}
