// The running applications, as the system lists them.
//
// A process is named by its serial number. A serial number is given to one process only, ever: what it was
// made from may come back (process ids do), the number does not, and no operation here or in
// ApplicationControl touches another process than the one the number was given to.
//
// Thread: any. Fails: with nullopt or false; a process that has ended is the usual reason.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Core/Date.h"
#include "Core/FourCharCode.h"
#include "Core/PropertyValue.h"
#include "Core/Text.h"

namespace halvorn {

struct ProcessSerialNumber {  // of no other process in this session
  std::uint32_t high = 0;     // what tells it from an earlier one with the same id
  std::uint32_t low = 0;      // the process id

  friend bool operator==(const ProcessSerialNumber&, const ProcessSerialNumber&) = default;
};

// The process table keeps names as bytes of Mac OS Roman, at most 255 of them ...
struct MacRomanName {
  std::string bytes;  // without an end mark
};

struct ProcessInformation {  // what a process was started as
  // ... or as text; which of the two is the system's own affair.
  std::variant<MacRomanName, Text> name;
  // The creator signature. A program that declares no code in its bundle has kUndeclaredSignature or, where the
  // system makes one up, a code with a control character in it, which no text can name.
  FourCharCode signature = 0;
};

class ProcessSource {
 public:
  virtual ~ProcessSource() = default;

  // Every running application of this user and session, in the system's order; this program among them when
  // the desktop takes it for an application.
  [[nodiscard]] virtual std::vector<ProcessSerialNumber> runningProcesses() = 0;
  // Fails: no application of this user has that process id.
  [[nodiscard]] virtual std::optional<ProcessSerialNumber> processForPID(std::int32_t pid) = 0;
  [[nodiscard]] virtual std::optional<ProcessSerialNumber> currentProcess() = 0;  // this program's own
  // The owner of the active window. Fails: there is none, or the desktop does not tell.
  [[nodiscard]] virtual std::optional<ProcessSerialNumber> frontProcess() = 0;
  // Whether both name the same process, running or not.
  [[nodiscard]] virtual bool sameProcess(ProcessSerialNumber a, ProcessSerialNumber b) = 0;

  // Fails: the process has ended. This is the test whether it runs.
  [[nodiscard]] virtual std::optional<std::int32_t> pid(ProcessSerialNumber number) = 0;
  // The same test for many at once: an answer for each, in their order. A system that knows what has ended
  // since the last question need not ask for each.
  [[nodiscard]] virtual std::vector<bool> areRunning(const std::vector<ProcessSerialNumber>& numbers);
  // How many ends of processes were seen up to now: while it stays the same, whatever areRunning() said to run
  // still does. Fails: the system does not count them.
  [[nodiscard]] virtual std::optional<std::uint64_t> endsSeen() { return std::nullopt; }
  // Never fails for a process that runs.
  [[nodiscard]] virtual std::optional<ProcessInformation> information(ProcessSerialNumber number) = 0;
  // The name people see.
  [[nodiscard]] virtual OptionalText displayName(ProcessSerialNumber number) = 0;
  // All that is known: the bundle's information dictionary, where there is a bundle.
  [[nodiscard]] virtual std::optional<PropertyDictionary> informationDictionary(
      ProcessSerialNumber number) = 0;
  // The path of the bundle around the program; without a bundle that of the program.
  [[nodiscard]] virtual OptionalText bundleLocation(ProcessSerialNumber number) = 0;
  // When the kernel started it.
  [[nodiscard]] virtual std::optional<Date> startTime(ProcessSerialNumber number) = 0;

  // The format of a shell command that writes the processor time a process has used in user mode to a file,
  // as minutes:seconds.hundredths. Its two arguments are the process id (%1$d) and the file (%2$@).
  [[nodiscard]] virtual Text processorTimeCommand() const = 0;
};

inline std::vector<bool> ProcessSource::areRunning(const std::vector<ProcessSerialNumber>& numbers) {
  std::vector<bool> answers;
  answers.reserve(numbers.size());
  for (const ProcessSerialNumber number : numbers) answers.push_back(pid(number).has_value());
  return answers;
}

}  // namespace halvorn
