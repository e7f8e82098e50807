// The process table of this user's desktop session.
// Why: docs/decisions/012-process-identity.md
#pragma once

#include "Platform/processes/ProcessSource.h"

namespace halvorn {

class ProcFiles;
class RunningApplications;
class WindowSystem;
class Workspace;

class LinuxProcessSource : public ProcessSource {
 public:
  LinuxProcessSource(RunningApplications& applications, const ProcFiles& files, WindowSystem& windows,
                     const Workspace& workspace);

  std::vector<ProcessSerialNumber> runningProcesses() override;
  std::optional<ProcessSerialNumber> processForPID(std::int32_t pid) override;
  std::optional<ProcessSerialNumber> currentProcess() override;
  std::optional<ProcessSerialNumber> frontProcess() override;
  bool sameProcess(ProcessSerialNumber a, ProcessSerialNumber b) override { return a == b; }
  std::optional<std::int32_t> pid(ProcessSerialNumber number) override;
  std::vector<bool> areRunning(const std::vector<ProcessSerialNumber>& numbers) override;
  std::optional<std::uint64_t> endsSeen() override;
  std::optional<ProcessInformation> information(ProcessSerialNumber number) override;
  OptionalText displayName(ProcessSerialNumber number) override;
  std::optional<PropertyDictionary> informationDictionary(ProcessSerialNumber number) override;
  OptionalText bundleLocation(ProcessSerialNumber number) override;
  std::optional<Date> startTime(ProcessSerialNumber number) override;
  Text processorTimeCommand() const override;

 private:
  RunningApplications& applications_;
  const ProcFiles& files_;
  WindowSystem& windows_;
  const Workspace& workspace_;
};

}  // namespace halvorn
