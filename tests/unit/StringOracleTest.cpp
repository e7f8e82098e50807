// Every algorithm beside one that is slow and obvious, on random texts.
//
// The oracles change whole copies in place, unit by unit, as the operations are described; nothing is shared
// with the code under test. "The text itself" is compared as identity.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <functional>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/support/RandomTexts.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;
using Units = std::u16string;

// The number of tests below that look at texts.
constexpr std::size_t kNumberOfTests = 20;

void forRandomTexts(const std::function<void(RandomTexts&)>& look) {
  RandomTexts random;
  for (std::size_t i = RandomTexts::share(kNumberOfTests); i > 0 && !testing::Test::HasFailure(); --i)
    look(random);
}

// The result must be the receiver itself just when the oracle changed nothing.
void expectResult(const Text& receiver, const Text& result, const Units& expected, bool isChanged) {
  EXPECT_EQ(result, Text(expected)) << testing::PrintToString(receiver);
  EXPECT_EQ(result.isSameObject(receiver), !isChanged || receiver.isEmpty())
      << testing::PrintToString(receiver);
}

Units unitsOf(const Text& text) { return Units(text.units()); }

bool isIn(char16_t unit, const Units& set) { return set.find(unit) != Units::npos; }
bool isHigh(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLow(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

int replaceAll(Units& units, const Units& target, const Units& with) {
  int count = 0;
  for (std::size_t at = 0; (at = units.find(target, at)) != Units::npos; at += with.size(), ++count) {
    units.replace(at, target.size(), with);
  }
  return count;
}

TEST(StringOracle, NumberOfUnicodeCharacters) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text();
    std::uint32_t count = 0;
    for (std::size_t i = 0; i < text.length(); ++i, ++count) {
      if (isHigh(text.at(i)) && i + 1 < text.length() && isLow(text.at(i + 1))) ++i;
    }
    EXPECT_EQ(numberOfUnicodeCharacters(text), count) << testing::PrintToString(text);
  });
}

TEST(StringOracle, StringByTrimmingWhitespace) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u" \t\n\u00A0\u0001!" : RandomTexts::kEdgeUnits);
    Units expected = unitsOf(text);
    const auto isBlank = [](char16_t unit) { return unit < 33 || unit == 160; };
    while (!expected.empty() && isBlank(expected.front())) expected.erase(0, 1);
    while (!expected.empty() && isBlank(expected.back())) expected.pop_back();
    expectResult(text, stringByTrimmingWhitespace(text), expected, expected.size() != text.length());
    const MutableText receiver(text);
    const MutableText result = stringByTrimmingWhitespace(receiver);
    EXPECT_EQ(result.text(), Text(expected));
    EXPECT_EQ(result.isSameObject(receiver), expected.size() == text.length());
  });
}

TEST(StringOracle, TrimWhitespaceAndAsSingleLine) {
  const FakeUnicode unicode;
  forRandomTexts([&](RandomTexts& random) {
    const Text text = random.text();
    const Units kWhite = u"\t\n\v\f\r \u0085\u00A0";
    const auto trimmed = [&](Units units) {
      while (!units.empty() && isIn(units.front(), kWhite)) units.erase(0, 1);
      while (!units.empty() && isIn(units.back(), kWhite)) units.pop_back();
      return Text(units);
    };
    EXPECT_EQ(trimWhitespace(text, unicode).text(), trimmed(unitsOf(text)));
    Units line = unitsOf(text);
    for (char16_t& unit : line) {
      if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0xAD) unit = u' ';
    }
    EXPECT_EQ(asSingleLine(text, unicode), trimmed(line));
  });
}

