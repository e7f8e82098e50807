// Made-up applications, and real ones on a real desktop.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <utility>

#include "tests/fakes/FakeProcesses.h"
#include "tests/processes/contract/ProcessWorlds.h"
#include "tests/support/Desktop.h"
#include "tests/support/LiveProcesses.h"
#include "tests/support/OwnProcesses.h"
#include "tests/support/ZooBundle.h"

namespace halvorn {
namespace {

class FakeWorld : public ProcessWorld {
 public:
  FakeWorld() { fake_.processes.installNotifications(); }
  std::int32_t start(const Animal& animal) override {
    const FourCharCode code = animal.code.empty() ? 0x01020304 : fourCharCodeFromText(animal.code);
    FakeApplication& started = fake_.applications.launch(
        {.name = animal.name,
         .signature = code,
         .path = Text(pathOf(animal.name)),
         .identifier = Text("org.example." + animal.name),
         .quitting = animal.ignoresRequests ? FakeApplication::Quitting::OnlyByForce
                                            : FakeApplication::Quitting::WhenAsked});
    alive_.push_back(&started);
    return started.pid;
  }
  void end(std::int32_t pid) override {
    for (FakeApplication* application : alive_) {
      if (application->pid == pid) fake_.applications.end(*application);
    }
  }
  bool settles(const std::function<bool()>& condition) override {
    std::erase_if(alive_, [&](const FakeApplication* application) {
      const bool hasEnded = !fake_.applications.isRunning(*application);
      if (hasEnded) fake_.applications.deliver(kApplicationTerminatedEvent);
      return hasEnded;
    });
    if (fake_.applications.front != front_) fake_.applications.deliver(kFrontApplicationSwitchedEvent);
    front_ = fake_.applications.front;
    fake_.mainThread.becomeIdle();
    return condition();
  }
  KTProcessClass& processes() override { return fake_.processes; }
  ProcessSource& source() override { return fake_.applications; }
  ApplicationControl& control() override { return fake_.applications; }
  Strings logLines() override { return fake_.log.lines(); }
  std::string pathOf(const std::string& name) override { return "/Applications/" + name + ".app"; }

 private:
  FakeProcesses fake_;
  std::vector<FakeApplication*> alive_;
  std::optional<ProcessSerialNumber> front_;
  std::unique_ptr<Notifications::Observation> observation_ = fake_.notifications.addObserver(
      KTProcessChangeNotification, nullptr,
      [this](const Notification& notification) { changes.push_back(notification.text("change")->bytes()); });
};

class LiveWorld : public ProcessWorld {
 public:
  LiveWorld(const DesktopParts& parts, Strings habits, ToldOfWindows told = ToldOfWindows::Everything)
      : desktop_(parts),
        habits_(std::move(habits)),
        told_(told),
        tilesWindows_(parts.compositor == Compositor::Sway) {
    live_.processes.installNotifications();
    live_.loop.runFor(0.01);
  }
  std::int32_t start(const Animal& animal) override {
    std::map<std::string, std::string> info = {{"CFBundleIdentifier", "org.example." + animal.name}};
    if (!animal.code.empty()) info["CFBundleSignature"] = animal.code;
    const std::string program = makeBundle(folder_.path(), {.name = animal.name, .info = info});
    Strings arguments = {program, "--windows", "1"};
    arguments.insert(arguments.end(), habits_.begin(), habits_.end());
    if (animal.ignoresRequests) arguments.emplace_back("--ignores-term");
    children_.emplace_back(arguments, ChildOptions{.environment = desktop_.environment()});
    ChildProcess& child = children_.back();
    own_.add(child.pid());
    EXPECT_EQ(child.readLine(kTestPatience), "ready");
    // The window manager lists a new window first and then gives it the focus.
    EXPECT_TRUE(live_.settles([&] {
      return told_ == ToldOfWindows::Everything ? live_.windows.activeOwner() == child.pid()
                                                : isListed(child.pid());
    }));
    return child.pid();
  }
  void end(std::int32_t pid) override {
    for (ChildProcess& child : children_) {
      if (child.pid() == pid) child.end(SIGKILL);
    }
  }
  bool settles(const std::function<bool()>& condition) override { return live_.settles(condition); }
  bool hidesWindows() const override { return !tilesWindows_; }
  KTProcessClass& processes() override { return live_.processes; }
  ProcessSource& source() override { return live_.source; }
  ApplicationControl& control() override { return live_.control; }
  // Without what is said once of a desktop that tells nothing.
  Strings logLines() override {
    Strings lines = live_.log.lines();
    if (told_ == ToldOfWindows::Nothing && !lines.empty() &&
        lines[0].starts_with("This desktop tells nothing"))
      lines.erase(lines.begin());
    return lines;
  }
  std::string pathOf(const std::string& name) override { return folder_ / (name + ".app"); }

