// StringExtensions, patterns: wildcards and regular expressions.
#pragma once

#include "Core/Log.h"
#include "Core/Text.h"
#include "KTStuff/KTClasses/KTRegularExpression.h"
#include "Platform/running/Clock.h"

namespace halvorn::StringExtensions {

// Whether the text is of the form of the pattern, where "*" stands for any run of units, the empty one
// included. There is no other wildcard; case matters. Without "*" it is equality.
[[nodiscard]] bool matchesWildcardPattern(const Text& text, const Text& pattern);

// Replaces by regular expression.
class RegexReplacing {
 public:
  static constexpr double kSecondsAllowed = 5.0;  // unless it is said

  // One replacement may take that many seconds; a pattern that goes astray is given up after that.
  RegexReplacing(const KTRegularExpression& regularExpressions, const Clock& clock, const Log& log,
                 double secondsAllowed = kSecondsAllowed)
      : regularExpressions_(regularExpressions), clock_(clock), log_(log), secondsAllowed_(secondsAllowed) {}

  // All matches of the pattern replaced by the template: $0 is the whole match, $1 ... its groups ("" for a
  // group that took no part or does not exist); a backslash takes the meaning off the unit after it. Word
  // boundaries are those of Unicode. The text itself when nothing matches. Thread: any. Fails: with a bad
  // pattern, or one that takes too long, the answer is the text itself. Logs: "Regular expression error: %@"
  // each time; that the platform has no regular expressions only once,
  // however many objects replace with one KTRegularExpression.
  [[nodiscard]] Text stringByReplacingOccurrencesOfRegexPattern(const Text& text, const Text& pattern,
                                                                const Text& withTemplate) const;

 private:
  const KTRegularExpression& regularExpressions_;
  const Clock& clock_;
  const Log& log_;
  const double secondsAllowed_;
};

}  // namespace halvorn::StringExtensions
