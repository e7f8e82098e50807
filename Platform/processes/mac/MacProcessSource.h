// The running applications, as the Process Manager lists them.
#pragma once

#include "Platform/processes/ProcessSource.h"

namespace halvorn {

class MacProcessSource : public ProcessSource {
 public:
  std::vector<ProcessSerialNumber> runningProcesses() override;
  std::optional<ProcessSerialNumber> processForPID(std::int32_t pid) override;
  std::optional<ProcessSerialNumber> currentProcess() override;
  std::optional<ProcessSerialNumber> frontProcess() override;
  bool sameProcess(ProcessSerialNumber a, ProcessSerialNumber b) override;
  std::optional<std::int32_t> pid(ProcessSerialNumber number) override;
  std::optional<ProcessInformation> information(ProcessSerialNumber number) override;
  OptionalText displayName(ProcessSerialNumber number) override;
  std::optional<PropertyDictionary> informationDictionary(ProcessSerialNumber number) override;
  OptionalText bundleLocation(ProcessSerialNumber number) override;
  std::optional<Date> startTime(ProcessSerialNumber number) override;
  [[nodiscard]] Text processorTimeCommand() const override;
};

}  // namespace halvorn
