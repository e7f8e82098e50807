// Pairs of versions and how they compare: the table in tests/data/versions, random
// ones, and a slow, obvious oracle.
#pragma once

#include <algorithm>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "Core/Ordering.h"
#include "Core/Text.h"
#include "Platform/text/Unicode.h"

namespace halvorn {

struct VersionPair {
  Text version;
  Ordering ordering = Ordering::Same;
  Text withVersion;
  std::string why;
};

inline std::vector<VersionPair> versionPairsFrom(const std::string& fileName) {
  std::ifstream file(std::string(KT_SOURCE_DIR "/tests/data/versions/") + fileName);
  if (!file) throw std::runtime_error("missing " + fileName);
  std::vector<VersionPair> pairs;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("#")) continue;
    const std::size_t first = line.find('|');
    const std::size_t second = line.find('|', first + 1);
    const std::size_t third = line.find('|', second + 1);
    if (third == std::string::npos) throw std::runtime_error("no pair: " + line);
    const std::string relation = line.substr(first + 1, second - first - 1);
    if (relation != "<" && relation != "=" && relation != ">")
      throw std::runtime_error("no relation: " + line);
    const Ordering ordering = relation == "<"   ? Ordering::Ascending
                              : relation == "=" ? Ordering::Same
                                                : Ordering::Descending;
    pairs.push_back({Text(line.substr(0, first)), ordering, Text(line.substr(second + 1, third - second - 1)),
                     line.substr(third + 1)});
  }
  return pairs;
}

// Versions as people write them, and as they should not.
inline std::vector<Text> randomVersions(std::size_t count, unsigned seed) {
  const std::vector<std::string> pieces = {"0", "1", "2", "9", "10", "01", "007", "4294967296",
                                           ".", ".", ".", "p", "d",  "a",  "b",   "f",
                                           "x", "B", " ", "-", "é",  "rc", ".0",  "b1"};
  std::mt19937 random(seed);
  std::vector<Text> versions = {"", "1", "1.0", "1.0.0", "1.0b1", "1.0b", "1.0f1"};
  while (versions.size() < count) {
    std::string version = std::to_string(random() % 3);
    for (unsigned length = random() % 7; length > 0; --length) version += pieces[random() % pieces.size()];
    versions.emplace_back(version);
  }
  return versions;
}

// Compares by the rules as they would be told to a child: cut at the first letter, make all numbers equally
// long, compare what then stands there.
class VersionOracle {
 public:
  explicit VersionOracle(const Unicode& unicode) : unicode_(unicode) {}

  [[nodiscard]] Ordering compare(const Text& a, const Text& b) const {
    const Parts partsOfA = cut(a);
    const Parts partsOfB = cut(b);
    if (partsOfA.base != partsOfB.base) return order(partsOfA.base < partsOfB.base);
    if (partsOfA.stage != partsOfB.stage) return order(partsOfA.stage < partsOfB.stage);
    if (partsOfA.number != partsOfB.number) return order(partsOfA.number < partsOfB.number);
    return Ordering::Same;
  }

 private:
  struct Parts {
    std::u16string base;
    int stage = 5;
    std::u16string number = padded(u"0");
  };

  static Ordering order(bool ascending) { return ascending ? Ordering::Ascending : Ordering::Descending; }

  // Every run of digits 60 places wide.
  static std::u16string padded(const std::u16string& text) {
    std::u16string result;
    std::u16string digits;
    for (const char16_t unit : text + u'\uFFFF') {
      if (unit >= u'0' && unit <= u'9') {
        digits += unit;
        continue;
      }
      if (!digits.empty())
        result += std::u16string(60 - std::min<std::size_t>(60, digits.size()), u'0') + digits;
      digits.clear();
      result += unit;
    }
    result.pop_back();
    return result;
  }

  [[nodiscard]] Parts cut(const Text& version) const {
    const std::u16string units(version.units());
    for (std::size_t index = 0; index < units.size(); ++index) {
      const bool isPair = units[index] >= 0xD800 && units[index] < 0xDC00 && index + 1 < units.size();
      const char32_t scalar = isPair
                                  ? 0x10000 + ((units[index] - 0xD800u) << 10) + (units[index + 1] - 0xDC00u)
                                  : char32_t{units[index]};
      if (unicode_.isLetter(scalar)) {
        return {padded(units.substr(0, index)), stageOf(scalar),
                padded(units.substr(index + (isPair ? 2 : 1)))};
      }
      if (isPair) ++index;
    }
    return {padded(units)};
  }

  static int stageOf(char32_t letter) {
    if (letter == U'd') return 1;
    if (letter == U'a') return 2;
    if (letter == U'b') return 3;
    if (letter == U'f') return 4;
    return 0;
  }

  const Unicode& unicode_;
};

}  // namespace halvorn
