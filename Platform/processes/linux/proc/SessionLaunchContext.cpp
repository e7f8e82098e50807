#include "Platform/processes/linux/proc/SessionLaunchContext.h"

#include <unistd.h>

#include <fstream>
#include <sstream>
#include <utility>

#include "Platform/bundles/linux/launching/Launching.h"

namespace halvorn {

namespace {

const Text creatorKey = "FileCreator";
const Text loginWindowCreator = "lgnw";

std::string lastPart(const std::string& text) { return text.substr(text.rfind('/') + 1); }

}  // namespace

SessionLaunchContext::SessionLaunchContext(ProcessSource& processes, const Environment& environment)
    : SessionLaunchContext(processes, environment, "/proc", ::getppid) {}

SessionLaunchContext::SessionLaunchContext(ProcessSource& processes, const Environment& environment,
                                           const std::string& procFolder,
                                           std::function<std::int32_t()> parent)
    : processes_(processes), environment_(environment), procFolder_(procFolder), parent_(std::move(parent)) {}

std::optional<PropertyDictionary> SessionLaunchContext::launcherInformation() const {
  const std::int32_t parent = parent_();
  if (startedBySessionManager(parent) || startedByAutostartUnit(parent)) {
    return PropertyDictionary{{creatorKey, loginWindowCreator}};
  }
  const auto number = launcher(parent);
  if (!number) return std::nullopt;
  const auto information = processes_.information(*number);
  if (!information) return std::nullopt;
  PropertyDictionary result = processes_.informationDictionary(*number).value_or(PropertyDictionary());
  result.insert_or_assign(creatorKey, textFromFourCharCode(information->signature));
  return result;
}

std::optional<ProcessSerialNumber> SessionLaunchContext::launcher(std::int32_t parent) const {
  if (const auto marked = launcherInMark()) return marked;
  const auto number = processes_.processForPID(parent);
  // The parent may have ended meanwhile and its id been given to another process.
  return parent_() == parent ? number : std::nullopt;
}

// "OWN-ID LAUNCHER". Programs that this one's launcher did not start itself inherit the mark, but not the id.
std::optional<ProcessSerialNumber> SessionLaunchContext::launcherInMark() const {
  const auto mark = environment_.value(kLaunchMarkVariable);
  const auto own = mark ? processes_.currentProcess() : std::nullopt;
  if (!own) return std::nullopt;
  std::istringstream words(*mark);
  std::uint32_t markedId = 0;
  std::int32_t launcherId = 0;
  if (!(words >> markedId >> launcherId) || markedId != own->low) return std::nullopt;
  const auto number = processes_.processForPID(launcherId);
  // Whoever has got the id of a launcher that is gone started later than this program.
  const bool startedBefore = number && static_cast<std::int32_t>(own->high - number->high) > 0;
  return startedBefore ? number : std::nullopt;
}

// The variable names the sockets of the session manager, which end in its process id:
// "local/host:@/tmp/.ICE-unix/1234,unix/host:/tmp/.ICE-unix/1234".
bool SessionLaunchContext::startedBySessionManager(std::int32_t parent) const {
  const auto sockets = environment_.value("SESSION_MANAGER");
  return sockets && parent > 1 && lastPart(*sockets) == std::to_string(parent);
}

// The service manager runs each entry in a unit named after it. Programs that those start stay in the unit,
// but their parent is in it too.
bool SessionLaunchContext::startedByAutostartUnit(std::int32_t parent) const {
  const std::string unit = unitOf("self");
  return unit.starts_with("app-") && unit.ends_with("@autostart.service") &&
         unitOf(std::to_string(parent)) != unit;
}

std::string SessionLaunchContext::unitOf(const std::string& process) const {
  std::ifstream file(procFolder_ + "/" + process + "/cgroup");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("0::") || line.find(":name=systemd:") != std::string::npos) return lastPart(line);
  }
  return "";
}

}  // namespace halvorn
