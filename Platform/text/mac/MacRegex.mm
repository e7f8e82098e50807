#include "Platform/text/mac/MacRegex.h"

#include "Platform/running/mac/Conversions.h"

namespace halvorn {
namespace {

RegexMatch matchOf(NSTextCheckingResult* result) {
  RegexMatch match;
  for (NSUInteger group = 0; group < [result numberOfRanges]; ++group) {
    const NSRange range = [result rangeAtIndex:group];
    match.groups.push_back(
        range.location == NSNotFound ? std::nullopt : std::optional(TextRange{range.location, range.length}));
  }
  return match;
}

class MacExpression : public CompiledRegex {
 public:
  // Takes over the reference.
  explicit MacExpression(NSRegularExpression* expression) : expression_(expression) {}
  ~MacExpression() override { [expression_ release]; }
  MacExpression(const MacExpression&) = delete;
  MacExpression& operator=(const MacExpression&) = delete;

  [[nodiscard]] std::size_t numberOfCaptureGroups() const override {
    return answered(std::size_t{0}, [&] { return std::size_t{[expression_ numberOfCaptureGroups]}; });
  }

  [[nodiscard]] OptionalText enumerateMatches(const Text& text, RegexVisitor& visitor) const override {
    return answered(OptionalText(Text("the search failed")), [&]() -> OptionalText {
      __block bool isGivenUp = false;
      RegexVisitor* const told = &visitor;
      [expression_ enumerateMatchesInString:stringOf(text)
                                    options:NSMatchingReportProgress
                                      range:NSMakeRange(0, text.length())
                                 usingBlock:^(NSTextCheckingResult* result, NSMatchingFlags, BOOL* stop) {
                                   if (isGivenUp) return;
                                   if (result != nil) told->found(matchOf(result));
                                   if (told->mayContinue()) return;
                                   isGivenUp = true;
                                   *stop = YES;
                                 }];
      return isGivenUp ? OptionalText(Text("the search was given up")) : std::nullopt;
    });
  }

 private:
  NSRegularExpression* expression_;
};

}  // namespace

RegexCompilation MacRegex::compile(const Text& pattern, RegexOptions options) const {
  const RegexCompilation none{nullptr, Text("the pattern is no regular expression")};
  if (pattern.isEmpty()) return none;
  return answered(none, [&]() -> RegexCompilation {
    NSError* error = nil;
    NSRegularExpression* const expression =
        [[NSRegularExpression alloc] initWithPattern:stringOf(pattern)
                                             options:static_cast<NSRegularExpressionOptions>(options)
                                               error:&error];
    if (expression != nil) return {std::make_shared<MacExpression>(expression), std::nullopt};
    const auto reason = textOf([error localizedDescription]);
    return {nullptr, reason && !reason->isEmpty() ? reason : none.error};
  });
}

}  // namespace halvorn
