// A desktop of made-up applications: the process table, its events and the control over it.
//
//   FakeApplications applications(clock);
//   FakeApplication& editor = applications.start({.name = "Editor", .signature = fourCharCode("EDIT"), .pid =
//   200}); editor.quitting = FakeApplication::Quitting::OnlyByForce;
//
// Time is that of the clock: an application that takes half a second to quit is gone half a second later.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/processes/ApplicationControl.h"
#include "Platform/processes/ApplicationEvents.h"
#include "Platform/processes/ProcessSource.h"
#include "Platform/running/Clock.h"

namespace halvorn {

struct FakeApplication {
  enum class Quitting {
    WhenAsked,    // `secondsToQuit` after the first request
    OnlyByForce,  // as long after a forced one
    Never,
    // Ends by itself just before the first request, or the first forced one, reaches it.
    VanishesWhenAsked,
    VanishesWhenForced,
  };

  Text name = "Application";
  FourCharCode signature = fourCharCode("APPL");
  OptionalText path = {};  // of its bundle
  std::int32_t pid = 0;    // 0: the next free one
  Text identifier = {};
  Quitting quitting = Quitting::WhenAsked;
  double secondsToQuit = 0;

  OptionalText displayName = {};
  std::optional<std::string> macRomanName = {};  // in place of `name`
  std::optional<PropertyDictionary> info = {};   // in place of one made from `identifier`
  std::optional<Date> startTime = Date{1'600'000'000.0};
  bool informationFails = false;
  bool isHidden = false;

  // What was asked of it, in order: "terminate", "forceTerminate", "front", "front
  // window", "hide", "show", "wake".
  std::vector<std::string> requests = {};

  ProcessSerialNumber number = {};
  std::optional<double> endsAt = {};  // on the clock
};

class FakeApplications : public ProcessSource, public ApplicationEvents, public ApplicationControl {
 public:
  explicit FakeApplications(const Clock& clock) : clock_(clock) {
    current = start({.name = "Installer", .signature = fourCharCode("InSt"), .pid = 100}).number;
  }

  // --- the test's side. References stay valid.

  // Starts an application without any event being delivered.
  FakeApplication& start(FakeApplication application) {
    if (application.pid == 0) application.pid = nextPid_;
    nextPid_ = std::max(nextPid_, application.pid) + 1;
    application.number = {++started_, static_cast<std::uint32_t>(application.pid)};
    applications_.push_back(std::move(application));
    return applications_.back();
  }
  // Ends it, whatever it does about quitting.
  void end(FakeApplication& application) { application.endsAt = clock_.monotonicSeconds(); }
  // Sends one event of that kind to the handler.
  void deliver(int kind) {
    if (handler) handler(kind);
  }
  FakeApplication& launch(FakeApplication application) {
    FakeApplication& launched = start(std::move(application));
    deliver(kApplicationLaunchedEvent);
    return launched;
  }
  void endAndTell(FakeApplication& application) {
    end(application);
    deliver(kApplicationTerminatedEvent);
  }
  void switchFront(const FakeApplication& application) {
    front = application.number;
    deliver(kFrontApplicationSwitchedEvent);
  }
  // What was asked of this program itself.
  [[nodiscard]] const std::vector<std::string>& requestsOfInstaller() const {
    return applications_.front().requests;
  }
  [[nodiscard]] const std::vector<std::string>& requestsOf(ProcessSerialNumber number) const {
    return std::find_if(applications_.begin(), applications_.end(),
                        [&](const FakeApplication& application) { return application.number == number; })
        ->requests;
  }
  [[nodiscard]] bool isRunning(const FakeApplication& application) const {
    return !application.endsAt || *application.endsAt > clock_.monotonicSeconds();
  }

  std::optional<ProcessSerialNumber> current;
  std::optional<ProcessSerialNumber> front;
  std::function<void(int)> handler;
  int handlersInstalled = 0;
  bool canEndApplications = true;
  bool findsRunningApplications = true;
  // When set, what the system says instead of comparing the numbers.
  std::function<bool(ProcessSerialNumber, ProcessSerialNumber)> isSame;
  std::function<void()> onList;  // called inside runningProcesses()
  std::function<void()> onPid;   // called inside pid(), once the answer is known
  bool countsEnds = false;       // whether endsSeen() answers
  // The system's order is its own: here that of starting, or the other way round.
  enum class ListOrder { OldestFirst, NewestFirst } listOrder = ListOrder::OldestFirst;

  // --- the platform's side

