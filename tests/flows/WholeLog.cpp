#include "tests/flows/WholeLog.h"

#include <regex>

namespace halvorn {

Lines operator+(Lines first, const Lines& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Lines withoutPlaces(const Lines& lines, const Places& places) {
  // A program that answers no request at all was gone before. Of one that has answered, chance says whether its end
  // is seen by looking or by the next request.
  static const std::regex gone(R"(process stopped after \d+\.\d+s \(1 attempts\))");
  static const std::regex measured(R"((terminated|process stopped) after \d+\.\d+s \(\d+ attempts?\))");
  static const std::regex givenUp(R"(given up after \d+\.\d+s \(\d+ attempts?\))");
  Lines result;
  for (std::string line : lines) {
    for (const auto& [place, name] : places) {
      for (auto at = line.find(place); at != std::string::npos; at = line.find(place, at + name.size()))
        line.replace(at, place.size(), name);
    }
    line = std::regex_replace(line, gone, "gone before the first request");
    line = std::regex_replace(line, measured, "gone after #s (# attempts)");
    result.push_back(std::regex_replace(line, givenUp, "given up after #s (# attempts)"));
  }
  return result;
}

std::string argumentsLine(const Lines& arguments) {
  std::string line = "arguments: (\"<installer>\"";
  for (const std::string& argument : arguments) line += ", \"" + argument + "\"";
  return line + ")";
}

std::string updatedLine(const std::map<std::string, std::string>& updated) {
  std::map<std::string, std::string> all = {
      {"", "\"<installer>\""},       {"destinationPath", "\"<home>/Applications/Sample.app\""},
      {"productCode", "(\"SMPL\")"}, {"productName", "\"Sample\""},
      {"quitCode", "(\"SMPL\")"},    {"sourcePath", "\"<image>/Sample.app\""}};
  for (const auto& [key, value] : updated) all[key] = value;
  std::string line = "Updated arguments: {";
  for (const auto& [key, value] : all) {
    if (!value.empty()) line += "\"" + key + "\" = " + value + "; ";
  }
  return line + "}";
}

Lines startLog(const Lines& arguments, const std::map<std::string, std::string>& updated) {
  return {argumentsLine(arguments), "autolaunch = (null)",
          "Can't write to /Applications, checking ~/Applications",
          "User applicationsDirectory: <home>/Applications", updatedLine(updated)};
}

Lines installLog(const std::string& destination) {
  return {"successfully copied", "launching " + destination, "registered app: 0", "launched immediately: 1"};
}

}  // namespace halvorn
