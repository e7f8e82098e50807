// halvorn report: what those who help need to know of the last installation, without the names of who asks for help.
#include <sys/stat.h>
#include <sys/utsname.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "KTStuff/KTSystem.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/files/SearchPaths.h"
#include "tools/Json.h"
#include "tools/halvorn/Anonymous.h"
#include "tools/halvorn/Plan.h"
#include "tools/halvorn/Program.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

constexpr char kArguments[] = "arguments: (";
constexpr std::size_t kMostLines = 2000;

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// From where the installer last said with what it was started.
std::vector<std::string> lastInstallation(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::vector<std::string> last;
  for (std::string line; std::getline(stream, line);) {
    if (line.find(kArguments) != std::string::npos) last.clear();
    if (last.size() < kMostLines) last.push_back(line);
  }
  return last;
}

// What stands in quotes behind "arguments: (", the program's path left out.
std::vector<Text> argumentsIn(const std::string& line) {
  std::vector<Text> words;
  const std::size_t begin = line.find(kArguments);
  bool isInside = false;
  std::string word;
  for (std::size_t i = begin == std::string::npos ? line.size() : begin; i < line.size(); ++i) {
    if (isInside && line[i] == '\\' && i + 1 < line.size()) {
      word += line[++i];
    } else if (line[i] == '"') {
      if (isInside) words.emplace_back(word);
      word.clear();
      isInside = !isInside;
    } else if (isInside) {
      word += line[i];
    }
  }
  if (!words.empty()) words.erase(words.begin());
  return words;
}

PropertyArray textsOf(const std::vector<std::string>& lines) {
  PropertyArray texts;
  for (const std::string& line : lines) texts.emplace_back(Text(line));
  return texts;
}

PropertyDictionary desktopFacts() {
  PropertyDictionary facts;
  for (const char* name : {"XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE", "DESKTOP_SESSION", "LANG", "LANGUAGE",
                           "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_SCALE_FACTOR"}) {
    if (const char* const value = std::getenv(name)) put(facts, Text(name), Text(value));
  }
  put(facts, Text("sessionBus"), std::getenv("DBUS_SESSION_BUS_ADDRESS") != nullptr);
  for (const char* program : {"pkexec", "xdg-open", "notify-send", "update-desktop-database"})
    put(facts, Text(program), isInPath(program));
  return facts;
}

std::string releaseName() {
  std::ifstream file("/etc/os-release");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("PRETTY_NAME=")) return line.substr(12);
  }
  return "";
}

PropertyDictionary versions(InstallerSteps& steps, const Text& installer) {
  utsname system{};
  static_cast<void>(::uname(&system));
  const auto info = steps.bundles().infoDictionary(installer).value_or(PropertyDictionary());
  return {{"installer", textIn(info, "CFBundleShortVersionString")},
          {"kernel", Text(std::string(system.sysname) + " " + system.release + " " + system.machine)},
          {"system", Text(releaseName())}};
}

PropertyDictionary reportOf(const Text& installer, const std::vector<std::string>& log) {
  InstallerSteps steps({.installer = installer, .arguments = argumentsIn(log.front())});
  steps.begin();
  // Where there is no journal, there is nothing in it. With a window or without one.
  const ProgramEnd journal =
      runProgram({"journalctl", "--quiet", "--no-pager", "--output=short-iso", "--lines=200",
                  "SYSLOG_IDENTIFIER=HalvornInstaller", "SYSLOG_IDENTIFIER=halvorn"});
  return {{"log", textsOf(log)},
          {"journal", textsOf(journal.status == 0 ? linesOf(journal.output) : std::vector<std::string>())},
          {"plan", planOf(steps).facts},
          {"desktop", desktopFacts()},
          {"versions", versions(steps, installer)}};
}

// For people: a title for each part, and its lines.
std::string pageOf(const PropertyDictionary& report) {
  std::string page;
  for (const auto& [title, part] : report) {
    page += "== " + title.bytes() + "\n";
    if (const PropertyArray* lines = part.array())
      for (const PropertyValue& line : *lines) page += line.text()->bytes() + "\n";
    if (const PropertyDictionary* facts = part.dictionary())
      for (const auto& [name, value] : *facts) page += name.bytes() + ": " + json(value) + "\n";
  }
  return page;
}

// Nobody else reads it.
bool writeFor(const std::string& file, const std::string& text) {
  const mode_t mask = ::umask(077);
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  ::umask(mask);
  stream << text;
  stream.close();
  return static_cast<bool>(stream);
}

}  // namespace

Ending report(const Call& call) {
  if (!call.words.plain.empty()) return Ending::Misused;
  const OptionalText installer = installerFor(call);
  if (!installer) {
    call.complain("no installer's bundle was found; name it with --installer");
    return Ending::NoInput;
  }
  const char* const home = std::getenv("HOME");
  const auto log =
      lastInstallation(std::string(home != nullptr ? home : "") + "/Library/Logs/HalvornInstaller.log");
  if (log.empty() || log.front().find(kArguments) == std::string::npos) {
    call.complain("no installation has been logged");
    return Ending::NoInput;
  }
  PropertyDictionary made = *Anonymous::ofThisPerson().value(reportOf(*installer, log)).dictionary();
  const std::string page = call.isJson() ? json(PropertyValue(made)) + "\n" : pageOf(made);
  std::fputs(page.c_str(), call.output);
  const OptionalText file = call.words.value("--output");
  if (!file) return Ending::Done;
  if (!call.isConfirmed("Write this to " + shown(*file) + "?")) {
    call.complain("nobody said yes (--yes): nothing is written");
    return Ending::NotConfirmed;
  }
  if (writeFor(file->bytes(), page)) return Ending::Done;
  call.complain("cannot write " + shown(*file));
  return Ending::CannotCreate;
}

}  // namespace halvorn
