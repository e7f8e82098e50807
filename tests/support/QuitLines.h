// What the log says of a real application that has ended as it was asked. Chance says whether its end is seen by
// looking ("terminated") or by the next request, which it refuses ("process stopped").
#pragma once
#include <regex>
#include <string>

namespace halvorn {

inline std::string endedLine(const std::string& asked, const std::string& stopped, const std::string& name) {
  return "((" + asked + ") " + name + ": terminated after \\d+\\.\\d{3}s \\(\\d+ attempts\\))|((" + stopped +
         ") " + name + ": process stopped after \\d+\\.\\d{3}s \\((?!1 )\\d+ attempts\\))";
}
inline bool saysItQuit(const std::string& line, const std::string& name) {
  return std::regex_match(line, std::regex(endedLine("quit", "quit", name)));
}
inline bool saysItWasForced(const std::string& line, const std::string& name) {
  return std::regex_match(line, std::regex(endedLine("force-quit", "foce-quit", name)));
}

}  // namespace halvorn
