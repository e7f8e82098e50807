// The commands of kt. Each takes its words, calls the library and answers; nothing is decided here.
#pragma once

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "KTStuff/KTSystem.h"
#include "tools/kt/Answer.h"

namespace halvorn {

enum class Outcome : int { Done = 0, No = 1, Misused = 64 };

// What one call is made of.
struct Call {
  KTSystem& system;
  std::vector<Text> words;       // behind the command's name
  std::map<Text, Text> options;  // "--limit 2"; "" for an option without a value
  AnswerForm form = AnswerForm::Lines;

  [[nodiscard]] bool has(const char* option) const { return options.contains(option); }
  // What stands behind the option, as a number; `otherwise` without it or when it is none.
  [[nodiscard]] double number(const char* option, double otherwise) const;
  void answer(const AnswerRow& row) const { std::fputs(printed(row, form).c_str(), stdout); }
};

using Command = Outcome (*)(const Call&);
[[nodiscard]] const std::map<Text, Command>& processCommands();
[[nodiscard]] const std::map<Text, Command>& desktopCommands();
[[nodiscard]] const std::map<Text, Command>& textCommands();

}  // namespace halvorn
