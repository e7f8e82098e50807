// The log: one line per event.
//
//   log_("Quitting '%@': %@", process->signatureString(), process->name());
//
// The format stands verbatim at the call, so a line in a log leads to its source.
//
// Thread: any. An implementation writes each line whole.
// Why: docs/decisions/002-one-event-one-line.md
#pragma once

#include "Core/Format.h"
#include "Core/Text.h"

namespace halvorn {

class Log {
 public:
  virtual ~Log() = default;

  // One line of the log, its values escaped: log("Quitting %@: %d", name, status).
  template <typename... Arguments>
  void operator()(const char* text, const Arguments&... arguments) const {
    write(escapedForLog(formatWithArguments(Text(text), {FormatArgument(arguments)...})));
  }

  // The text on one line: a backslash as \\, line feed, return and tab as \n, \r, \t, every other
  // character that nobody sees or that turns the direction (ForPeople.h), and lone surrogates, as \u{2028},
  // bytes that were not UTF-8 as \xE4.
  [[nodiscard]] static Text escapedForLog(const Text& text);

 protected:
  // Takes one line without its end.
  virtual void write(const Text& line) const = 0;
};

}  // namespace halvorn
