// Carbon's application events, Apple events and Accessibility: what is installed, sent and given back.
#include "Platform/processes/mac/MacAccessibility.h"
#include "Platform/processes/mac/MacAppleEvents.h"
#include "Platform/processes/mac/MacApplicationEvents.h"
#include "tests/mac/MacTest.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

constexpr std::uint32_t kApplicationClass = fourCharCode("appl");
constexpr int kNoError = 0;
constexpr int kNotHandled = -9874;

ProcessSerialNumber numberOf(const fakemac::Application& application) {
  return {application.number.high, application.number.low};
}

using MacApplicationEventsTest = MacTest;

TEST_F(MacApplicationEventsTest, TheThreeKindsAreToldAndTakenAsHandled) {
  std::vector<int> kinds;
  MacApplicationEvents events;
  events.installHandler([&](int kind) { kinds.push_back(kind); });
  EXPECT_TRUE(kinds.empty()) << "never inside the call";
  for (const std::uint32_t kind : {5U, 6U, 7U})
    EXPECT_EQ(fakemac::deliver(kApplicationClass, kind), kNoError);
  EXPECT_EQ(kinds, (std::vector<int>{5, 6, 7}));
}

TEST_F(MacApplicationEventsTest, OtherKindsAndClassesGoElsewhere) {
  std::vector<int> kinds;
  MacApplicationEvents events;
  events.installHandler([&](int kind) { kinds.push_back(kind); });
  for (const std::uint32_t kind : {1U, 2U, 4U, 8U, 2000U})
    EXPECT_EQ(fakemac::deliver(kApplicationClass, kind), kNotHandled) << kind;
  EXPECT_EQ(fakemac::deliver(fourCharCode("menu"), 5), kNotHandled);
  EXPECT_TRUE(kinds.empty());
}

TEST_F(MacApplicationEventsTest, ASecondHandlerTakesThePlaceOfTheFirst) {
  int first = 0;
  int second = 0;
  MacApplicationEvents events;
  events.installHandler([&](int) { ++first; });
  events.installHandler([&](int) { ++second; });
  EXPECT_EQ(fakemac::installedHandlers(), 1U);
  fakemac::deliver(kApplicationClass, 5);
  EXPECT_EQ(first, 0);
  EXPECT_EQ(second, 1);
}

TEST_F(MacApplicationEventsTest, TheHandlerGoesWithItsObject) {
  int count = 0;
  {
    MacApplicationEvents events;
    events.installHandler([&](int) { ++count; });
    EXPECT_EQ(fakemac::installedHandlers(), 1U);
  }
  EXPECT_EQ(fakemac::deliver(kApplicationClass, 5), kNotHandled);
  EXPECT_EQ(count, 0);
}

class MacAppleEventsTest : public MacTest {
 protected:
  std::unique_ptr<EventAddress> address(ProcessSerialNumber number) {
    auto made = events.addressOf(number);
    return std::holds_alternative<int>(made) ? nullptr : std::get<0>(std::move(made));
  }
  MacAppleEvents events;
};

TEST_F(MacAppleEventsTest, AnEventGoesToTheProcessInTheWayThatIsAskedFor) {
  const struct {
    EventSending sending;
    std::int16_t priority;
    const char* reason;
  } cases[] = {{{.mode = EventSending::kNoReply, .priority = EventSending::Priority::High}, 1, "quit"},
               {{.mode = 0x3093, .timeoutTicks = 150}, 0, "with a reply, which is thrown away"}};
  const auto& editor = fakemac::start({.name = "E"});
  for (const auto& [sending, priority, reason] : cases) {
    fakemac::state().sentEvents.clear();
    const auto target = address(numberOf(editor));
    ASSERT_NE(target, nullptr);
    auto event = events.createEvent(kCoreEventClass, kQuitApplicationEvent, *target);
    ASSERT_TRUE(std::holds_alternative<std::unique_ptr<AppleEvent>>(event));
    EXPECT_EQ(std::get<0>(event)->send(sending), 0);
    ASSERT_EQ(fakemac::state().sentEvents.size(), 1U) << reason;
    const fakemac::SentEvent& sent = fakemac::state().sentEvents.front();
    EXPECT_EQ(sent.eventClass, kCoreEventClass);
    EXPECT_EQ(sent.eventID, kQuitApplicationEvent);
    EXPECT_EQ(sent.target, editor.number);
    EXPECT_EQ(sent.mode, sending.mode) << reason;
    EXPECT_EQ(sent.priority, priority) << reason;
    EXPECT_EQ(sent.timeoutTicks, sending.timeoutTicks) << reason;
  }
}

