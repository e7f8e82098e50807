#include "packaging/linux/launcher/LibrariesInTheWay.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "packaging/linux/starter/Files.h"

namespace halvorn {
namespace {

bool isSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && value[0] != '\0';
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = 0; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
    lines.push_back(text.substr(start, end - start));
  if (start < text.size()) lines.push_back(text.substr(start));
  return lines;
}

std::vector<std::string> wordsOf(const std::string& line) {
  std::vector<std::string> words;
  for (std::size_t end = 0, start = 0; start != std::string::npos;
       start = line.find_first_not_of(" \t", end)) {
    end = std::min(line.find_first_of(" \t", start), line.size());
    if (end > start) words.push_back(line.substr(start, end - start));
  }
  return words;
}

// Instead of the program its loader runs, and tells what it would load: "name => path (address)", "name => not found", or
// "program: path: version `X_2' not found (required by ...)".
[[noreturn]] void becomeLoader(const std::string& bundle, const std::string& program, const char* part) {
  std::string places = bundle + "/Contents/PlugIns/platforms";
  if (isSet("LD_LIBRARY_PATH")) places += std::string(":") + std::getenv("LD_LIBRARY_PATH");
  ::setenv("LD_LIBRARY_PATH", places.c_str(), 1);
  ::setenv("LD_PRELOAD", part, 1);
  ::setenv("LD_TRACE_LOADED_OBJECTS", "1", 1);
  ::execl(program.c_str(), program.c_str(), static_cast<char*>(nullptr));
  ::_exit(1);
}

std::string toldByLoader(const std::string& bundle, const std::string& program, const char* part) {
  int ends[2] = {-1, -1};
  if (::pipe(ends) != 0) return {};
  const pid_t loader = ::fork();
  if (loader == 0) {
    ::dup2(ends[1], STDOUT_FILENO);
    ::dup2(ends[1], STDERR_FILENO);
    ::close(ends[0]);
    ::close(ends[1]);
    becomeLoader(bundle, program, part);
  }
  ::close(ends[1]);
  const std::string told = readAll(ends[0]);
  ::close(ends[0]);
  if (loader > 0) ::waitpid(loader, nullptr, 0);
  return told;
}

std::string nameAt(const std::string& path) { return path.substr(path.rfind('/') + 1); }

void sortOnce(std::vector<std::string>& names) {
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
}

LibrariesInTheWay inTheWayOf(const std::string& bundle, const std::string& program, const char* part) {
  LibrariesInTheWay found;
  for (const std::string& line : linesOf(toldByLoader(bundle, program, part))) {
    const auto words = wordsOf(line);
    if (words.size() > 3 && words[1] == "=>" && words[2] == "not" && words[3] == "found")
      found.missing.push_back(words[0]);
    const std::size_t version = line.find(": version `");
    if (version != std::string::npos && line.find("' not found (required by ", version) != std::string::npos)
      found.older.push_back(nameAt(line.substr(0, version)));
  }
  sortOnce(found.missing);
  sortOnce(found.older);
  return found;
}

}  // namespace

// A window on either will do.
LibrariesInTheWay librariesInTheWay(const std::string& bundle, const std::string& program) {
  LibrariesInTheWay found;
  if (isSet("WAYLAND_DISPLAY")) found = inTheWayOf(bundle, program, "libqwayland-generic.so");
  if (isSet("DISPLAY") && (!found.areNone() || !isSet("WAYLAND_DISPLAY")))
    found = inTheWayOf(bundle, program, "libqxcb.so");
  return found;
}

std::vector<std::string> packagesOf(const std::vector<std::string>& libraries, const std::string& bundle) {
  const auto lines = linesOf(contentsOf(bundle + "/Contents/Resources/system-libraries"));
  std::vector<std::string> packages;
  for (const std::string& library : libraries) {
    for (const std::string& line : lines) {
      const auto words = wordsOf(line);
      if (words.size() > 1 && words[0] == library) packages.push_back(words[1]);
    }
  }
  return packages;
}

}  // namespace halvorn
