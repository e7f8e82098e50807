// The platform's log line on standard error: "2026-11-21 14:30:05.123 HalvornInstaller[4711] Install".
//
// Each line is written with one call of the system, so lines of several programs in one file do not mix. A
// reader that went away costs the line, never the program.
#pragma once

#include <string>

#include "Core/Log.h"

namespace halvorn {

class Clock;

class StandardErrorLog : public Log {
 public:
  // The program's name as it stands in every line; control characters in it are escaped.
  StandardErrorLog(const Clock& clock, const Text& programName);

 protected:
  void write(const Text& line) const override;
  [[nodiscard]] const std::string& programName() const { return programName_; }

 private:
  const Clock& clock_;
  std::string programName_;
};

// Writes the bytes as they are. A reader that went away costs them, never the program. Thread: any.
void writeToStandardError(const std::string& text);

// "2026-11-21 14:30:05.123" in the time zone of the process.
[[nodiscard]] std::string logTimestamp(double secondsSince1970);

}  // namespace halvorn
