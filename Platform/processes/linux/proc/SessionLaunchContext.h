// Who started this program: its parent, or the session at login.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Platform/processes/LaunchContext.h"
#include "Platform/processes/ProcessSource.h"
#include "Platform/session/linux/Environment.h"

namespace halvorn {

class SessionLaunchContext : public LaunchContext {
 public:
  SessionLaunchContext(ProcessSource& processes, const Environment& environment);

  // The launcher is the parent process, when that is an application of this user. It has the creator "lgnw"
  // when it starts the session's autostart entries: the session manager, or the service manager with a unit
  // for the entry. What this library's own opener started is no child of the launcher, but carries its mark.
  // Any other program that was started detached has no launcher that could be told.
  std::optional<PropertyDictionary> launcherInformation() const override;

  // For tests: the folder with the process table, and the number of the parent.
  SessionLaunchContext(ProcessSource& processes, const Environment& environment,
                       const std::string& procFolder, std::function<std::int32_t()> parent);

 private:
  [[nodiscard]] bool startedBySessionManager(std::int32_t parent) const;
  [[nodiscard]] bool startedByAutostartUnit(std::int32_t parent) const;
  [[nodiscard]] std::optional<ProcessSerialNumber> launcher(std::int32_t parent) const;
  [[nodiscard]] std::optional<ProcessSerialNumber> launcherInMark() const;
  [[nodiscard]] std::string unitOf(const std::string& process) const;

  ProcessSource& processes_;
  Environment environment_;
  std::string procFolder_;
  std::function<std::int32_t()> parent_;
};

}  // namespace halvorn
