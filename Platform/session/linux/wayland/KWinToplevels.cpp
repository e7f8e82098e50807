#include "Platform/session/linux/wayland/KWinToplevels.h"

#include <algorithm>
#include <functional>
#include <sstream>
#include <utility>

namespace halvorn {
namespace {

// Names that changed with version 6 are looked for under both. What is no window to a person, a panel or the picture
// behind all windows, is left out.
constexpr char kCommon[] = R"(
function all() { return workspace.windowList ? workspace.windowList() : workspace.clientList(); }
)";

// Everything anew at each change, one line for each window. A window that goes may still be in the list.
constexpr char kWatch[] = R"(
var last = null;
function state(window) {
  return [window.internalId, window.pid, Number(window.active), Number(window.minimized), Number(window.fullScreen),
          Number(/^KWin::X11/.test(String(window))),
          String(window.resourceClass).replace(/\s/g, " ")].join(" ");
}
function tellAll(gone) {
  var shown = all().filter(function (window) {
    return window !== gone && (window.normalWindow || window.dialog || window.utility);
  });
  var text = shown.map(state).join("\n");
  if (text !== last) tell(text);
  last = text;
}
function change() { tellAll(null); }
function watch(window) {
  window.activeChanged.connect(change);
  window.minimizedChanged.connect(change);
  window.fullScreenChanged.connect(change);
  window.windowClassChanged.connect(change);
}
(workspace.windowAdded || workspace.clientAdded).connect(function (window) { watch(window); change(); });
(workspace.windowRemoved || workspace.clientRemoved).connect(tellAll);
(workspace.windowActivated || workspace.clientActivated).connect(change);
all().forEach(watch);
change();
)";

bool isActive(const Toplevel& window) { return window.isActive; }

std::vector<Toplevel>::const_iterator find(const std::vector<Toplevel>& windows, std::uint64_t number) {
  return std::find_if(windows.begin(), windows.end(),
                      [&](const Toplevel& each) { return each.number == number; });
}

}  // namespace

std::unique_ptr<KWinToplevels> KWinToplevels::over(std::unique_ptr<KWinScripting> scripting) {
  std::unique_ptr<KWinToplevels> result(new KWinToplevels(std::move(scripting)));
  KWinToplevels* const list = result.get();
  const bool isTelling = list->scripting_->keep(std::string(kCommon) + kWatch,
                                                [list](const std::string& told) { list->take(told); });
  return isTelling ? std::move(result) : nullptr;
}

void KWinToplevels::take(const std::string& told) {
  const std::vector<Toplevel> before = std::exchange(windows_, parsed(told));
  // The order of before, but for what is active.
  std::stable_sort(windows_.begin(), windows_.end(), [&](const Toplevel& a, const Toplevel& b) {
    return find(before, a.number) < find(before, b.number);
  });
  std::stable_partition(windows_.begin(), windows_.end(), std::not_fn(isActive));
  changes_.windows |= windows_.size() != before.size();
  for (const Toplevel& window : windows_) {
    const auto place = find(before, window.number);
    const Toplevel was = place == before.end() ? Toplevel{} : *place;
    changes_.windows |= place == before.end() || was.applicationId != window.applicationId;
    changes_.active |= was.isActive != window.isActive || was.isFullScreen != window.isFullScreen;
  }
  changes_.active |= std::any_of(before.begin(), before.end(), isActive) !=
                     std::any_of(windows_.begin(), windows_.end(), isActive);
}

// As the script writes them; what is no such line is left out.
std::vector<Toplevel> KWinToplevels::parsed(const std::string& told) {
  std::vector<Toplevel> result;
  std::map<std::string, std::uint64_t> numbers;
  std::istringstream lines(told);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string name;
    pid_t pid = 0;
    Toplevel window;
    words >> name >> pid >> window.isActive >> window.isMinimized >> window.isFullScreen >> window.isGuests;
    if (!words) continue;
    std::getline(words >> std::ws, window.applicationId);
    if (pid > 0) window.owner = pid;
    const auto known = numbers_.find(name);
    window.number = known == numbers_.end() ? ++lastNumber_ : known->second;
    numbers[name] = window.number;
    result.push_back(std::move(window));
  }
  numbers_ = std::move(numbers);
  return result;
}

std::optional<std::vector<Toplevel>> KWinToplevels::windows() {
  if (!scripting_->roundTrip()) return std::nullopt;
  return windows_;
}

std::vector<Toplevel> KWinToplevels::knownWindows() const { return windows_; }

void KWinToplevels::run(std::uint64_t number, const std::string& statement) {
  for (const auto& [name, itsNumber] : numbers_) {
    if (itsNumber != number) continue;
    scripting_->run(std::string(kCommon) +
                    "all().forEach(function (window) { if (String(window.internalId) === '" + name + "') { " +
                    statement + " } });\n");
    return;
  }
}

void KWinToplevels::close(std::uint64_t number) { run(number, "window.closeWindow();"); }

void KWinToplevels::activate(std::uint64_t number) {
  run(number, "workspace[workspace.windowList ? 'activeWindow' : 'activeClient'] = window;");
}

void KWinToplevels::setMinimized(std::uint64_t number, bool isMinimized) {
  run(number, std::string("window.minimized = ") + (isMinimized ? "true;" : "false;"));
}

ToplevelList::Changes KWinToplevels::readChanges() {
  scripting_->readMessages();
  return std::exchange(changes_, {});
}

}  // namespace halvorn
