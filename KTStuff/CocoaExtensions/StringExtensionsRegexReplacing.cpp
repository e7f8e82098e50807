// Replacing by regular expression: the template is this file's own, the engine finds the matches.
#include <string>
#include <utility>
#include <vector>

#include "KTStuff/CocoaExtensions/StringExtensionsPatterns.h"

namespace halvorn::StringExtensions {
namespace {

constexpr bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

// A template read once: literal pieces, each followed by the group that comes after it.
class ReplacementTemplate {
 public:
  ReplacementTemplate(std::u16string_view source, std::size_t numberOfGroups) {
    Piece piece;
    while (!source.empty()) {
      const char16_t unit = source[0];
      const bool hasNext = source.size() > 1;
      if (unit == u'\\' && hasNext) {
        piece.literal.push_back(source[1]);
        source.remove_prefix(2);
      } else if (unit == u'$' && hasNext && isDigit(source[1])) {
        source.remove_prefix(1);
        piece.group = takeGroup(source, numberOfGroups);
        pieces_.push_back(std::exchange(piece, {}));
      } else {
        piece.literal.push_back(unit);
        source.remove_prefix(1);
      }
    }
    pieces_.push_back(std::move(piece));
  }

  void expandInto(std::u16string& result, std::u16string_view units, const RegexMatch& match) const {
    for (const Piece& piece : pieces_) {
      result.append(piece.literal);
      if (!piece.group || *piece.group >= match.groups.size()) continue;
      if (const auto& range = match.groups[*piece.group]) result.append(units, range->start, range->length);
    }
  }

 private:
  struct Piece {
    std::u16string literal;
    std::optional<std::size_t> group;
  };

  // One digit, and more of them as long as there is such a group: with one group, "$10" is "$1" and a zero.
  static std::size_t takeGroup(std::u16string_view& source, std::size_t numberOfGroups) {
    std::size_t group = 0;
    bool isFirst = true;
    while (!source.empty() && isDigit(source[0])) {
      const std::size_t longer = group * 10 + (source[0] - u'0');
      if (!isFirst && longer > numberOfGroups) break;
      group = longer;
      isFirst = false;
      source.remove_prefix(1);
    }
    return group;
  }

  std::vector<Piece> pieces_;
};

class Replacer : public RegexVisitor {
 public:
  Replacer(const Text& text, const ReplacementTemplate& replacement, const Clock& clock,
           double secondsAllowed)
      : units_(text.units()), replacement_(replacement), clock_(clock) {
    deadline_ = clock.monotonicSeconds() + secondsAllowed;
  }

  void found(const RegexMatch& match) override {
    const auto& whole = match.groups.at(0);
    if (!whole) return;
    result_.append(units_, start_, whole->start - start_);
    replacement_.expandInto(result_, units_, match);
    start_ = whole->start + whole->length;
    hasFound_ = true;
  }
  bool mayContinue() override { return clock_.monotonicSeconds() < deadline_; }

  [[nodiscard]] bool hasFound() const { return hasFound_; }
  [[nodiscard]] Text finish() && { return Text(std::move(result_.append(units_, start_))); }

 private:
  std::u16string_view units_;
  const ReplacementTemplate& replacement_;
  const Clock& clock_;
  double deadline_;
  std::u16string result_;
  std::size_t start_ = 0;  // of what is not yet in the result
  bool hasFound_ = false;
};

}  // namespace

Text RegexReplacing::stringByReplacingOccurrencesOfRegexPattern(const Text& text, const Text& pattern,
                                                                const Text& withTemplate) const {
  if (!regularExpressions_.regexAvailable()) {
    if (regularExpressions_.takeUnavailabilityMessage()) {
      log_("Regular expressions are not available (require OS X 10.7 or newer).");
    }
    return text;
  }
  const RegexCompilation compilation =
      regularExpressions_.regularExpressionWithPattern(pattern, RegexOption::useUnicodeWordBoundaries);
  if (!compilation.expression) {
    log_("Regular expression error: %@", compilation.error);
    return text;
  }
  const CompiledRegex& expression = *compilation.expression;
  const ReplacementTemplate replacement(withTemplate.units(), expression.numberOfCaptureGroups());
  Replacer replacer(text, replacement, clock_, secondsAllowed_);
  if (const OptionalText error = expression.enumerateMatches(text, replacer)) {
    log_("Regular expression error: %@", *error);
    return text;
  }
  return replacer.hasFound() ? std::move(replacer).finish() : text;
}

}  // namespace halvorn::StringExtensions
