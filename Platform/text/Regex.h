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
constexpr RegexOptions caseInsensitive = 1;
constexpr RegexOptions allowCommentsAndWhitespace = 2;
constexpr RegexOptions ignoreMetacharacters = 4;
constexpr RegexOptions dotMatchesLineSeparators = 8;
constexpr RegexOptions anchorsMatchLines = 16;
constexpr RegexOptions useUnixLineSeparators = 32;
constexpr RegexOptions useUnicodeWordBoundaries = 64;
}  // namespace RegexOption

struct TextRange {
  std::size_t start = 0;
  std::size_t length = 0;
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

struct RegexMatch {
  // The whole match, then each capture group; nullopt for a group that took no part.
  std::vector<std::optional<TextRange>> groups;
};

// Told what a search finds.
class RegexVisitor {
 public:
  virtual ~RegexVisitor() = default;
  virtual void found(const RegexMatch& match) = 0;
  // Asked now and then during the search, also within one match; false gives the search up.
  [[nodiscard]] virtual bool mayContinue() = 0;
};

class CompiledRegex {
 public:
  virtual ~CompiledRegex() = default;
  [[nodiscard]] virtual std::size_t numberOfCaptureGroups() const = 0;
  // Finds the matches from left to right; none overlaps the one before. nullopt when the text was searched to
  // its end, else why the search was given up (the visitor's wish, or the memory that the search may take).
  [[nodiscard]] virtual OptionalText enumerateMatches(const Text& text, RegexVisitor& visitor) const = 0;
};

// Either an expression or the reason why there is none.
struct RegexCompilation {
  std::shared_ptr<const CompiledRegex> expression;
  OptionalText error;
};

class Regex {
 public:
  virtual ~Regex() = default;
  [[nodiscard]] virtual RegexCompilation compile(const Text& pattern, RegexOptions options) const = 0;
};

}  // namespace halvorn