 private:
  [[nodiscard]] bool isListed(std::int32_t pid) {
    const auto numbers = live_.source.runningProcesses();
    return std::any_of(numbers.begin(), numbers.end(),
                       [&](ProcessSerialNumber number) { return live_.source.pid(number) == pid; });
  }

  TemporaryFolder folder_;
  Desktop desktop_;
  const Strings habits_;
  const ToldOfWindows told_;
  const bool tilesWindows_;
  OwnProcesses own_;
  LiveProcesses live_{{.display = desktop_.displayName(),
                       .waylandSocket = desktop_.waylandSocket(),
                       .bus = desktop_.busAddress(),
                       .table = own_.path()}};
  std::deque<ChildProcess> children_;
  std::unique_ptr<Notifications::Observation> observation_ = live_.notifications.addObserver(
      KTProcessChangeNotification, nullptr,
      [this](const Notification& notification) { changes.push_back(notification.text("change")->bytes()); });
};

constexpr DesktopParts kX11{.bus = false};
constexpr DesktopParts kWayland{.bus = false, .compositor = Compositor::Sway};
constexpr DesktopParts kKWin{.compositor = Compositor::KWin};
constexpr DesktopParts kXKWin{.compositor = Compositor::KWin, .xClients = true};
constexpr DesktopParts kGnome{.compositor = Compositor::Gnome};
constexpr DesktopParts kWeston{.bus = false, .compositor = Compositor::Weston};
constexpr DesktopParts kXWayland{.bus = false, .compositor = Compositor::Sway, .xClients = true};

std::unique_ptr<ProcessWorld> makeFake() { return std::make_unique<FakeWorld>(); }
std::unique_ptr<ProcessWorld> makeX11() { return std::make_unique<LiveWorld>(kX11, Strings{}); }
std::unique_ptr<ProcessWorld> makeWayland() { return std::make_unique<LiveWorld>(kWayland, Strings{}); }
std::unique_ptr<ProcessWorld> makeKWin() { return std::make_unique<LiveWorld>(kKWin, Strings{}); }
std::unique_ptr<ProcessWorld> makeGnome() {
  return std::make_unique<LiveWorld>(kGnome, Strings{}, ToldOfWindows::Nothing);
}
std::unique_ptr<ProcessWorld> makeWeston() {
  return std::make_unique<LiveWorld>(kWeston, Strings{}, ToldOfWindows::Nothing);
}
std::unique_ptr<ProcessWorld> makeXKWin() {
  return std::make_unique<LiveWorld>(kXKWin, Strings{"--x-windows"});
}
std::unique_ptr<ProcessWorld> makeXWayland() {
  return std::make_unique<LiveWorld>(kXWayland, Strings{"--x-windows"});
}
std::optional<std::string> nothing() { return std::nullopt; }
std::optional<std::string> noX11() { return Desktop::missing(kX11); }
std::optional<std::string> noWayland() { return Desktop::missing(kWayland); }
std::optional<std::string> noKWin() { return Desktop::missing(kKWin); }
std::optional<std::string> noGnome() { return Desktop::missing(kGnome); }
std::optional<std::string> noWeston() { return Desktop::missing(kWeston); }
std::optional<std::string> noXKWin() { return Desktop::missing(kXKWin); }
std::optional<std::string> noXWayland() { return Desktop::missing(kXWayland); }

}  // namespace

const std::vector<NamedProcessWorld>& processWorlds() {
  static const std::vector<NamedProcessWorld> worlds = {
      {"Fake", nothing, makeFake},
      {"X11", noX11, makeX11},
      {"Wayland", noWayland, makeWayland},
      {"XWayland", noXWayland, makeXWayland},
      {"KWin", noKWin, makeKWin},
      {"XKWin", noXKWin, makeXKWin},
      {"Gnome", noGnome, makeGnome, ToldOfWindows::Nothing},
      {"Weston", noWeston, makeWeston, ToldOfWindows::Nothing}};
  return worlds;
}

}  // namespace halvorn
