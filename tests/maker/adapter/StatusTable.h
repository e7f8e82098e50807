// How halvorn may end, as the manual page tells people.
#pragma once

#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TestFiles.h"

namespace halvorn {

// The statuses of each command.
using StatusTable = std::map<std::string, std::set<int>>;

inline const std::set<std::string>& commandsOfHalvorn() {
  static const std::set<std::string> all = {"audit", "check", "image", "install", "plan", "remove", "report"};
  return all;
}

// Each match of the expression: a status, and the commands that have it.
inline StatusTable statusTable(const std::string& file, const std::string& expression) {
  StatusTable table;
  const std::string text = contentsOf(file);
  const std::regex row(expression);
  for (std::sregex_iterator match(text.begin(), text.end(), row), end; match != end; ++match) {
    const std::string names = (*match)[2];
    for (const std::string& command : commandsOfHalvorn()) {
      if (names == "every command" || (", " + names + ",").find(" " + command + ",") != std::string::npos)
        table[command].insert(std::stoi((*match)[1]));
    }
  }
  return table;
}

inline const StatusTable& documentedStatuses() {
  static const StatusTable table =
      statusTable(KT_SOURCE_DIR "/tools/halvorn/halvorn.1", "\n\\.BR ([0-9]+) \" \\(([a-z, ]+)\\)\"");
  return table;
}

// What it takes somebody without rights to come to: tests with a policy daemon walk these, the others all else.
inline const StatusTable& statusesOfRights() {
  static const StatusTable table = {{"install", {7, 8}}, {"plan", {7}}, {"remove", {7}}};
  return table;
}

// Whether a command that was called so may end so. What is no command is misused.
inline bool isDocumented(const std::vector<std::string>& words, int status) {
  for (const std::string& word : words) {
    if (word.starts_with("-")) continue;
    const auto found = documentedStatuses().find(word);
    return found == documentedStatuses().end() ? status == 64 : found->second.contains(status);
  }
  return status == 0 || status == 64;
}

// What is wrong with the answers, a line each, beside the schema. `scratch` is a file to be made.
inline std::string problemsInAnswers(const std::string& answers, const std::string& schema,
                                     const std::string& scratch) {
  const std::string file = putFile(scratch, answers);
  return runCommand(
             {"sh", "-c",
              "exec /usr/bin/python3 " KT_ANSWERS_SCRIPT " " KT_HALVORN_SCHEMA " '" + schema + "' < " + file})
      .output;
}

}  // namespace halvorn
