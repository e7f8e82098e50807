// No process is known, this one neither.
#pragma once

#include "Platform/processes/ProcessSource.h"

namespace halvorn {

class NullProcessSource : public ProcessSource {
 public:
  std::vector<ProcessSerialNumber> runningProcesses() override { return {}; }
  std::optional<ProcessSerialNumber> processForPID(std::int32_t) override { return std::nullopt; }
  std::optional<ProcessSerialNumber> currentProcess() override { return std::nullopt; }
  std::optional<ProcessSerialNumber> frontProcess() override { return std::nullopt; }
  bool sameProcess(ProcessSerialNumber a, ProcessSerialNumber b) override { return a == b; }
  std::optional<std::int32_t> pid(ProcessSerialNumber) override { return std::nullopt; }
  std::optional<ProcessInformation> information(ProcessSerialNumber) override { return std::nullopt; }
  OptionalText displayName(ProcessSerialNumber) override { return std::nullopt; }
  std::optional<PropertyDictionary> informationDictionary(ProcessSerialNumber) override {
    return std::nullopt;
  }
  OptionalText bundleLocation(ProcessSerialNumber) override { return std::nullopt; }
  std::optional<Date> startTime(std::int32_t) override { return std::nullopt; }
  Text processorTimeCommand() const override { return ": > %2$@"; }  // an empty file: no time is known
};

}  // namespace halvorn