TEST(StringOracle, ArrayOfLines) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(u"ab\r\n");
    const Units units = unitsOf(text);
    Units separator = u"\r";
    if (units.find(u'\n') != Units::npos) separator = u"\n";
    if (units.find(u"\r\n") != Units::npos) separator = u"\r\n";
    std::vector<Text> expected;
    Units line;
    for (std::size_t i = 0; i < units.size();) {
      if (units.compare(i, separator.size(), separator) == 0) {
        expected.push_back(Text(line));
        line.clear();
        i += separator.size();
      } else {
        line.push_back(units[i++]);
      }
    }
    expected.push_back(Text(line));
    EXPECT_EQ(arrayOfLines(text), expected) << testing::PrintToString(text);
  });
}

TEST(StringOracle, WithLineSeparator) {
  const Units separators[] = {u"\n", u"\r", u"\r\n", u"\n\r", u"\n\n", u"", u"|", u"<br>", u"x\n", u"\ry"};
  forRandomTexts([&](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"ab\r\n|" : RandomTexts::kEdgeUnits);
    const Units separator = separators[random.below(std::size(separators))];
    Units expected = unitsOf(text);
    int count = 0;
    for (const Units target : {u"\r\n", u"\r", u"\n"}) {
      if (separator != target) count += replaceAll(expected, target, separator);
    }
    expectResult(text, withLineSeparator(text, Text(separator)), expected, count > 0);
  });
}

TEST(StringOracle, ComponentsSeparatedByCharacter) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"ab," : RandomTexts::kEdgeUnits);
    const char16_t separator = random.below(4) == 0 ? u'\xD83D' : u',';
    std::vector<Text> expected;
    Units part;
    for (const char16_t unit : text.units()) {
      if (unit == separator) {
        expected.push_back(Text(part));
        part.clear();
      } else {
        part.push_back(unit);
      }
    }
    if (!part.empty()) expected.push_back(Text(part));
    EXPECT_EQ(componentsSeparatedByCharacter(text, separator), expected) << testing::PrintToString(text);
  });
}

TEST(StringOracle, Repeated) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text();
    const auto count = static_cast<std::int32_t>(random.below(12)) - 2;
    Units expected;
    for (std::int32_t i = 0; i < count; ++i) expected += text.units();
    const Text result = repeated(text, count);
    EXPECT_EQ(result, Text(expected));
    EXPECT_TRUE(count != 1 || result.isSameObject(text));
  });
}

TEST(StringOracle, NumericValue) {
  forRandomTexts([](RandomTexts& random) {
    const Units digits = unitsOf(random.text(u"0123456789abcfF"));
    const Units starts[] = {u"", u" ", u"-", u"+", u"\t\n -", u"0x", u"-0X", u"0", u"- ", u"\u00A0"};
    const Text text(starts[random.below(std::size(starts))] + digits + unitsOf(random.text()));
    // The base is worked out here: base 0 means different things to different C standards.
    const std::string bytes = text.bytes();
    const std::size_t first = std::min(bytes.find_first_not_of(" \t\n\v\f\r"), bytes.size());
    const std::size_t number = first + (bytes.find_first_of("+-", first) == first ? 1 : 0);
    int base = 10;
    if (bytes.substr(number, 1) == "0") base = 8;
    if (bytes.substr(number, 2) == "0x" || bytes.substr(number, 2) == "0X") base = 16;
    EXPECT_EQ(numericValue(text), std::strtoll(bytes.c_str(), nullptr, base)) << testing::PrintToString(text);
  });
}

TEST(StringOracle, BooleanValueAndIsIntegerNumber) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"0012 -+tTyYnx" : RandomTexts::kEdgeUnits);
    const std::string bytes = text.bytes();
    const bool isTrueWord = !bytes.empty() && std::string("TtYy1").find(bytes[0]) != std::string::npos;
    EXPECT_EQ(booleanValue(text), isTrueWord || std::strtoll(bytes.c_str(), nullptr, 10) != 0)
        << testing::PrintToString(text);
    bool isInteger = !text.isEmpty();
    for (const char16_t unit : text.units()) isInteger = isInteger && isIn(unit, u"0123456789");
    EXPECT_EQ(isIntegerNumber(text), isInteger);
  });
}