  std::vector<ProcessSerialNumber> runningProcesses() override {
    if (onList) onList();
    std::vector<ProcessSerialNumber> numbers;
    for (const FakeApplication& application : applications_) {
      if (isRunning(application)) numbers.push_back(application.number);
    }
    if (listOrder == ListOrder::NewestFirst) std::reverse(numbers.begin(), numbers.end());
    return numbers;
  }
  std::optional<ProcessSerialNumber> processForPID(std::int32_t pid) override {
    const FakeApplication* found = withPid(pid);
    return found != nullptr ? std::optional(found->number) : std::nullopt;
  }
  std::optional<ProcessSerialNumber> currentProcess() override { return current; }
  std::optional<ProcessSerialNumber> frontProcess() override { return front; }
  bool sameProcess(ProcessSerialNumber a, ProcessSerialNumber b) override {
    if (isSame) return isSame(a, b);
    return a == b;
  }
  std::optional<std::uint64_t> endsSeen() override {
    if (!countsEnds) return std::nullopt;
    return std::count_if(applications_.begin(), applications_.end(),
                         [&](const FakeApplication& application) { return !isRunning(application); });
  }
  std::optional<std::int32_t> pid(ProcessSerialNumber number) override {
    const FakeApplication* found = running(number);
    const auto answer = found != nullptr ? std::optional(found->pid) : std::nullopt;
    if (onPid) onPid();
    return answer;
  }
  std::optional<ProcessInformation> information(ProcessSerialNumber number) override {
    const FakeApplication* found = running(number);
    if (found == nullptr || found->informationFails) return std::nullopt;
    if (found->macRomanName) return ProcessInformation{MacRomanName{*found->macRomanName}, found->signature};
    return ProcessInformation{found->name, found->signature};
  }
  OptionalText displayName(ProcessSerialNumber number) override {
    const FakeApplication* found = running(number);
    return found != nullptr ? found->displayName : std::nullopt;
  }
  std::optional<PropertyDictionary> informationDictionary(ProcessSerialNumber number) override {
    const FakeApplication* found = running(number);
    if (found == nullptr) return std::nullopt;
    if (found->info) return found->info;
    if (found->identifier.isEmpty()) return PropertyDictionary();
    return PropertyDictionary{{"CFBundleIdentifier", found->identifier}};
  }
  OptionalText bundleLocation(ProcessSerialNumber number) override {
    const FakeApplication* found = running(number);
    return found != nullptr ? found->path : std::nullopt;
  }
  std::optional<Date> startTime(ProcessSerialNumber number) override {
    const FakeApplication* found = running(number);
    return found != nullptr ? found->startTime : std::nullopt;
  }
  Text processorTimeCommand() const override { return "ps -o utime= -p %1$d > %2$@"; }

  void installHandler(std::function<void(int)> newHandler) override {
    handler = std::move(newHandler);
    ++handlersInstalled;
  }

  bool hasRunningApplications() const override { return canEndApplications; }
  std::unique_ptr<RunningApplication> runningApplication(ProcessSerialNumber number) override {
    FakeApplication* found = running(number);
    if (found == nullptr || !findsRunningApplications) return nullptr;
    return std::make_unique<Running>(*this, *found);
  }
  void setFront(ProcessSerialNumber number, BringForward windows) override {
    if (!note(number, windows == BringForward::AllWindows ? "front" : "front window")) return;
    front = number;
  }
  void setVisible(ProcessSerialNumber number, Visible visible) override {
    if (note(number, visible == Visible::Yes ? "show" : "hide"))
      running(number)->isHidden = visible == Visible::No;
  }
  void wakeUp(ProcessSerialNumber number) override { note(number, "wake"); }
  std::optional<bool> isHidden(ProcessSerialNumber number) override {
    const FakeApplication* found = running(number);
    return found != nullptr ? std::optional(found->isHidden) : std::nullopt;
  }

 private:
  class Running : public RunningApplication {
   public:
    Running(FakeApplications& owner, FakeApplication& application)
        : owner_(owner), application_(application) {}
    bool terminate() override {
      if (application_.quitting == FakeApplication::Quitting::VanishesWhenAsked) owner_.end(application_);
      if (isTerminated()) return false;
      application_.requests.emplace_back("terminate");
      if (application_.quitting == FakeApplication::Quitting::WhenAsked) endSoon();
      return true;
    }
    bool forceTerminate() override {
      if (application_.quitting == FakeApplication::Quitting::VanishesWhenForced) owner_.end(application_);
      if (isTerminated()) return false;
      application_.requests.emplace_back("forceTerminate");
      if (application_.quitting != FakeApplication::Quitting::Never) endSoon();
      return true;
    }
    bool isTerminated() override { return !owner_.isRunning(application_); }

   private:
    void endSoon() {
      if (!application_.endsAt) {
        application_.endsAt = owner_.clock_.monotonicSeconds() + application_.secondsToQuit;
      }
    }
    FakeApplications& owner_;
    FakeApplication& application_;
  };

  bool note(ProcessSerialNumber number, const char* request) {
    for (FakeApplication& application : applications_) {
      if (application.number != number || !isRunning(application)) continue;
      application.requests.emplace_back(request);
      return true;
    }
    return false;
  }
  [[nodiscard]] FakeApplication* running(ProcessSerialNumber number) {
    for (FakeApplication& application : applications_) {
      if (application.number == number && isRunning(application)) return &application;
    }
    return nullptr;
  }
  [[nodiscard]] FakeApplication* withPid(std::int32_t pid) {
    for (FakeApplication& application : applications_) {
      if (application.pid == pid && isRunning(application)) return &application;
    }
    return nullptr;
  }

  const Clock& clock_;
  std::deque<FakeApplication> applications_;
  std::uint32_t started_ = 0;
  std::int32_t nextPid_ = 100;
};

}  // namespace halvorn
