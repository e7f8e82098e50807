// A session in which no application is known.
#pragma once

#include "Platform/processes/Accessibility.h"
#include "Platform/processes/AppleEvents.h"
#include "Platform/processes/ApplicationControl.h"
#include "Platform/processes/ApplicationEvents.h"
#include "Platform/processes/LaunchContext.h"
#include "Platform/processes/ProcessSource.h"

namespace halvorn {

// No process is known, this one neither.
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
  std::optional<Date> startTime(ProcessSerialNumber) override { return std::nullopt; }
  Text processorTimeCommand() const override { return ": > %2$@"; }  // an empty file: no time is known
};

// No application is ended, moved or woken.
class NullApplicationControl : public ApplicationControl {
 public:
  bool hasRunningApplications() const override { return false; }
  std::unique_ptr<RunningApplication> runningApplication(ProcessSerialNumber) override { return nullptr; }
  void setFront(ProcessSerialNumber, BringForward) override {}
  void setVisible(ProcessSerialNumber, Visible) override {}
  void wakeUp(ProcessSerialNumber) override {}
  std::optional<bool> isHidden(ProcessSerialNumber) override { return std::nullopt; }
};

// Nothing ever happens.
class NullApplicationEvents : public ApplicationEvents {
 public:
  void installHandler(std::function<void(int)>) override {}
};

// Events reach nobody.
class NullAppleEvents : public AppleEvents {
 public:
  ThingOrStatus<EventAddress> addressOf(ProcessSerialNumber) override { return kNoSuchProcessStatus; }
  ThingOrStatus<AppleEvent> createEvent(FourCharCode, FourCharCode, const EventAddress&) override {
    return kEventNotHandledStatus;
  }
};

// No application can be watched.
class NullAccessibility : public Accessibility {
 public:
  AccessibilityElementPointer createApplicationElement(ProcessSerialNumber) override { return nullptr; }
  std::unique_ptr<AccessibilityObserver> createObserver(ProcessSerialNumber, Callback) override {
    return nullptr;
  }
};

// Nothing is known of who started this program.
class NullLaunchContext : public LaunchContext {
 public:
  std::optional<PropertyDictionary> launcherInformation() const override { return std::nullopt; }
};

}  // namespace halvorn