TEST(StringOracle, SmartFloatValue) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(u"0123456789,.,. -");
    Units units = unitsOf(text);
    const std::size_t comma = units.find(u',');
    const std::size_t point = units.find(u'.');
    if (comma != Units::npos && point == Units::npos) {
      replaceAll(units, u",", u".");
    } else if (comma != Units::npos && comma >= point) {
      replaceAll(units, u".", u"");
      replaceAll(units, u",", u".");
    } else if (comma != Units::npos) {
      replaceAll(units, u",", u"");
    }
    const float expected = std::strtof(Text(units).bytes().c_str(), nullptr);
    if (std::isinf(expected)) return;
    EXPECT_FLOAT_EQ(smartFloatValue(text), expected) << testing::PrintToString(text);
  });
}

// A text as a list of what is compared: characters, or numbers as their digits without leading zeros.
struct Item {
  char32_t character = 0;  // U'0' for a number
  Units digits = {};
  std::strong_ordering operator<=>(const Item& other) const {
    const bool areNumbers = character == U'0' && other.character == U'0';
    if (areNumbers && digits.size() != other.digits.size()) return digits.size() <=> other.digits.size();
    if (areNumbers) return digits.compare(other.digits) <=> 0;
    // A digit against something else: the first digit as it was written.
    return (character == U'0' ? first : character) <=>
           (other.character == U'0' ? other.first : other.character);
  }
  bool operator==(const Item& other) const { return (*this <=> other) == 0; }
  char32_t first = 0;
};

std::vector<Item> itemsOf(const Text& text) {
  std::vector<Item> items;
  const std::u16string_view units = text.units();
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (units[i] >= u'0' && units[i] <= u'9') {
      Item item{.character = U'0', .first = units[i]};
      for (; i < units.size() && units[i] >= u'0' && units[i] <= u'9'; ++i) item.digits.push_back(units[i]);
      while (!item.digits.empty() && item.digits.front() == u'0') item.digits.erase(0, 1);
      items.push_back(item);
      --i;
    } else if (isHigh(units[i]) && i + 1 < units.size() && isLow(units[i + 1])) {
      items.push_back({.character = 0x10000 + ((units[i] - 0xD800u) << 10) + (units[i + 1] - 0xDC00u)});
      ++i;
    } else {
      // Lone surrogates come after the rest of the first plane, as the halves of pairs do.
      items.push_back({.character = isHigh(units[i]) || isLow(units[i]) ? 0x110000u + units[i] : units[i]});
    }
  }
  return items;
}

Ordering orderOf(const std::vector<Item>& a, const std::vector<Item>& b) {
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
    if (a[i] != b[i]) return a[i] < b[i] ? Ordering::Ascending : Ordering::Descending;
  }
  return a.size() < b.size()   ? Ordering::Ascending
         : a.size() > b.size() ? Ordering::Descending
                               : Ordering::Same;
}

TEST(StringOracle, NumericCompareWithAndWithoutCase) {
  const FakeUnicode unicode;
  const Units alphabet = u"aAbBzZ0019 .-_\u00E9\u00C9e\u0301\u0300\u00DFs\uFFFD";
  forRandomTexts([&](RandomTexts& random) {
    const Text start = random.text(alphabet);
    const Text a = start + random.text(alphabet);
    const Text b = random.below(3) == 0 ? random.text(alphabet) : start + random.text(alphabet);
    EXPECT_EQ(numericCompare(a, b, unicode),
              orderOf(itemsOf(unicode.decomposed(a)), itemsOf(unicode.decomposed(b))))
        << testing::PrintToString(a) << " and " << testing::PrintToString(b);
    const auto folded = [&](const Text& text) {
      return itemsOf(unicode.decomposed(unicode.caseFolded(text)));
    };
    EXPECT_EQ(caseInsensitiveNumericCompare(a, b, unicode), orderOf(folded(a), folded(b)))
        << testing::PrintToString(a) << " and " << testing::PrintToString(b);
  });
}

