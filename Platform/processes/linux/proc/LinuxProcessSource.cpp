#include "Platform/processes/linux/proc/LinuxProcessSource.h"

#include <time.h>
#include <unistd.h>

#include "Platform/bundles/Workspace.h"
#include "Platform/processes/linux/proc/ProcFiles.h"
#include "Platform/processes/linux/proc/RunningApplications.h"
#include "Platform/processes/linux/proc/WindowSystem.h"

namespace halvorn {
namespace {

std::optional<ProcessSerialNumber> numberOf(const HeldApplicationPointer& application) {
  return application ? std::optional(application->number) : std::nullopt;
}

double secondsOn(clockid_t clock) {
  timespec time{};
  ::clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace

LinuxProcessSource::LinuxProcessSource(RunningApplications& applications, const ProcFiles& files,
                                       WindowSystem& windows, const Workspace& workspace)
    : applications_(applications), files_(files), windows_(windows), workspace_(workspace) {}

std::vector<ProcessSerialNumber> LinuxProcessSource::runningProcesses() {
  std::vector<ProcessSerialNumber> numbers;
  for (const auto& application : applications_.all()) numbers.push_back(application->number);
  return numbers;
}

std::optional<ProcessSerialNumber> LinuxProcessSource::processForPID(std::int32_t pid) {
  return numberOf(applications_.withPid(pid));
}

std::optional<ProcessSerialNumber> LinuxProcessSource::currentProcess() {
  return numberOf(applications_.thisProgram());
}

std::optional<ProcessSerialNumber> LinuxProcessSource::frontProcess() {
  const auto owner = windows_.activeOwner();
  return owner ? numberOf(applications_.withPid(*owner)) : std::nullopt;
}

std::optional<std::int32_t> LinuxProcessSource::pid(ProcessSerialNumber number) {
  const auto application = applications_.withNumber(number);
  return application ? std::optional<std::int32_t>(application->pid) : std::nullopt;
}

std::vector<bool> LinuxProcessSource::areRunning(const std::vector<ProcessSerialNumber>& numbers) {
  return applications_.areHeld(numbers);
}

std::optional<std::uint64_t> LinuxProcessSource::endsSeen() { return applications_.endsSeen(); }

std::optional<ProcessInformation> LinuxProcessSource::information(ProcessSerialNumber number) {
  const auto application = applications_.withNumber(number);
  if (!application) return std::nullopt;
  return ProcessInformation{application->program.name, application->program.signature};
}

OptionalText LinuxProcessSource::displayName(ProcessSerialNumber number) {
  const auto application = applications_.withNumber(number);
  if (!application || !application->program.isInBundle) return std::nullopt;
  return workspace_.displayName(*application->program.path);
}

std::optional<PropertyDictionary> LinuxProcessSource::informationDictionary(ProcessSerialNumber number) {
  const auto application = applications_.withNumber(number);
  if (!application) return std::nullopt;
  return application->program.information ? *application->program.information : PropertyDictionary();
}

OptionalText LinuxProcessSource::bundleLocation(ProcessSerialNumber number) {
  const auto application = applications_.withNumber(number);
  return application ? application->program.path : std::nullopt;
}

std::optional<Date> LinuxProcessSource::startTime(ProcessSerialNumber number) {
  const auto application = applications_.withNumber(number);
  if (!application) return std::nullopt;
  const double sinceStart =
      static_cast<double>(application->hold.startTicks()) / static_cast<double>(::sysconf(_SC_CLK_TCK));
  return Date{secondsOn(CLOCK_REALTIME) - secondsOn(CLOCK_BOOTTIME) + sinceStart};
}

// `ps` has no such column here, so the shell reads the process table itself. The name may hold anything, so
// fields are counted after the last parenthesis; the one wanted is the twelfth then.
Text LinuxProcessSource::processorTimeCommand() const {
  return "{ s=$(cat /proc/%1$d/stat) && set -f && set -- ${s##*) } && hz=$(getconf CLK_TCK) && "
         "printf '%%d:%%02d.%%02d\\n' $((${12} / hz / 60)) $((${12} / hz %% 60)) $((${12} %% hz * 100 / "
         "hz)); "
         "} 2>/dev/null > %2$@";
}

}  // namespace halvorn
