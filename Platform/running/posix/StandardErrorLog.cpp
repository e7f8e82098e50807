#include "Platform/running/posix/StandardErrorLog.h"

#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <ctime>

#include "Platform/running/Clock.h"
#include "Platform/running/posix/HeldBackSignal.h"

namespace halvorn {

std::string logTimestamp(double secondsSince1970) {
  const double whole = std::floor(secondsSince1970);
  const auto seconds = static_cast<std::time_t>(whole);
  const int milliseconds = static_cast<int>((secondsSince1970 - whole) * 1000.0);
  std::tm parts = {};
  char date[32] = "";
  char result[48] = "";
  if (localtime_r(&seconds, &parts) == nullptr) return "0000-00-00 00:00:00.000";
  std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", &parts);
  std::snprintf(result, sizeof result, "%s.%03d", date, milliseconds);
  return result;
}

StandardErrorLog::StandardErrorLog(const Clock& clock, const Text& programName)
    : clock_(clock), programName_(escapedForLog(programName).bytes()) {}

void StandardErrorLog::write(const Text& line) const {
  writeToStandardError(logTimestamp(clock_.now().secondsSince1970) + " " + programName_ + "[" +
                       std::to_string(::getpid()) + "] " + line.bytes() + "\n");
}

void writeToStandardError(const std::string& text) {
  const HeldBackSignal whenNobodyReads(SIGPIPE);
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t count = ::write(STDERR_FILENO, text.data() + written, text.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;  // nowhere to say so
    written += static_cast<std::size_t>(count);
  }
}

}  // namespace halvorn
