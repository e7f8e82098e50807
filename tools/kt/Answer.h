// What a command answers: rows of named values, printed for people or as JSON.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

// Nothing stands for what is unknown.
using AnswerValue = std::variant<std::monostate, bool, std::int64_t, double, Text>;
using AnswerRow = std::vector<std::pair<const char*, AnswerValue>>;

[[nodiscard]] inline AnswerValue answer(const OptionalText& text) {
  return text ? AnswerValue(*text) : AnswerValue();
}

enum class AnswerForm { Lines, Json };

// One row: its values with tabs between them, control characters escaped, "-" for what is unknown; or an object. Ends
// with a line feed.
[[nodiscard]] std::string printed(const AnswerRow& row, AnswerForm form);

}  // namespace halvorn
