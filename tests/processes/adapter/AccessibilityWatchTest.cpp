// Watching a real program over an accessibility bus of the test's own.
#include "Platform/processes/linux/atspi/AtSpiAccessibility.h"

#include <map>

#include "Platform/processes/linux/atspi/AtSpiEvents.h"
#include "tests/processes/adapter/LiveFixture.h"

namespace halvorn {
namespace {

// What makes the watched programs tell it: two lines of input, in turn.
const std::map<std::string, std::pair<std::string, std::string>> kCauses = {
    {"AXApplicationActivated", {"open", "close"}},
    {"AXApplicationDeactivated", {"open", "close"}},
    {"AXFocusedUIElementChanged", {"focus second", "focus first"}},
    {"AXFocusedWindowChanged", {"open", "close"}},
    {"AXMainWindowChanged", {"open", "close"}},
    {"AXCreated", {"add", "remove"}},
    {"AXWindowCreated", {"open", "close"}},
    {"AXWindowMiniaturized", {"minimise", "restore"}},
    {"AXWindowDeminiaturized", {"minimise", "restore"}},
    {"AXMoved", {"resize big", "resize small"}},
    {"AXResized", {"resize big", "resize small"}},
    {"AXUIElementDestroyed", {"add", "remove"}},
    {"AXValueChanged", {"check on", "check off"}},
    {"AXTitleChanged", {"rename a", "rename b"}},
    {"AXSelectedTextChanged", {"type marked", "mark all"}},
    {"AXSelectedChildrenChanged", {"row 0", "row 1"}},
    {"AXSelectedRowsChanged", {"row 0", "row 1"}},
};

// The names that the class library has for what happens in an interface.
const std::vector<std::string> kClassNames = {"AXApplicationActivated",
                                              "AXApplicationDeactivated",
                                              "AXApplicationHidden",
                                              "AXApplicationShown",
                                              "AXAnnouncementRequested",
                                              "AXCreated",
                                              "AXDrawerCreated",
                                              "AXFocusedUIElementChanged",
                                              "AXFocusedWindowChanged",
                                              "AXHelpTagCreated",
                                              "AXMainWindowChanged",
                                              "AXMenuClosed",
                                              "AXMenuItemSelected",
                                              "AXMenuOpened",
                                              "AXMoved",
                                              "AXResized",
                                              "AXRowCountChanged",
                                              "AXSelectedChildrenChanged",
                                              "AXSelectedColumnsChanged",
                                              "AXSelectedRowsChanged",
                                              "AXSelectedTextChanged",
                                              "AXSheetCreated",
                                              "AXTitleChanged",
                                              "AXUIElementDestroyed",
                                              "AXValueChanged",
                                              "AXWindowCreated",
                                              "AXWindowDeminiaturized",
                                              "AXWindowMiniaturized",
                                              "AXWindowMoved",
                                              "AXWindowResized"};

class AccessibilityWatch : public LiveFixture {
 protected:
  void SetUp() override {
    startDesktop({.accessibility = true});
    if (!desktop) return;
    useBus(desktop->busAddress());
    start({KT_WATCHED_PROGRAM});
  }
  void start(const Strings& arguments) {
    program = &launch(arguments);
    ASSERT_EQ(program->readLine(kTestPatience), "ready") << program->output();
    watched = process(*program);
    ASSERT_NE(watched, nullptr);
    // It joins the bus a moment after it has shown its window.
    ASSERT_TRUE(live->settles([&] {
      return accessibility->createApplicationElement(watched->serialNumber()) != nullptr;
    })) << "not on the accessibility bus";
  }
  // Every name that is accepted for programs of that toolkit is heard; every other one is refused.
  void hearEveryName(AtSpiToolkit toolkit) {
    for (const std::string& name : notificationsOf(toolkit)) {
      const auto found = kCauses.find(name);
      ASSERT_NE(found, kCauses.end()) << name << " is accepted, but nothing here makes it happen";
      SCOPED_TRACE(name);
      listen(name.c_str(), found->second.first, found->second.second);
      watched->removeAXNotification(name.c_str());
      for (const char* line : {"close", "restore"}) tell(line);
    }
    EXPECT_EQ(live->log.lines(), Strings{});
    for (const std::string& name : kClassNames) {
      const auto accepted = notificationsOf(toolkit);
      if (std::find(accepted.begin(), accepted.end(), name) != accepted.end()) continue;
      live->log.clear();
      watched->addAXNotification(name.c_str());
      EXPECT_EQ(live->log.lines().size(), 1u) << name;
    }
  }
  void useBus(const std::string& sessionBus) {
    accessibility = nullptr;
    live = nullptr;
    lateBound = std::make_unique<LateBound>();
    watch({.display = desktop->displayName(), .accessibility = lateBound.get()});
    accessibility =
        std::make_unique<AtSpiAccessibility>(live->running, sessionBus, "", live->loop, live->loop);
    lateBound->target = accessibility.get();
    heard.clear();
    observation = live->notifications.addObserver(
        KTProcessUINotification, nullptr, [this](const Notification& notification) {
          const auto element = notification.element("element");
          heard.push_back({notification.object.get(), notification.text("event")->bytes(),
                           element ? element->reference().bytes() : "none"});
        });
  }
  void tell(const std::string& line) {
    // The same line may have been answered before.
    const std::size_t before = program->output().size();
    program->writeInput(line + "\n");
    ASSERT_TRUE(eventually(
        [&] {
          std::ignore = program->waitForOutput("(never said)", 0.005);
          return program->output().find("done " + line + "\n", before) != std::string::npos;
        },
        kTestPatience));
  }
  // A program hears some time later that somebody listens, and only then tells; returns when it does, with
  // the focus on the first field and nothing heard.
  void listen(const char* notification, const std::string& line, const std::string& otherLine) {
    watched->addAXNotification(notification);
    for (int turn = 0; turn < 20 && heardOf(notification) == 0; ++turn) {
      tell(turn % 2 == 0 ? line : otherLine);
      static_cast<void>(live->settles([&] { return heardOf(notification) >= 1; }, 0.5));
    }
    EXPECT_GE(heardOf(notification), 1);
    tell("focus first");
    live->loop.runFor(0.2);
    heard.clear();
  }
  [[nodiscard]] std::ptrdiff_t heardOf(const std::string& event) const {
    return std::count_if(heard.begin(), heard.end(),
                         [&](const Heard& entry) { return entry.event == event; });
  }