// Whether the pattern from j on matches the text from i on, by trying everything.
bool matches(const Units& text, std::size_t i, const Units& pattern, std::size_t j) {
  if (j == pattern.size()) return i == text.size();
  if (pattern[j] != u'*')
    return i < text.size() && text[i] == pattern[j] && matches(text, i + 1, pattern, j + 1);
  return matches(text, i, pattern, j + 1) || (i < text.size() && matches(text, i + 1, pattern, j));
}

TEST(StringOracle, MatchesWildcardPattern) {
  int matched = 0;
  forRandomTexts([&](RandomTexts& random) {
    const Text text = random.text(u"aab\xD83D").substring(0, 16);
    const Text pattern = random.text(u"aab**\xD83D").substring(0, 8);
    const bool expected = matches(unitsOf(text), 0, unitsOf(pattern), 0);
    EXPECT_EQ(matchesWildcardPattern(text, pattern), expected)
        << testing::PrintToString(text) << " and " << testing::PrintToString(pattern);
    matched += expected ? 1 : 0;
  });
  EXPECT_GT(matched, 100);
}

TEST(StringOracle, StringByEscapingCharacters) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"ab\\\t\n\r\"" : RandomTexts::kEdgeUnits);
    const Text characters = random.below(2) == 0 ? KTEscapeCharacters : random.text();
    const Units receiver = unitsOf(text);
    const Units set = unitsOf(characters);
    const auto search = [&](std::size_t start, std::size_t end) {
      for (std::size_t i = start; i < end && i < receiver.size(); ++i) {
        if (isIn(receiver[i], set)) return i;
      }
      return Units::npos;
    };
    Units copy = receiver;
    std::size_t p = search(0, receiver.size());
    const bool isChanged = p != Units::npos;
    while (p != Units::npos) {
      const char16_t unit = copy.at(p);
      if (unit == u'\t' || unit == u'\r' || unit == u'\n') {
        copy.replace(p, 1, unit == u'\t' ? u"\\t" : unit == u'\r' ? u"\\r" : u"\\n");
      } else {
        copy.insert(p, u"\\");
      }
      p = search(p + 2, copy.size());
    }
    expectResult(text, stringByEscapingCharacters(text, characters), copy, isChanged);
  });
}

TEST(StringOracle, StringByExpandingEscapedCharacters) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"\\\\nrtq\"" : RandomTexts::kEdgeUnits);
    const Text characters = random.below(2) == 0 ? KTEscapeCharacters : random.text(u"\n\r\t\\\"nq");
    Units set = unitsOf(characters);
    for (char16_t& unit : set)
      unit = unit == u'\r' ? u'r' : unit == u'\n' ? u'n' : unit == u'\t' ? u't' : unit;
    Units copy = unitsOf(text);
    bool isChanged = false;
    for (std::size_t i = 0; i + 1 < copy.size(); ++i) {
      if (copy[i] != u'\\' || !isIn(copy[i + 1], set)) continue;
      isChanged = true;
      const char16_t letter = copy[i + 1];
      copy.erase(i, 1);
      copy[i] = letter == u't' ? u'\t' : letter == u'r' ? u'\r' : letter == u'n' ? u'\n' : letter;
    }
    expectResult(text, stringByExpandingEscapedCharacters(text, characters), copy, isChanged);
  });
}

Units replacingUnescaped(const Units& receiver, const Units& target, const Units& with, bool& isChanged) {
  Units w = receiver;
  std::size_t p = target.empty() ? Units::npos : receiver.find(target);
  while (p != Units::npos) {
    std::size_t backslashes = 0;
    while (backslashes < p && w[p - 1 - backslashes] == u'\\') ++backslashes;
    if (backslashes % 2 == 0) {
      w.replace(p, target.size(), with);
      isChanged = true;
    }
    // The range is cut where the receiver or the result ends, whichever is first.
    const std::size_t end = std::min(w.size(), receiver.size());
    p = p + 1 < end ? receiver.substr(0, end).find(target, p + 1) : Units::npos;
  }
  return w;
}

