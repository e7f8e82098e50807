// Oracles of escapes: see StringOracles.h.
#include <cstdio>

#include "tests/text/unit/StringOracles.h"

namespace halvorn {
namespace {

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

}  // namespace
}  // namespace halvorn