  // The model is made before what it watches with, because that needs the model's loop.
  struct LateBound : Accessibility {
    AccessibilityElementPointer createApplicationElement(ProcessSerialNumber number) override {
      return target->createApplicationElement(number);
    }
    std::unique_ptr<AccessibilityObserver> createObserver(ProcessSerialNumber number,
                                                          Callback callback) override {
      return target->createObserver(number, std::move(callback));
    }
    Accessibility* target = nullptr;
  };
  struct Heard {
    const void* process = nullptr;
    std::string event;
    std::string element;
  };
  std::unique_ptr<LateBound> lateBound;
  std::unique_ptr<AtSpiAccessibility> accessibility;
  std::unique_ptr<Notifications::Observation> observation;
  ChildProcess* program = nullptr;
  KTProcessPointer watched;
  std::vector<Heard> heard;
};

TEST_F(AccessibilityWatch, FocusChangesBecomeNotificationsWithTheElement) {
  if (!desktop) return;
  listen("AXFocusedUIElementChanged", "focus second", "focus first");
  tell("focus second");
  ASSERT_TRUE(live->settles([&] { return heardOf("AXFocusedUIElementChanged") >= 1; }));
  EXPECT_EQ(heard[0].process, watched.get());
  EXPECT_NE(heard[0].element.find("/org/a11y/atspi/accessible/"), std::string::npos) << heard[0].element;
  const std::string second = heard.back().element;
  tell("focus first");
  ASSERT_TRUE(live->settles([&] { return heardOf("AXFocusedUIElementChanged") >= 2; }));
  EXPECT_NE(heard.back().element, second);
  EXPECT_TRUE(live->log.lines().empty());
}

TEST_F(AccessibilityWatch, AQtProgramTellsEveryNameThatIsAcceptedForIt) {
  if (!desktop) return;
  hearEveryName(AtSpiToolkit::Qt);
}

TEST_F(AccessibilityWatch, AGtkProgramTellsEveryNameThatIsAcceptedForIt) {
  if (!desktop) return;
  const CommandResult gtk =
      runCommand({"/usr/bin/python3", "-c", "import gi; gi.require_version('Gtk', '3.0')"});
  if (gtk.status != 0) GTEST_SKIP() << "no GTK for Python (python3-gi, gir1.2-gtk-3.0)";
  program->end(SIGKILL);
  start({"/usr/bin/python3", KT_WATCHED_GTK_PROGRAM});
  hearEveryName(AtSpiToolkit::Gtk);
}

TEST_F(AccessibilityWatch, OnlyWhatWasAddedIsHeardAndOnlyUntilItIsRemoved) {
  if (!desktop) return;
  listen("AXFocusedUIElementChanged", "focus second", "focus first");
  listen("AXValueChanged", "type hello", "type there");
  watched->removeAXNotification("AXValueChanged");
  tell("focus second");
  ASSERT_TRUE(live->settles([&] { return heardOf("AXFocusedUIElementChanged") >= 1; }));
  const auto before = heardOf("AXValueChanged");
  tell("type more");
  tell("focus first");
  ASSERT_TRUE(live->settles([&] { return heardOf("AXFocusedUIElementChanged") >= 2; }));
  EXPECT_EQ(heardOf("AXValueChanged"), before);
}

TEST_F(AccessibilityWatch, UnregisteringEndsItAndAProgramThatEndsHarmsNobody) {
  if (!desktop) return;
  listen("AXFocusedUIElementChanged", "focus second", "focus first");
  tell("focus second");
  ASSERT_TRUE(live->settles([&] { return heardOf("AXFocusedUIElementChanged") >= 1; }));
  watched->unregisterAXNotifications();
  const auto before = heard.size();
  tell("focus first");
  live->loop.runFor(0.3);
  EXPECT_EQ(heard.size(), before);
  watched->addAXNotification("AXFocusedUIElementChanged");
  EXPECT_TRUE(live->log.lines().empty());
  program->end(SIGKILL);
  EXPECT_TRUE(live->settles([&] { return !watched->isStillRunning(); }));
  heard.clear();
  live->loop.runFor(0.1);
  EXPECT_TRUE(heard.empty());
  // Another one can be watched as before.
  start({KT_WATCHED_PROGRAM});
  listen("AXFocusedUIElementChanged", "focus second", "focus first");
}

TEST_F(AccessibilityWatch, AnUnknownNotificationIsLogged) {
  if (!desktop) return;
  watched->addAXNotification("AXNonsense");
  ASSERT_EQ(live->log.lines().size(), 1u);
  EXPECT_TRUE(live->log.lines()[0].starts_with(
      "AX Notifications: Could not add notification AXNonsense for Process \""))
      << live->log.lines()[0];
}

TEST_F(AccessibilityWatch, AProgramThatDoesNotTakePartCannotBeWatched) {
  if (!desktop) return;
  ChildProcess& plain = startBundle("Editor", "EDIT");
  process(plain)->installAXObserver();
  EXPECT_EQ(live->log.lines(), Strings{"AX Notifications: Could not create application object for Process "
                                       "\"Editor\" (EDIT) 1.0"});
}

TEST_F(AccessibilityWatch, WithoutAnAccessibilityBusNothingCanBeWatchedAndNothingHangs) {
  if (!desktop) return;
  for (const std::string& bus : {std::string(), std::string("unix:path=/nowhere/bus")}) {
    const double start = testSeconds();
    AtSpiAccessibility nobody(live->running, bus, "", live->loop, live->loop);
    EXPECT_EQ(nobody.createApplicationElement(watched->serialNumber()), nullptr);
    EXPECT_EQ(nobody.createObserver(watched->serialNumber(), nullptr), nullptr);
    EXPECT_LT(testSeconds() - start, kTestPatience);
  }
}

}  // namespace
}  // namespace halvorn
