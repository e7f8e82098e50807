#include "tests/support/InstallerDriver.h"

#include <filesystem>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace halvorn {
namespace {

std::vector<std::string> commandLine(const std::string& program, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), program.empty() ? builtInstaller() : program);
  return arguments;
}

std::vector<std::string> split(const std::string& line, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(line);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

std::optional<Control> parsed(const std::string& line) {
  const std::vector<std::string> parts = split(line, '\t');
  if (parts.size() < 7) return std::nullopt;
  Control control{.role = parts[0], .name = parts[1], .states = parts[2], .text = {}};
  control.x = std::stoi(parts[3]);
  control.y = std::stoi(parts[4]);
  control.width = std::stoi(parts[5]);
  control.height = std::stoi(parts[6]);
  if (parts.size() > 7) control.text = parts[7];
  return control;
}

}  // namespace

std::string builtInstaller() { return KT_BUNDLE_DIR "/Contents/Linux/HalvornInstaller"; }

bool Control::has(const std::string& state) const {
  const std::vector<std::string> all = split(states, ',');
  return std::find(all.begin(), all.end(), state) != all.end();
}

InstallerDriver::InstallerDriver(Desktop& desktop, std::vector<std::string> arguments,
                                 const DriverOptions& options)
    : desktop_(desktop),
      accessibleProbe_(options.accessibleProbe.empty() ? KT_BINARY_DIR "/tests/accessible_probe"
                                                       : options.accessibleProbe),
      process_(commandLine(options.program, std::move(arguments)),
               {.environment = desktop.environmentWith(options.environment)}) {}

std::vector<Control> InstallerDriver::controls() const {
  const CommandResult seen =
      runCommand({accessibleProbe_, std::to_string(process_.pid())}, {.environment = desktop_.environment()});
  std::vector<Control> result;
  if (seen.status != 0) return result;
  for (const std::string& line : split(seen.output, '\n')) {
    if (auto control = parsed(line)) result.push_back(*control);
  }
  return result;
}

std::optional<Control> InstallerDriver::showing(const std::string& name) const {
  for (const Control& control : controls()) {
    if (control.has("showing") && (control.name == name || control.text == name)) return control;
  }
  return std::nullopt;
}

bool InstallerDriver::waitForText(const std::string& text, double seconds) const {
  return eventually([&] { return showing(text).has_value(); }, seconds);
}

std::optional<Control> InstallerDriver::button(const std::string& name) const {
  for (const Control& control : controls()) {
    const bool isButton = control.role == "push button" || control.role == "button";
    if (isButton && control.name == name && control.has("showing") && control.has("enabled")) return control;
  }
  return std::nullopt;
}

bool InstallerDriver::waitForButton(const std::string& name, double seconds) const {
  return eventually([&] { return button(name).has_value(); }, seconds);
}

std::vector<std::string> InstallerDriver::windowTitles() const {
  std::vector<std::string> titles;
  for (const Control& control : controls()) {
    if (control.role == "frame" || control.role == "window" || control.role == "dialog")
      titles.push_back(control.name);
  }
  return titles;
}

bool InstallerDriver::click(const std::string& name, double seconds) {
  std::optional<Control> target;
  std::optional<Control> before;
  // A window that still moves to its place has its buttons elsewhere a moment later.
  const bool isThere = eventually(
      [&] {
        before = target;
        target = button(name);
        return target && before && target->x == before->x && target->y == before->y;
      },
      seconds);
  if (!isThere) return false;
  const std::string x = std::to_string(target->x + target->width / 2);
  const std::string y = std::to_string(target->y + target->height / 2);
  return runCommand({"xdotool", "mousemove", x, y, "click", "1"}, {.environment = desktop_.environment()})
             .status == 0;
}

void InstallerDriver::key(const std::string& keys) {
  const CommandResult result = runCommand({"xdotool", "key", keys}, {.environment = desktop_.environment()});
  if (result.status != 0) throw std::runtime_error("xdotool: " + result.output);
}

void InstallerDriver::screenshot(const std::string& file) const {
  std::filesystem::create_directories(std::filesystem::path(file).parent_path());
  const CommandResult result =
      runCommand({"import", "-window", "root", file}, {.environment = desktop_.environment()});
  if (result.status != 0) throw std::runtime_error("import: " + result.output);
}

std::vector<std::string> logLines(const std::string& text) {
  static const std::regex line(R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\S* HalvornInstaller\[\d+\] (.*)$)");
  std::vector<std::string> result;
  for (const std::string& each : split(text, '\n')) {
    std::smatch match;
    if (std::regex_match(each, match, line)) result.push_back(match[1]);
  }
  return result;
}

}  // namespace halvorn
