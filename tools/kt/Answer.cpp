#include "tools/kt/Answer.h"

#include "Core/Log.h"
#include "tools/Json.h"

namespace halvorn {
namespace {

struct Lines {
  std::string operator()(std::monostate) const { return "-"; }
  std::string operator()(bool value) const { return value ? "yes" : "no"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return json(value); }
  std::string operator()(const Text& value) const { return Log::escapedForLog(value).bytes(); }
};

struct Json {
  std::string operator()(std::monostate) const { return "null"; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return json(value); }
  std::string operator()(const Text& value) const { return json(value); }
};

}  // namespace

std::string printed(const AnswerRow& row, AnswerForm form) {
  const bool isJson = form == AnswerForm::Json;
  std::string result;
  for (const auto& [name, value] : row) {
    if (!result.empty()) result += isJson ? ", " : "\t";
    if (isJson) result += json(Text(name)) + ": ";
    result += isJson ? std::visit(Json(), value) : std::visit(Lines(), value);
  }
  return isJson ? "{" + result + "}\n" : result + "\n";
}

}  // namespace halvorn
