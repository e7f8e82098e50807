#include "Platform/bundles/linux/launching/XdgLoginItems.h"

#include <algorithm>
#include <set>

#include "Platform/bundles/linux/BundleFolder.h"
#include "Platform/bundles/linux/launching/DesktopEntry.h"
#include "Platform/bundles/linux/launching/Launching.h"
#include "Platform/files/linux/FoundItem.h"
#include "Platform/session/linux/XdgFolders.h"

namespace halvorn {
namespace {

// "env NAME=value program" starts the program.
std::string programOf(const std::vector<std::string>& arguments) {
  if (arguments.empty()) return {};
  const std::string& first = arguments.front();
  if (first.substr(first.rfind('/') + 1) != "env") return first;
  const auto program = std::find_if(arguments.begin() + 1, arguments.end(), [](const std::string& argument) {
    return argument.find('=') == std::string::npos && !argument.starts_with('-');
  });
  return program == arguments.end() ? std::string() : *program;
}

bool intersect(const std::vector<std::string>& names, const std::vector<std::string>& others) {
  return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
    return std::find(others.begin(), others.end(), name) != others.end();
  });
}

std::vector<std::string> currentDesktops(const Environment& environment) {
  std::vector<std::string> names;
  for (const Text& name : Text(environment.value("XDG_CURRENT_DESKTOP").value_or("")).split(u':')) {
    names.push_back(name.bytes());
  }
  return names;
}

}  // namespace

XdgLoginItems::XdgLoginItems(const XdgFolders& folders, const Environment& environment)
    : folders_{folders.configHome() + "/autostart"}, environment_(environment) {
  for (const std::string& folder : folders.configFolders()) folders_.push_back(folder + "/autostart");
}

std::optional<std::vector<OptionalText>> XdgLoginItems::snapshot() const {
  std::vector<OptionalText> items;
  std::set<std::string> seen;
  for (const std::string& folder : folders_) {
    const auto listing = findItem(folder);
    std::vector<std::string> names = listing ? folderEntries(*listing) : std::vector<std::string>();
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
      if (!name.ends_with(".desktop") || !seen.insert(name).second) continue;
      const auto entry = DesktopEntry::read(folder + "/" + name);
      if (!entry || (!entry->isTrue("Hidden") && isStartedHere(*entry))) {
        items.push_back(entry ? resolve(*entry) : std::nullopt);
      }
    }
  }
  return items;
}

std::vector<std::string> XdgLoginItems::filesStarting(const Text& bundlePath) const {
  std::vector<std::string> files;
  for (const std::string& folder : folders_) {
    const auto listing = findItem(folder);
    for (const std::string& name : listing ? folderEntries(*listing) : std::vector<std::string>()) {
      const std::string path = folder + "/" + name;
      const auto entry = name.ends_with(".desktop") ? DesktopEntry::read(path) : std::nullopt;
      if (entry && resolve(*entry) == bundlePath) files.push_back(path);
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool XdgLoginItems::isStartedHere(const DesktopEntry& entry) const {
  const std::vector<std::string> desktops = currentDesktops(environment_);
  if (intersect(entry.list("NotShowIn"), desktops)) return false;
  const std::vector<std::string> only = entry.list("OnlyShowIn");
  return only.empty() || intersect(only, desktops);
}

OptionalText XdgLoginItems::resolve(const DesktopEntry& entry) const {
  std::string program = programOf(splitExec(entry.value("Exec").value_or("")));
  if (program.find('/') == std::string::npos) program = programInPath(program, environment_);
  const auto item = program.starts_with('/') ? findItem(program) : std::nullopt;
  if (!item || !isRegularFile(*item)) return std::nullopt;
  if (OptionalText bundle = bundleAround(program)) return bundle;
  // A link in a folder of programs stands for the program it leads to.
  return bundleAround(Text(item->realPath));
}

}  // namespace halvorn
