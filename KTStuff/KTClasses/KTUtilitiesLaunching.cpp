#include "KTStuff/KTClasses/KTUtilitiesLaunching.h"

#include <algorithm>
#include <exception>
#include <vector>

#include "Core/Format.h"
#include "Core/Paths.h"

namespace halvorn {

namespace {

constexpr char kOpenTool[] = "/usr/bin/open";
constexpr char kLoginWindowCreator[] = "lgnw";

constexpr double kPollInterval = 0.001;  // seconds
constexpr double kWakeUpInterval = 0.000'001;
constexpr int kMostPolls = 500;

// Gives the front back when it goes, however that comes about.
class FrontKeeper {
 public:
  explicit FrontKeeper(const KTProcessPointer& process) : process_(process) {}
  ~FrontKeeper() {
    if (!process_) return;
    process_->setFrontProcessFrontWindowOnly();
    process_->wakeUp();
  }
  FrontKeeper(const FrontKeeper&) = delete;
  FrontKeeper& operator=(const FrontKeeper&) = delete;

 private:
  const KTProcessPointer process_;
};

}  // namespace

KTUtilitiesLaunching::KTUtilitiesLaunching(KTUtilitiesDesktop& desktop,
                                           const KTUtilitiesLaunchingServices& services)
    : desktop_(desktop), services_(services) {}

bool KTUtilitiesLaunching::runningFromDistributionDisk() const {
  const std::vector<Text> components = Paths::components(services_.bundles.mainBundlePath());
  for (const Text& volumes : services_.searchPaths.volumeFolders()) {
    const std::vector<Text> prefix = Paths::components(volumes);
    // The component behind the folder of volumes is the name of the volume.
    if (components.size() <= prefix.size()) continue;
    if (!std::equal(prefix.begin(), prefix.end(), components.begin())) continue;
    return services_.files.fileExists(format("%@/%@/launchlock", volumes, components[prefix.size()]));
  }
  return false;
}

bool KTUtilitiesLaunching::installationMode() const {
  if (runningFromDistributionDisk()) return true;
  const Text path = services_.bundles.mainBundlePath();
  return path.contains("/AppTranslocation/") || path.contains("/var/tmp/");
}

Text KTUtilitiesLaunching::resolvedAlias(const Text& path) const {
  return services_.items.aliasTarget(path).value_or(path);
}

void KTUtilitiesLaunching::launchMicro(LeaveFocus leaveFocus) {
  if (desktop_.fullScreenMode()) return;
  const KTProcessPointer remembered = services_.processes.frontProcess();
  const FrontKeeper frontKeeper(remembered);
  // The helper is a courtesy: whatever goes wrong with it must not reach the caller.
  try {
    runMicro(remembered, leaveFocus);
  } catch (const std::exception& error) {
    services_.log("** Error while running Micro: %@", error.what());
  }
}

void KTUtilitiesLaunching::runMicro(const KTProcessPointer& remembered, LeaveFocus leaveFocus) {
  const OptionalText micro =
      services_.bundles.pathForResource(services_.bundles.mainBundlePath(), "Micro", "app");
  if (!micro) {
    services_.log("** Error while running Micro: %@", "the application has no such resource");
    return;
  }
  openFile(*micro);
  const int polls = pollUntil([&] { return !isFront(remembered); });
  services_.log("wait count (Micro) = %d", polls);
  if (remembered) {
    remembered->wakeUp();
    services_.clock.sleep(kWakeUpInterval);
    remembered->wakeUp();
    if (leaveFocus == LeaveFocus::No) remembered->setFrontProcessFrontWindowOnly();
  }
  pollUntil([&] { return isFront(remembered); });
}

// Null stands for an unknown process in front.
bool KTUtilitiesLaunching::isFront(const KTProcessPointer& process) const {
  const KTProcessPointer front = services_.processes.frontProcess();
  return front ? front->isEqual(process) : process == nullptr;
}

// How often it had to wait: `mostPolls` when the condition never came true.
template <typename Condition>
int KTUtilitiesLaunching::pollUntil(const Condition& condition) {
  int polls = 0;
  while (polls < kMostPolls && !condition()) {
    services_.clock.sleep(kPollInterval);
    ++polls;
  }
  return polls;
}

bool KTUtilitiesLaunching::wasLaunchedByProcess(const Text& creator) const {
  const auto information = services_.launchContext.launcherInformation();
  return information && textForKey(*information, "FileCreator") == creator;
}

bool KTUtilitiesLaunching::wasLaunchedAsLoginItem() const {
  return wasLaunchedByProcess(kLoginWindowCreator);
}

void KTUtilitiesLaunching::openFile(const Text& path) { services_.tasks.launchAndForget(kOpenTool, {path}); }

}  // namespace halvorn
