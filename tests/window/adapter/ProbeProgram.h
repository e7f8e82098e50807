// The window's probe program, told what to do line by line.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"

namespace halvorn {

class ProbeProgram : public ChildProcess {
 public:
  using ChildProcess::ChildProcess;

  // Returns when each command has been done; answers the last line before that, "" for none.
  std::string tell(const std::vector<std::string>& commands) {
    std::string answer;
    for (const std::string& command : commands) {
      writeInput(command + "\n");
      while (true) {
        const auto line = readLine(kTestPatience);
        if (!line) {
          ADD_FAILURE() << command << " was not answered: " << output();
          return answer;
        }
        if (*line == "done") break;
        answer = *line;
      }
    }
    return answer;
  }
  std::string ask(const std::string& command) { return tell({command}); }

  // How often the text was printed so far.
  [[nodiscard]] int times(const std::string& text) {
    (void)ask("option");  // reads what is there
    int found = 0;
    for (auto at = output().find(text); at != std::string::npos; at = output().find(text, at + 1)) ++found;
    return found;
  }
};

}  // namespace halvorn