TEST(StringOracle, StringByReplacingUnescapedOccurrences) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"xy\\\\" : RandomTexts::kEdgeUnits);
    const Text target = random.text(u"xy\\").substring(0, 3);
    const Text with = random.text(u"xyz\\").substring(0, random.below(7));
    bool isChanged = false;
    const Units expected = replacingUnescaped(unitsOf(text), unitsOf(target), unitsOf(with), isChanged);
    expectResult(text, stringByReplacingUnescapedOccurrencesOfString(text, target, with), expected,
                 isChanged);
  });
}

TEST(StringOracle, StringByExpandingEscapedControlCharacters) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"nrt\\\\a" : RandomTexts::kEdgeUnits);
    bool isChanged = false;
    Units expected = unitsOf(text);
    for (const auto& [escape, unit] :
         {std::pair<Units, Units>{u"\\r", u"\r"}, {u"\\n", u"\n"}, {u"\\t", u"\t"}}) {
      expected = replacingUnescaped(expected, escape, unit, isChanged);
    }
    expectResult(text, stringByExpandingEscapedControlCharacters(text), expected, isChanged);
  });
}

std::u32string scalarsOf(const Units& units) {
  std::u32string scalars;
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (!isHigh(units[i])) {
      scalars.push_back(units[i]);
    } else if (i + 1 < units.size() && isLow(units[i + 1])) {
      scalars.push_back(0x10000 + (units[i] - 0xD800u) * 1024 + (units[i + 1] - 0xDC00u));
      ++i;
    } else {
      ++i;  // dropped, with the unit behind it
    }
  }
  return scalars;
}

TEST(StringOracle, ForUTF32CharactersAndTheSequenceStrings) {
  forRandomTexts([](RandomTexts& random) {
    const Text text =
        random.text(random.below(2) == 0 ? u"a\xD83D\xDE00\xD83D\xDE00" : RandomTexts::kEdgeUnits);
    const std::u32string expected = scalarsOf(unitsOf(text));
    std::u32string reported;
    forUTF32Characters(text, [&](char32_t scalar) { reported.push_back(scalar); });
    EXPECT_EQ(reported, expected) << testing::PrintToString(text);
    std::string sequence;
    for (const char32_t scalar : expected) {
      char number[16];
      std::snprintf(number, sizeof number, sequence.empty() ? "%04X" : ",%04X",
                    static_cast<unsigned>(scalar));
      sequence += number;
    }
    EXPECT_EQ(UTF32SequenceString(text), Text(sequence));
  });
}

TEST(StringOracle, LongCharacterAtIndexAndSkinColours) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"a\xD83D\xDC4D\xD83C\xDFFB\xDFFC\uFE0F\u200D"
                                                       : RandomTexts::kEdgeUnits);
    const Units units = unitsOf(text);
    const std::size_t index = random.below(text.length() + 1);
    const Units rest = units.substr(index);
    const bool isPair = rest.size() > 1 && isHigh(rest[0]) && isLow(rest[1]);
    const char32_t expected = rest.empty() ? 0 : isPair ? scalarsOf(rest.substr(0, 2))[0] : rest[0];
    EXPECT_EQ(longCharacterAtIndex(text, static_cast<std::int32_t>(index)), expected);

    const auto color = static_cast<std::int32_t>(random.below(9)) - 1;
    const char16_t lows[] = {0, 0, 0xDFFB, 0xDFFB, 0xDFFC, 0xDFFD, 0xDFFE, 0xDFFF, 0};
    const char16_t wanted = lows[color + 1];
    const Units modifier = wanted == 0 ? Units(1, u'\0') : Units{0xD83C, wanted};
    std::size_t at = 1;
    const auto isModifier = [&](std::size_t i) {
      return units[i] == 0xD83C && units[i + 1] >= 0xDFFB && isLow(units[i + 1]);
    };
    while (at + 1 < units.size() && !isModifier(at)) ++at;
    const char16_t present = at + 1 < units.size() ? units[at + 1] : u'\0';
    Units result = units;
    if (present != wanted && present != 0) {
      result.replace(at, 2, modifier);
    } else if (present != wanted && !units.empty()) {
      const std::size_t head = units.size() > 1 && isHigh(units[0]) && isLow(units[1]) ? 2 : 1;
      if (units.compare(head, 2, u"\uFE0F\u200D") == 0) result.erase(head, 1);
      result.insert(head, modifier);
    }
    expectResult(text, emojiStringWithSkinColor(text, color), result, result != units);
  });
}

