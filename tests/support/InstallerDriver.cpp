#include "tests/support/InstallerDriver.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "tests/support/Hands.h"

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

// Behind `"name": `, from there on.
int numberBehind(const std::string& text, const std::string& name, std::size_t from) {
  const std::size_t found = text.find("\"" + name + "\":", from);
  return found == std::string::npos ? 0 : std::atoi(text.c_str() + found + name.size() + 3);
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
      pointer_(desktop.kind() == Compositor::Sway ? startedHands(desktop) : nullptr),
      hands_(desktop.kind() == Compositor::Sway ? nullptr : startedHands(desktop)),
      accessibleProbe_(options.accessibleProbe.empty() ? KT_BINARY_DIR "/tests/accessible_probe"
                                                       : options.accessibleProbe),
      isSingleFile_(options.isSingleFile),
      process_(commandLine(options.program, std::move(arguments)),
               {.environment = desktop.environmentWith(options.environment)}) {}

pid_t InstallerDriver::installer() const {
  if (!isSingleFile_) return process_.pid();
  const CommandResult children = runCommand({"pgrep", "-P", std::to_string(process_.pid())});
  return children.status == 0 ? std::atoi(children.output.c_str()) : 0;
}

std::vector<Control> InstallerDriver::controls() const {
  const CommandResult seen =
      runCommand({accessibleProbe_, std::to_string(installer())}, {.environment = desktop_.environment()});
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

bool InstallerDriver::seen(const std::function<bool()>& condition, double seconds) const {
  bool isSeen = false;
  std::ignore = eventually([&] { return (isSeen = condition()) || !process_.isRunning(); }, seconds);
  if (isSeen) return true;
  if (const auto status = process_.waitForEnd(0))
    std::cerr << "The installer has ended with " << *status << " and printed:\n" << process_.output();
  return false;
}

bool InstallerDriver::waitForText(const std::string& text, double seconds) const {
  return seen([&] { return showing(text).has_value(); }, seconds);
}

std::optional<Control> InstallerDriver::button(const std::string& name) const {
  for (const Control& control : controls()) {
    const bool isButton = control.role == "push button" || control.role == "button";
    if (isButton && control.name == name && control.has("showing") && control.has("enabled")) return control;
  }
  return std::nullopt;
}

bool InstallerDriver::waitForButton(const std::string& name, double seconds) const {
  return seen([&] { return button(name).has_value(); }, seconds);
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
  const bool isThere = seen(
      [&] {
        before = target;
        target = button(name);
        return target && before && target->x == before->x && target->y == before->y;
      },
      seconds);
  if (!isThere) return false;
  return clickAt(target->x + target->width / 2, target->y + target->height / 2);
}

bool InstallerDriver::clickAt(int x, int y) {
  if (!pointer_ && !hands_) {
    return runCommand({"xdotool", "mousemove", std::to_string(x), std::to_string(y), "click", "1"},
                      {.environment = desktop_.environment()})
               .status == 0;
  }
  const auto window = settledPlace(kTestPatience);
  if (!window) return false;
  ChildProcess& mouse = pointer_ ? *pointer_ : *hands_;
  mouse.writeInput("click " + std::to_string(window->x + x) + " " + std::to_string(window->y + y) + "\n");
  return mouse.readLine(kTestPatience) == "done";
}

// A compositor moves a new window when it gives it a title.
std::optional<InstallerDriver::Place> InstallerDriver::settledPlace(double seconds) const {
  constexpr int kLooks = 5;
  int same = 0;
  std::optional<Place> place;
  const bool isSettled = eventually(
      [&] {
        const auto before = std::exchange(place, windowPlace());
        const bool stays = place && before && place->x == before->x && place->y == before->y;
        same = stays ? same + 1 : 0;
        return same == kLooks;
      },
      seconds);
  return isSettled ? place : std::nullopt;
}

// Out of the compositor's own description of what it shows.
std::optional<InstallerDriver::Place> InstallerDriver::windowPlace() const {
  if (desktop_.kind() == Compositor::KWin) return windowPlaceInKWin();
  if (desktop_.kind() == Compositor::Gnome) return windowPlaceInGnome();
  const CommandResult tree = runCommand({"swaymsg", "-s", desktop_.swaySocket(), "-r", "-t", "get_tree"},
                                        {.environment = desktop_.environment()});
  const std::size_t window = tree.output.find("\"pid\": " + std::to_string(installer()) + ",");
  const std::size_t place = window == std::string::npos ? window : tree.output.rfind("\"rect\":", window);
  if (place == std::string::npos) return std::nullopt;
  return Place{numberBehind(tree.output, "x", place), numberBehind(tree.output, "y", place)};
}

// It finds windows by their titles, and tells the place of each that it has a name for.
std::optional<InstallerDriver::Place> InstallerDriver::windowPlaceInKWin() const {
  const auto asked = [&](const std::string& object, const std::string& method, const std::string& argument) {
    return runCommand(
               {"gdbus", "call", "--session", "-d", "org.kde.KWin", "-o", object, "-m", method, argument},
               {.environment = desktop_.environment()})
        .output;
  };
  static const std::regex name(R"(\{[0-9a-f-]{36}\})");
  static const std::regex place(R"('x': <(\d+)\.\d+>, 'y': <(\d+)\.)");
  for (const std::string& title : windowTitles()) {
    const std::string found = asked("/WindowsRunner", "org.kde.krunner1.Match", title);
    for (std::sregex_iterator each(found.begin(), found.end(), name), end; each != end; ++each) {
      const std::string told = asked("/KWin", "org.kde.KWin.getWindowInfo", each->str());
      std::smatch match;
      if (told.find("'example.halvorn.installer'") != std::string::npos &&
          std::regex_search(told, match, place))
        return Place{std::stoi(match[1]), std::stoi(match[2])};
    }
  }
  return std::nullopt;
}

// Programs draw their title bars themselves there: the content lies within the window, equally far from its sides and
// its lower edge.
std::optional<InstallerDriver::Place> InstallerDriver::windowPlaceInGnome() const {
  const std::string told =
      desktop_.evaluated("global.get_window_actors().map(a => a.meta_window).filter(w => w.get_pid() == " +
                         std::to_string(installer()) +
                         " && w.get_title()).map(w => { const r = w.get_buffer_rect(); return 'at ' + r.x + "
                         "' ' + r.y + ' ' + r.width + ' ' + "
                         "r.height; })[0]");
  static const std::regex rectangle(R"(at (-?\d+) (-?\d+) (\d+) (\d+))");
  std::smatch match;
  if (!std::regex_search(told, match, rectangle)) return std::nullopt;
  for (const Control& control : controls()) {
    if (control.role != "frame" && control.role != "window") continue;
    const int side = (std::stoi(match[3]) - control.width) / 2;
    const int top = std::stoi(match[4]) - control.height - side;
    return Place{std::stoi(match[1]) + side - control.x, std::stoi(match[2]) + top - control.y};
  }
  return std::nullopt;
}

void InstallerDriver::key(const std::string& keys) {
  if (hands_) {
    if (keys != "Return") throw std::runtime_error("no such key: " + keys);
    hands_->writeInput("key " + std::to_string(KEY_ENTER) + "\n");
    if (hands_->readLine(kTestPatience) != "done") throw std::runtime_error(hands_->output());
    return;
  }
  // The keyboard comes with the tool and goes with it; the program needs a moment to see that there is one.
  const auto command = pointer_ ? std::vector<std::string>{"wtype", "-s", "400", "-k", keys}
                                : std::vector<std::string>{"xdotool", "key", keys};
  const CommandResult result = runCommand(command, {.environment = desktop_.environment()});
  if (result.status != 0) throw std::runtime_error(command.front() + ": " + result.output);
}

void InstallerDriver::screenshot(const std::string& file) const {
  std::filesystem::create_directories(std::filesystem::path(file).parent_path());
  if (desktop_.kind() == Compositor::Gnome) return screenshotOfGnome(file);
  // The program is told that its window shows before the compositor shows it.
  constexpr double kLongestToShow = 2.0;
  if (pointer_) static_cast<void>(settledPlace(kLongestToShow));
  std::vector<std::string> command = {"import", "-window", "root", file};
  if (pointer_) command = {"grim", file};
  if (desktop_.kind() == Compositor::KWin) command = {KT_SOURCE_DIR "/tests/support/kwin_picture.py", file};
  const CommandResult result = runCommand(command, {.environment = desktop_.environment()});
  if (result.status != 0) throw std::runtime_error(command.front() + ": " + result.output);
}

void InstallerDriver::screenshotOfGnome(const std::string& file) const {
  const CommandResult result = runCommand(
      {"gdbus", "call", "--session", "-d", "org.gnome.Shell.Screenshot", "-o", "/org/gnome/Shell/Screenshot",
       "-m", "org.gnome.Shell.Screenshot.Screenshot", "false", "false", file},
      {.environment = desktop_.environment()});
  if (result.output.find("(true,") == std::string::npos) throw std::runtime_error(result.output);
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
