#include "Platform/processes/linux/wayland/ToplevelWindows.h"

#include <algorithm>
#include <utility>

#include "Platform/processes/linux/proc/ProcessHold.h"

namespace halvorn {

ToplevelWindows::ToplevelWindows(DesktopAddresses desktop, const ProcFiles& files, const Bundles& bundles,
                                 const Log& log, Guests guests)
    : desktop_(std::move(desktop)),
      log_(log),
      clients_(desktop_.waylandSocket, files, bundles),
      guests_(std::move(guests)) {}

ToplevelWindows::~ToplevelWindows() = default;

bool ToplevelWindows::connectLocked() {
  if (std::exchange(hasTried_, true)) return list_ != nullptr;
  list_ = ToplevelList::open(desktop_);
  if (list_ == nullptr) {
    log_(
        "This desktop tells nothing of its windows: programs are found in the process table and asked to end "
        "by a "
        "signal, and which one is in front is not known");
  }
  return list_ != nullptr;
}

std::optional<std::vector<ToplevelWindows::OwnedWindow>> ToplevelWindows::windowsLocked() {
  if (!connectLocked()) return std::nullopt;
  auto windows = list_->windows();
  if (!windows) return std::nullopt;
  // After the windows: whoever has one is connected.
  const bool isTold = std::all_of(windows->begin(), windows->end(),
                                  [](const Toplevel& each) { return each.owner && !each.isGuests; });
  if (!isTold) clients_.refresh();
  const std::vector<Guest> guests = isTold ? std::vector<Guest>() : guests_();
  std::vector<OwnedWindow> result;
  for (Toplevel& window : *windows) result.push_back(owned(std::move(window), guests));
  return result;
}

ToplevelWindows::OwnedWindow ToplevelWindows::owned(Toplevel window, const std::vector<Guest>& guests) const {
  if (window.owner) {
    const bool isCertain =
        !window.isGuests || std::any_of(guests.begin(), guests.end(),
                                        [&](const Guest& guest) { return guest.pid == *window.owner; });
    const auto owner = isCertain ? window.owner : std::nullopt;
    const bool isGuests = window.isGuests;
    return {std::move(window), owner, isGuests};
  }
  const std::set<pid_t> clients = clients_.clientsNamed(window.applicationId);
  std::set<pid_t> all = clients;
  for (const Guest& guest : guests) {
    if (!guest.name.empty() && guest.name == window.applicationId) all.insert(guest.pid);
  }
  if (all.size() != 1) return {std::move(window), std::nullopt, false};
  return {std::move(window), *all.begin(), clients.empty()};
}

bool ToplevelWindows::tellsAllWindows() {
  const std::lock_guard lock(mutex_);
  const auto windows = windowsLocked();
  return windows && std::all_of(windows->begin(), windows->end(),
                                [](const OwnedWindow& each) { return each.owner.has_value(); });
}

std::vector<pid_t> ToplevelWindows::owners() {
  const std::lock_guard lock(mutex_);
  std::vector<pid_t> result;
  for (const OwnedWindow& each : windowsLocked().value_or(std::vector<OwnedWindow>())) {
    if (each.owner && std::find(result.begin(), result.end(), *each.owner) == result.end())
      result.push_back(*each.owner);
  }
  return result;
}

bool ToplevelWindows::tellsActiveWindow() {
  const std::lock_guard lock(mutex_);
  return connectLocked();
}

std::optional<pid_t> ToplevelWindows::activeOwner() {
  const std::lock_guard lock(mutex_);
  for (const OwnedWindow& each : windowsLocked().value_or(std::vector<OwnedWindow>())) {
    if (each.window.isActive) return each.owner;
  }
  return std::nullopt;
}

std::vector<Toplevel> ToplevelWindows::windowsOfLocked(const ProcessHold& process, Whose whose) {
  std::vector<Toplevel> result;
  for (OwnedWindow& each : windowsLocked().value_or(std::vector<OwnedWindow>())) {
    if (each.owner == process.pid() && (whose == Whose::GuestsToo || !each.isGuests))
      result.push_back(std::move(each.window));
  }
  // As long as it has not ended, the id of the owner was its own.
  if (process.hasEnded()) result.clear();
  return result;
}

std::vector<WindowSystem::WindowNumber> ToplevelWindows::windowsOf(const ProcessHold& process) {
  const std::lock_guard lock(mutex_);
  std::vector<WindowNumber> result;
  for (const Toplevel& window : windowsOfLocked(process, Whose::ClientsAlone))
    result.push_back(window.number);
  return result;
}

int ToplevelWindows::closeWindows(const ProcessHold& process) {
  const std::lock_guard lock(mutex_);
  const auto own = windowsOfLocked(process, Whose::ClientsAlone);
  for (const Toplevel& window : own) list_->close(window.number);
  return static_cast<int>(own.size());
}

void ToplevelWindows::activate(const ProcessHold& process, BringForward windows) {
  const std::lock_guard lock(mutex_);
  const auto own = windowsOfLocked(process, Whose::GuestsToo);
  if (own.empty()) return;
  // From the bottom up, so that they keep their order.
  const std::size_t first = windows == BringForward::AllWindows ? 0 : own.size() - 1;
  for (std::size_t i = first; i < own.size(); ++i) list_->activate(own[i].number);
}

std::optional<bool> ToplevelWindows::isHidden(const ProcessHold& process) {
  const std::lock_guard lock(mutex_);
  const auto own = windowsOfLocked(process, Whose::ClientsAlone);
  if (own.empty()) return std::nullopt;
  return std::all_of(own.begin(), own.end(), [](const Toplevel& window) { return window.isMinimized; });
}

void ToplevelWindows::setVisible(const ProcessHold& process, Visible visible) {
  const std::lock_guard lock(mutex_);
  for (const Toplevel& window : windowsOfLocked(process, Whose::ClientsAlone)) {
    list_->setMinimized(window.number, visible == Visible::No);
  }
}

// A connection of its own: whoever waits for an answer handles events too, and the loop would never learn of
// those.
class ToplevelWindows::Watch : public RunLoop::Source {
 public:
  Watch(std::unique_ptr<ToplevelList> list, RunLoop& loop, Changes changes)
      : list_(std::move(list)), changes_(std::move(changes)) {
    // What has come until now is no change.
    std::ignore = list_->windows();
    std::ignore = list_->readChanges();
    readable_ = loop.whenReadable(list_->descriptor(), [this] { readEvents(); });
  }

 private:
  void readEvents() {
    ToplevelList::Changes come = list_->readChanges();
    if (!list_->isUsable()) {
      // The descriptor would be readable for ever.
      readable_ = nullptr;
      come.windows = true;
    }
    if (come.windows) changes_.windowsChanged();
    // Whose the active window is may have been told only now.
    if (come.active || come.windows) changes_.activeChanged();
  }

  const std::unique_ptr<ToplevelList> list_;
  const Changes changes_;
  std::unique_ptr<RunLoop::Source> readable_;
};

std::unique_ptr<RunLoop::Source> ToplevelWindows::watch(RunLoop& loop, Changes changes) {
  auto own = ToplevelList::open(desktop_);
  return own ? std::make_unique<Watch>(std::move(own), loop, std::move(changes)) : nullptr;
}

}  // namespace halvorn