TEST_F(MacAppleEventsTest, EachStepMayFailWithTheSystemsStatus) {
  const auto& editor = fakemac::start({.name = "E"});
  const auto target = address(numberOf(editor));
  fakemac::state().descriptorStatus = -1700;
  EXPECT_EQ(std::get<int>(events.addressOf(numberOf(editor))), -1700);
  fakemac::state().creationStatus = -1701;
  EXPECT_EQ(std::get<int>(events.createEvent(kCoreEventClass, kQuitApplicationEvent, *target)), -1701);
  fakemac::state().creationStatus = 0;
  fakemac::state().eventStatus = kNoSuchProcessStatus;
  auto event = events.createEvent(kCoreEventClass, kQuitApplicationEvent, *target);
  EXPECT_EQ(std::get<0>(event)->send({}), kNoSuchProcessStatus);
}

class MacAccessibilityTest : public MacTest {
 protected:
  struct Told {
    bool hasElement;
    Text notification;
  };
  std::unique_ptr<AccessibilityObserver> observer(const fakemac::Application& application) {
    return accessibility.createObserver(
        numberOf(application), [this](const AccessibilityElementPointer& element, const Text& notification) {
          told.push_back({element != nullptr, notification});
          last = element;
        });
  }
  void TearDown() override {
    last.reset();
    MacTest::TearDown();
  }
  MacAccessibility accessibility;
  std::vector<Told> told;
  AccessibilityElementPointer last;
};

TEST_F(MacAccessibilityTest, ANotificationArrivesWithItsElementWhileTheObserverIsInTheRunLoop) {
  const auto& editor = fakemac::start({.name = "E"});
  const auto element = accessibility.createApplicationElement(numberOf(editor));
  const auto watch = observer(editor);
  ASSERT_TRUE(element && watch);
  ASSERT_TRUE(watch->add(*element, "AXWindowCreated"));
  fakemac::notify(editor.pid, "AXWindowCreated");
  EXPECT_TRUE(told.empty()) << "not in the run loop yet";
  watch->addToRunLoop();
  fakemac::notify(editor.pid, "AXWindowCreated");
  fakemac::notify(editor.pid, "AXWindowMoved");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0].notification, Text("AXWindowCreated"));
  ASSERT_NE(last, nullptr);
  EXPECT_EQ(last->reference(), element->reference());
  watch->removeFromRunLoop();
  fakemac::notify(editor.pid, "AXWindowCreated");
  EXPECT_EQ(told.size(), 1U);
}

TEST_F(MacAccessibilityTest, TheElementMayBeMissing) {
  const auto& editor = fakemac::start({.name = "E"});
  const auto element = accessibility.createApplicationElement(numberOf(editor));
  const auto watch = observer(editor);
  watch->addToRunLoop();
  ASSERT_TRUE(watch->add(*element, "AXFocusedWindowChanged"));
  fakemac::notify(editor.pid, "AXFocusedWindowChanged", false);
  ASSERT_EQ(told.size(), 1U);
  EXPECT_FALSE(told[0].hasElement);
}

TEST_F(MacAccessibilityTest, WhatIsRemovedIsToldNoMore) {
  const auto& editor = fakemac::start({.name = "E"});
  const auto element = accessibility.createApplicationElement(numberOf(editor));
  const auto watch = observer(editor);
  watch->addToRunLoop();
  ASSERT_TRUE(watch->add(*element, "AXWindowCreated"));
  ASSERT_TRUE(watch->add(*element, "AXWindowMoved"));
  watch->remove(*element, "AXWindowCreated");
  fakemac::notify(editor.pid, "AXWindowCreated");
  fakemac::notify(editor.pid, "AXWindowMoved");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0].notification, Text("AXWindowMoved"));
}

TEST_F(MacAccessibilityTest, ElementsOfTwoApplicationsAreToldApart) {
  const auto first = accessibility.createApplicationElement(numberOf(fakemac::start({.name = "A"})));
  const auto second = accessibility.createApplicationElement(numberOf(fakemac::start({.name = "B"})));
  EXPECT_NE(first->reference(), second->reference());
}

TEST_F(MacAccessibilityTest, WhoCannotBeWatchedIsNotWatched) {
  auto& gone = fakemac::start({.name = "E"});
  const ProcessSerialNumber number = numberOf(gone);
  fakemac::end(gone);
  EXPECT_EQ(accessibility.createApplicationElement(number), nullptr);
  EXPECT_EQ(accessibility.createObserver(number, [](const auto&, const auto&) {}), nullptr);
  const auto& refusing = fakemac::start({.name = "R", .isAccessible = false});
  EXPECT_EQ(observer(refusing), nullptr);
  const auto& editor = fakemac::start({.name = "E"});
  const auto element = accessibility.createApplicationElement(numberOf(editor));
  const auto watch = observer(editor);
  fakemac::state().refusesNotifications = true;
  EXPECT_FALSE(watch->add(*element, "AXWindowCreated"));
}

}  // namespace
}  // namespace halvorn
