// Splits, escapes and reads texts.
#include <KTStuff/CocoaExtensions/StringExtensions.h>
#include <KTStuff/KTSystem.h>

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
  std::cout << system.regexReplacing()
                   .stringByReplacingOccurrencesOfRegexPattern("2026-11-22", "(\\d+)-(\\d+)-(\\d+)",
                                                               "$3.$2.$1")
                   .bytes()
            << "\n";
  std::cout << MD5String("abc", system.digests()).bytes() << "\n";
}