TEST(StringOracle, PercentEscapes) {
  forRandomTexts([](RandomTexts& random) {
    const Text text = random.text(random.below(2) == 0 ? u"%%%4C3a9E2fF0 " : RandomTexts::kEdgeUnits);
    const Units units = unitsOf(text);
    // Runs of escapes must be UTF-8 each; anything malformed makes it the text itself.
    Units decoded;
    bool isValid = true;
    for (std::size_t i = 0; i < units.size() && isValid;) {
      std::string bytes;
      for (; i < units.size() && units[i] == u'%'; i += 3) {
        const std::string digits = Text(units.substr(i + 1, 2)).bytes();
        isValid = isValid && digits.size() == 2 &&
                  digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
        if (!isValid) break;
        bytes.push_back(static_cast<char>(std::stoi(digits, nullptr, 16)));
      }
      const auto part = Text::fromStrictUtf8(bytes);
      isValid = isValid && part;
      if (isValid) decoded += part->units();
      if (isValid && i < units.size()) decoded.push_back(units[i++]);
    }
    if (!isValid) decoded = units;
    expectResult(text, stringWithExpandedPercentEscapes(text), decoded, decoded != units);

    std::string encoded;
    for (const char byte : Text(decoded).bytes()) {
      char escape[8];
      const bool isLegal =
          byte > 0x20 && byte < 0x7F && std::string("\"#%<>[\\]^`{|}").find(byte) == std::string::npos;
      std::snprintf(escape, sizeof escape, isLegal ? "%c" : "%%%02X", static_cast<unsigned char>(byte));
      encoded += escape;
    }
    bool isEncodable = true;
    for (std::size_t i = 0; i < decoded.size(); ++i) {
      const bool isPair = isHigh(decoded[i]) && i + 1 < decoded.size() && isLow(decoded[i + 1]);
      isEncodable = isEncodable && (isPair || !(isHigh(decoded[i]) || isLow(decoded[i])));
      if (isPair) ++i;
    }
    const Units expected = isEncodable ? unitsOf(Text(encoded)) : units;
    expectResult(text, stringWithPercentEscapes(text), expected, expected != units);
  });
}

TEST(StringOracle, SearchesAlsoAfterManyComparisonsInVain) {
  forRandomTexts([](RandomTexts& random) {
    // Of one letter mostly, so that nearly everything nearly matches.
    Units text(random.below(60) * (random.below(20) == 0 ? 40 : 1), u'a');
    for (std::size_t i = random.below(4); i > 0 && !text.empty(); --i) text[random.below(text.size())] = u'b';
    Units pattern(random.below(random.below(8) == 0 ? 200 : 8), u'a');
    if (!pattern.empty() && random.below(2) == 0) pattern[random.below(pattern.size())] = u'b';
    UnitSearch search(pattern);
    const std::size_t step = random.below(2) == 0 ? 1 : std::max<std::size_t>(pattern.size(), 1);
    std::size_t expected = pattern.empty() ? Units::npos : text.find(pattern);
    for (std::size_t start = 0; expected != Units::npos;
         start = expected + step, expected = text.find(pattern, start)) {
      ASSERT_EQ(search.find(text, start, text.size()), expected);
    }
    EXPECT_EQ(UnitSearch(pattern).find(text, text.size() / 2, text.size()),
              pattern.empty() ? Units::npos : text.find(pattern, text.size() / 2));
  });
}

}  // namespace
}  // namespace halvorn
