// Regular expressions: patterns are compiled, matches are found. What a template
// makes of them is not decided here.
//
// Thread: any; a compiled expression may be used on several threads at once.
// Fails: a bad pattern, and a search that had to be given up, are answered with the reason in words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

// A set of these bits.
using RegexOptions = std::uint32_t;
namespace RegexOption {
constexpr RegexOptions caseInsensitive = 1;             // letters match in either case
constexpr RegexOptions allowCommentsAndWhitespace = 2;  // blanks and "#" to the end of the line mean nothing
constexpr RegexOptions ignoreMetacharacters = 4;        // every character means itself
constexpr RegexOptions dotMatchesLineSeparators = 8;    // "." matches line ends too
constexpr RegexOptions anchorsMatchLines = 16;          // "^" and "$" match at each line
constexpr RegexOptions useUnixLineSeparators = 32;      // "\n" alone ends a line
constexpr RegexOptions useUnicodeWordBoundaries = 64;   // "\b" as Unicode finds words
}  // namespace RegexOption

struct TextRange {         // a part of a text
  std::size_t start = 0;   // of its first unit
  std::size_t length = 0;  // in UTF-16 units
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

struct RegexMatch {  // where it was found
  // The whole match, then each capture group; nullopt for a group that took no part.
  std::vector<std::optional<TextRange>> groups;
};

// Told what a search finds.
class RegexVisitor {
 public:
  virtual ~RegexVisitor() = default;
  virtual void found(const RegexMatch& match) = 0;  // from left to right
  // Asked now and then during the search, also within one match; false gives the search up.
  [[nodiscard]] virtual bool mayContinue() = 0;
};

class CompiledRegex {  // an expression that can search
 public:
  virtual ~CompiledRegex() = default;
  [[nodiscard]] virtual std::size_t numberOfCaptureGroups() const = 0;  // the whole match not among them
  // Finds the matches from left to right; none overlaps the one before. nullopt when the text was searched to
  // its end, else why the search was given up (the visitor's wish, or the memory that the search may take).
  [[nodiscard]] virtual OptionalText enumerateMatches(const Text& text, RegexVisitor& visitor) const = 0;
};

// Either an expression or the reason why there is none.
struct RegexCompilation {
  std::shared_ptr<const CompiledRegex> expression;  // null for none
  OptionalText error;                               // in words for people
};

class Regex {
 public:
  virtual ~Regex() = default;
  // Once, for any number of searches.
  [[nodiscard]] virtual RegexCompilation compile(const Text& pattern, RegexOptions options) const = 0;
};

}  // namespace halvorn
