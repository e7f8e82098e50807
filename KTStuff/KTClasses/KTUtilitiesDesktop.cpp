#include "KTStuff/KTClasses/KTUtilitiesDesktop.h"

namespace halvorn {

namespace {

constexpr double kWatcherDelay = 1.0;  // seconds
constexpr double kNanosecondsPerSecond = 1e9;

}  // namespace

EventAnswer MonitorMenuBarEventHandler(const MenuBarEvent& event, bool& isMenuBarHidden) {
  if (event.eventClass == kMenuEventClass) {
    if (event.kind == kMenuBarHiddenEvent) isMenuBarHidden = true;
    if (event.kind == kMenuBarShownEvent) isMenuBarHidden = false;
  }
  return EventAnswer::NotHandled;
}

KTUtilitiesDesktop::KTUtilitiesDesktop(const KTUtilitiesVersions& versions,
                                       const KTUtilitiesDesktopServices& services)
    : KTUtilitiesTheme(versions, services.defaults, services.interfaceStyle),
      versions_(versions),
      services_(services),
      self_(std::make_shared<KTUtilitiesDesktop*>(this)) {
  initialize();
}

void KTUtilitiesDesktop::initialize() {
  const std::lock_guard lock(initializeMutex_);
  if (isWatcherInstalled_) return;
  isWatcherInstalled_ = true;
  services_.mainThread.performAfter(kWatcherDelay, [weakSelf = std::weak_ptr(self_)] {
    if (const auto self = weakSelf.lock()) (*self)->installProcessWatcher();
  });
}

void KTUtilitiesDesktop::installProcessWatcher() {
  processObservation_ = services_.notifications.addObserver(
      KTProcessChangeNotification, nullptr, [this](const Notification&) { processSwitched(); });
}

bool KTUtilitiesDesktop::isActiveProcess(const KTProcessPointer& process) const {
  return process ? process->isEqual(activeProcess_) : activeProcess_ == nullptr;
}

void KTUtilitiesDesktop::processSwitched() {
  const KTProcessPointer front = services_.processes.frontProcess();
  if (isActiveProcess(front)) return;
  const std::int64_t count = clipboardChangeCount();
  if (activeProcess_ && count != clipboardCountAtStartOfActiveProcess_) {
    clipboardPublisherProcess_ = activeProcess_;
  }
  activeProcess_ = front;
  clipboardCountAtStartOfActiveProcess_ = count;
}

std::int64_t KTUtilitiesDesktop::clipboardChangeCount() const {
  return services_.desktop.clipboardChangeCount().value_or(0);
}

KTProcessPointer KTUtilitiesDesktop::clipboardPublisherProcess() {
  if (!isActiveProcess(services_.processes.frontProcess())) processSwitched();
  const bool isUnchanged = clipboardChangeCount() == clipboardCountAtStartOfActiveProcess_;
  return isUnchanged ? clipboardPublisherProcess_ : activeProcess_;
}

bool KTUtilitiesDesktop::fullScreenMode() {
  if (!isMenuBarMonitorInstalled_) installMenuBarMonitor();
  return isMenuBarHidden_;
}

void KTUtilitiesDesktop::installMenuBarMonitor() {
  isMenuBarMonitorInstalled_ = true;
  const bool isWatched =
      services_.desktop.installMenuBarHandler([weakSelf = std::weak_ptr(self_)](const MenuBarEvent& event) {
        const auto self = weakSelf.lock();
        return self ? MonitorMenuBarEventHandler(event, (*self)->isMenuBarHidden_) : EventAnswer::NotHandled;
      });
  // KEEP: the cut-off word and the stray parenthesis.
  if (!isWatched) services_.log("could not install menu bar visibility event handl)");
}

ImagePointer KTUtilitiesDesktop::systemTintImage() {
  Text name = "tintMav";
  if (versions_.yosemiteOrNewer()) name = darkMenuTheme() ? "tintYosDark" : "tintYos";
  const bool isBlue = services_.desktop.controlTint().value_or(kBlueControlTint) == kBlueControlTint;
  return services_.images.imageNamed(name + Text(isBlue ? "Blue" : "Graphite"));
}

Text KTUtilitiesDesktop::applicationName() const {
  const auto dictionary = services_.bundles.infoDictionary(services_.bundles.mainBundlePath());
  if (!dictionary) return "";
  return textForKey(*dictionary, "CFBundleExecutable").value_or("");
}

bool KTUtilitiesDesktop::debugging() const { return services_.system.isDebuggerAttached(); }

float KTUtilitiesDesktop::idleTime() {
  const auto nanoseconds = services_.desktop.nanosecondsSinceLastInput();
  if (!nanoseconds) return -1.0F;
  return static_cast<float>(static_cast<double>(*nanoseconds) / kNanosecondsPerSecond);
}

Text KTUtilitiesDesktop::fileSystemTypeFor(const Text& path) const {
  services_.log("FS Info %@", path);
  const FileSystemAnswer answer = services_.system.fileSystemOf(path);
  services_.log("statfs err = %d", answer.status);
  return answer.status == 0 ? answer.typeName : Text("");
}

}  // namespace halvorn
