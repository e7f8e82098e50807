// Expressions of letters and one level of groups: "a(b)c". Everything else is a bad pattern.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Platform/text/Regex.h"

namespace halvorn {

class FakeRegex : public Regex {
 public:
  RegexCompilation compile(const Text& pattern, RegexOptions options) const override {
    compiled.push_back({pattern, options});
    Expression expression;
    std::optional<std::size_t> opened;
    for (const char16_t unit : pattern.units()) {
      const std::size_t position = expression.literal.size();
      if (unit == u'(' && !opened) {
        opened = position;
      } else if (unit == u')' && opened) {
        expression.groups.push_back({*opened, position - *opened});
        opened.reset();
      } else if (unit == u'(' || unit == u')' || unit == u'[' || unit == u'*' || unit == u'\\') {
        return {nullptr, Text("cannot read this pattern")};
      } else {
        expression.literal.push_back(unit);
      }
    }
    if (opened || expression.literal.empty()) return {nullptr, Text("the pattern ends too early")};
    return {std::make_shared<Expression>(std::move(expression)), std::nullopt};
  }

  struct Compiled {
    Text pattern;
    RegexOptions options;
  };
  mutable std::vector<Compiled> compiled;

 private:
  struct Expression : CompiledRegex {
    std::size_t numberOfCaptureGroups() const override { return groups.size(); }
    OptionalText enumerateMatches(const Text& text, RegexVisitor& visitor) const override {
      std::size_t start = 0;
      while (true) {
        if (!visitor.mayContinue()) return Text("stopped");
        const std::size_t at = text.units().find(literal, start);
        if (at == std::u16string_view::npos) return std::nullopt;
        RegexMatch match;
        match.groups.push_back(TextRange{at, literal.size()});
        for (const TextRange& group : groups)
          match.groups.push_back(TextRange{at + group.start, group.length});
        visitor.found(match);
        start = at + literal.size();
      }
    }
    std::u16string literal;
    std::vector<TextRange> groups;  // within the literal
  };
};

}  // namespace halvorn
