// The adapters of macOS, on a macOS that a test makes up.
#include <gtest/gtest.h>

#include "Platform/processes/mac/MacAccessibility.h"
#include "Platform/processes/mac/MacAppleEvents.h"
#include "Platform/processes/mac/MacApplicationControl.h"
#include "Platform/processes/mac/MacApplicationEvents.h"
#include "Platform/processes/mac/MacProcessSource.h"
#include "tests/fakes/FakeProcesses.h"
#include "tests/mac/frameworks/FakeMac.h"
#include "tests/processes/contract/ProcessWorlds.h"

namespace halvorn {
namespace {

class MacWorld : public ProcessWorld {
 public:
  MacWorld() {
    fakemac::reset();
    adapters_ = std::make_unique<Adapters>(rest_, changes);
    adapters_->processes.installNotifications();
  }
  ~MacWorld() override {
    adapters_.reset();
    EXPECT_EQ(fakemac::liveObjects(), 0);
    EXPECT_EQ(fakemac::installedHandlers(), 0U);
  }
  std::int32_t start(const Animal& animal) override {
    fakemac::Application application = {
        .name = animal.name,
        .path = pathOf(animal.name),
        .information = {{"CFBundleIdentifier", "org.example." + animal.name}}};
    if (!animal.code.empty()) application.signature = fourCharCodeFromText(animal.code);
    if (animal.ignoresRequests) application.quitting = fakemac::Application::Quitting::OnlyByForce;
    const std::int32_t pid = fakemac::start(application).pid;
    fakemac::serve();
    return pid;
  }
  void end(std::int32_t pid) override { fakemac::end(*fakemac::withPid(pid)); }
  bool settles(const std::function<bool()>& condition) override {
    fakemac::serve();
    rest_.mainThread.becomeIdle();
    return condition();
  }
  KTProcessClass& processes() override { return adapters_->processes; }
  ProcessSource& source() override { return adapters_->source; }
  ApplicationControl& control() override { return adapters_->control; }
  Strings logLines() override { return rest_.log.lines(); }
  std::string pathOf(const std::string& name) override { return "/Applications/" + name + ".app"; }

 private:
  // With what else a process model stands on.
  struct Adapters {
    Adapters(FakeProcesses& rest, Strings& changes)
        : processes({.source = source,
                     .events = events,
                     .control = control,
                     .appleEvents = appleEvents,
                     .accessibility = accessibility,
                     .notifications = rest.notifications,
                     .bundles = rest.bundles,
                     .items = rest.items,
                     .files = rest.files,
                     .images = images,
                     .tasks = rest.tasks,
                     .unicode = rest.unicode,
                     .digests = rest.digests,
                     .codes = rest.codes,
                     .clock = rest.clock,
                     .log = rest.log}),
          observation(rest.notifications.addObserver(
              KTProcessChangeNotification, nullptr, [&changes](const Notification& notification) {
                changes.push_back(notification.text("change")->bytes());
              })) {}

    MacProcessSource source;
    MacApplicationEvents events;
    MacApplicationControl control;
    MacAppleEvents appleEvents;
    MacAccessibility accessibility;
    NullImages images;
    KTProcessClass processes;
    std::unique_ptr<Notifications::Observation> observation;
  };

  FakeProcesses rest_;
  std::unique_ptr<Adapters> adapters_;
};

std::optional<std::string> nothing() { return std::nullopt; }
std::unique_ptr<ProcessWorld> makeMacWorld() { return std::make_unique<MacWorld>(); }

}  // namespace

const std::vector<NamedProcessWorld>& processWorlds() {
  static const std::vector<NamedProcessWorld> worlds = {{"Mac", nothing, makeMacWorld}};
  return worlds;
}

}  // namespace halvorn
