// What the launch probe wrote down.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TestFiles.h"

namespace halvorn {

class LaunchReport {
 public:
  // Waits for the report in that folder; it is taken away, so that the next launch writes a new one.
  static LaunchReport in(const std::string& folder, double seconds = kTestPatience) {
    LaunchReport report;
    const std::string path = folder + "/report";
    if (!eventually([&] { return std::filesystem::exists(path); }, seconds)) return report;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) report.lines_.push_back(line);
    std::filesystem::remove(path);
    return report;
  }

  [[nodiscard]] bool exists() const { return !lines_.empty(); }
  [[nodiscard]] bool has(const std::string& line) const {
    return std::find(lines_.begin(), lines_.end(), line) != lines_.end();
  }
  // The rest of each line that begins with the word.
  [[nodiscard]] std::vector<std::string> all(const std::string& word) const {
    std::vector<std::string> result;
    for (const std::string& line : lines_) {
      if (line.starts_with(word + " ")) result.push_back(line.substr(word.size() + 1));
    }
    return result;
  }
  [[nodiscard]] std::string one(const std::string& word) const {
    const std::vector<std::string> found = all(word);
    return found.size() == 1 ? found.front() : std::string();
  }

 private:
  std::vector<std::string> lines_;
};

// A bundle in the folder whose program is the probe; returns its path.
inline std::string putProbeBundle(const std::string& folder, const std::string& name,
                                  const std::string& probe, const std::string& moreInfo = "") {
  const std::string bundle = folder + "/" + name + ".app";
  putFile(bundle + "/Contents/Info.plist", infoPlist(plistEntry("CFBundleExecutable", "Probe") + moreInfo));
  std::filesystem::create_directories(bundle + "/Contents/Linux");
  std::filesystem::copy_file(probe, bundle + "/Contents/Linux/Probe");
  return bundle;
}

}  // namespace halvorn
