#include "Platform/text/linux/IcuRegex.h"

#include <unicode/uregex.h>
#include <unicode/utypes.h>

#include <limits>
#include <memory>
#include <string>

namespace halvorn {
namespace {

struct Closer {
  void operator()(URegularExpression* expression) const { uregex_close(expression); }
};
using Expression = std::unique_ptr<URegularExpression, Closer>;

// What one match may take to remember where it could still turn.
constexpr std::int32_t kStackBytes = 64 << 20;

bool isTooLong(const Text& text) { return text.length() > std::numeric_limits<std::int32_t>::max(); }
std::int32_t lengthOf(const Text& text) { return static_cast<std::int32_t>(text.length()); }

std::uint32_t flagsFor(RegexOptions options) {
  struct Entry {
    RegexOptions option;
    std::uint32_t flag;
  };
  constexpr Entry kEntries[] = {{RegexOption::caseInsensitive, UREGEX_CASE_INSENSITIVE},
                                {RegexOption::allowCommentsAndWhitespace, UREGEX_COMMENTS},
                                {RegexOption::ignoreMetacharacters, UREGEX_LITERAL},
                                {RegexOption::dotMatchesLineSeparators, UREGEX_DOTALL},
                                {RegexOption::anchorsMatchLines, UREGEX_MULTILINE},
                                {RegexOption::useUnixLineSeparators, UREGEX_UNIX_LINES},
                                {RegexOption::useUnicodeWordBoundaries, UREGEX_UWORD}};
  std::uint32_t flags = 0;
  for (const Entry& entry : kEntries) {
    if ((options & entry.option) != 0) flags |= entry.flag;
  }
  return flags;
}

Text describe(UErrorCode error, const UParseError& place) {
  std::string description = u_errorName(error);
  if (place.line > 0) {
    description += " at line " + std::to_string(place.line) + ", position " + std::to_string(place.offset);
  }
  return Text(description);
}

// Hands the engine's question on, less often than it is asked.
class Patience {
 public:
  explicit Patience(RegexVisitor& visitor) : visitor_(visitor) {}
  // Within a match, every ten thousand steps.
  [[nodiscard]] bool lastsDuringMatch() { return visitor_.mayContinue(); }
  // Between attempts, each of which may have read the whole text.
  [[nodiscard]] bool lastsBetweenAttempts() { return ++attempts_ % 16 != 0 || visitor_.mayContinue(); }

 private:
  RegexVisitor& visitor_;
  std::size_t attempts_ = 0;
};

UBool U_CALLCONV askDuringMatch(const void* context, std::int32_t) {
  return static_cast<Patience*>(const_cast<void*>(context))->lastsDuringMatch() ? 1 : 0;
}

UBool U_CALLCONV askBetweenAttempts(const void* context, std::int64_t) {
  return static_cast<Patience*>(const_cast<void*>(context))->lastsBetweenAttempts() ? 1 : 0;
}

std::optional<TextRange> rangeOf(URegularExpression* expression, std::size_t group, UErrorCode* error) {
  const std::int32_t start = uregex_start(expression, static_cast<std::int32_t>(group), error);
  const std::int32_t end = uregex_end(expression, static_cast<std::int32_t>(group), error);
  if (U_FAILURE(*error) || start < 0) return std::nullopt;
  return TextRange{static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)};
}

class IcuExpression : public CompiledRegex {
 public:
  IcuExpression(Expression expression, std::size_t numberOfGroups)
      : expression_(std::move(expression)), numberOfGroups_(numberOfGroups) {}

  [[nodiscard]] std::size_t numberOfCaptureGroups() const override { return numberOfGroups_; }

  [[nodiscard]] OptionalText enumerateMatches(const Text& text, RegexVisitor& visitor) const override {
    if (isTooLong(text)) return Text("the text is too long");
    UErrorCode error = U_ZERO_ERROR;
    // The pattern is shared; the place where a search stands is each search's own.
    const Expression search(uregex_clone(expression_.get(), &error));
    Patience patience(visitor);
    uregex_setStackLimit(search.get(), kStackBytes, &error);
    uregex_setMatchCallback(search.get(), askDuringMatch, &patience, &error);
    uregex_setFindProgressCallback(search.get(), askBetweenAttempts, &patience, &error);
    uregex_setText(search.get(), text.units().data(), lengthOf(text), &error);
    RegexMatch match;
    match.groups.resize(numberOfGroups_ + 1);
    while (U_SUCCESS(error) && uregex_findNext(search.get(), &error)) {
      for (std::size_t group = 0; group < match.groups.size(); ++group) {
        match.groups[group] = rangeOf(search.get(), group, &error);
      }
      if (U_FAILURE(error)) break;
      visitor.found(match);
      if (!patience.lastsBetweenAttempts()) error = U_REGEX_STOPPED_BY_CALLER;
    }
    if (U_FAILURE(error)) return Text(u_errorName(error));
    return std::nullopt;
  }

 private:
  Expression expression_;
  std::size_t numberOfGroups_;
};

}  // namespace

RegexCompilation IcuRegex::compile(const Text& pattern, RegexOptions options) const {
  if (isTooLong(pattern)) return {nullptr, Text("the pattern is too long")};
  UErrorCode error = U_ZERO_ERROR;
  UParseError place{};
  Expression expression(
      uregex_open(pattern.units().data(), lengthOf(pattern), flagsFor(options), &place, &error));
  const std::int32_t groups = U_SUCCESS(error) ? uregex_groupCount(expression.get(), &error) : 0;
  if (U_FAILURE(error)) return {nullptr, describe(error, place)};
  return {std::make_shared<IcuExpression>(std::move(expression), static_cast<std::size_t>(groups)),
          std::nullopt};
}

}  // namespace halvorn
