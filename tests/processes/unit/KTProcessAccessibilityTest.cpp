// What a process tells of its user interface.
#include "KTStuff/KTClasses/KTProcess.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/processes/unit/KTProcessFixture.h"

namespace halvorn {
namespace {

class KTProcessAccessibility : public KTProcessFixture {
 protected:
  struct Heard {
    KTProcessPointer process;
    std::string event;
    Text element;
  };
  std::vector<Heard> heard;
  std::unique_ptr<Notifications::Observation> uiObservation = fake.notifications.addObserver(
      KTProcessUINotification, nullptr, [this](const Notification& notification) {
        const auto about = std::static_pointer_cast<const KTProcess>(notification.object);
        const auto element = notification.element("element");
        heard.push_back({std::const_pointer_cast<KTProcess>(about), notification.text("event")->bytes(),
                         element ? element->reference() : *notification.text("element")});
      });
  FakeApplication& editor = start("Editor");
  KTProcessPointer process = object(editor);
  AccessibilityElementPointer window = std::make_shared<FakeAccessibilityElement>("window 1");
};

TEST_F(KTProcessAccessibility, WhatHappensBecomesANotificationAboutTheProcessWhenIdle) {
  process->addAXNotification("AXWindowCreated");
  fake.accessibility.happen("AXWindowCreated", window);
  EXPECT_TRUE(heard.empty());
  fake.mainThread.becomeIdle();
  ASSERT_EQ(heard.size(), 1u);
  EXPECT_EQ(heard[0].process, process);
  EXPECT_EQ(heard[0].event, "AXWindowCreated");
  EXPECT_EQ(heard[0].element, Text("window 1"));
}

TEST_F(KTProcessAccessibility, WhatHappensArrivesAtAPlainFunction) {
  notificationHandler(window, "AXMoved", process, fake.notifications);
  fake.mainThread.becomeIdle();
  ASSERT_EQ(heard.size(), 1u);
  EXPECT_EQ(heard[0].process, process);
  EXPECT_EQ(heard[0].event, "AXMoved");
  EXPECT_EQ(heard[0].element, Text("window 1"));
}

TEST_F(KTProcessAccessibility, WithoutAnElementItsPlaceHoldsTheEmptyText) {
  process->addAXNotification("AXWindowCreated");
  fake.accessibility.happen("AXWindowCreated", nullptr);
  fake.mainThread.becomeIdle();
  ASSERT_EQ(heard.size(), 1u);
  EXPECT_EQ(heard[0].element, Text());
}

TEST_F(KTProcessAccessibility, OneObserverServesAllNotificationsOfAProcess) {
  process->addAXNotification("AXWindowCreated");
  process->addAXNotification("AXValueChanged");
  process->installAXObserver();
  EXPECT_EQ(fake.accessibility.observers.size(), 1u);
  EXPECT_EQ(fake.accessibility.elementsMade, 1);
}

TEST_F(KTProcessAccessibility, RemovingEndsOneNotificationAndNothingElse) {
  process->removeAXNotification("AXWindowCreated");  // no observer yet: nothing happens
  process->addAXNotification("AXWindowCreated");
  process->addAXNotification("AXValueChanged");
  process->removeAXNotification("AXWindowCreated");
  fake.accessibility.happen("AXWindowCreated", window);
  fake.accessibility.happen("AXValueChanged", window);
  fake.mainThread.becomeIdle();
  ASSERT_EQ(heard.size(), 1u);
  EXPECT_EQ(heard[0].event, "AXValueChanged");
  EXPECT_TRUE(fake.log.lines().empty());
}

TEST_F(KTProcessAccessibility, UnregisteringEndsAllAndTheNextAddStartsAnew) {
  process->addAXNotification("AXWindowCreated");
  process->unregisterAXNotifications();
  EXPECT_TRUE(fake.accessibility.observers.empty());
  process->unregisterAXNotifications();
  process->addAXNotification("AXWindowCreated");
  EXPECT_EQ(fake.accessibility.observers.size(), 1u);
  EXPECT_EQ(fake.accessibility.elementsMade, 2);
}

TEST_F(KTProcessAccessibility, AnObserverLeavesTheRunLoopBeforeItGoes) {
  process->addAXNotification("AXWindowCreated");
  process->unregisterAXNotifications();
  EXPECT_EQ(fake.accessibility.fates, (Strings{"in the run loop", "out of the run loop", "gone"}));
}

TEST_F(KTProcessAccessibility, TheLastOwnerTakesTheObserverWithIt) {
  process->addAXNotification("AXWindowCreated");
  process = nullptr;
  applications.end(editor);
  processes.cleanupCache();
  EXPECT_TRUE(fake.accessibility.observers.empty());
}

TEST_F(KTProcessAccessibility, ANotificationOnItsWayKeepsItsProcess) {
  process->addAXNotification("AXWindowCreated");
  fake.accessibility.happen("AXWindowCreated", window);
  const KTProcess* address = process.get();
  process = nullptr;
  applications.end(editor);
  processes.cleanupCache();
  fake.mainThread.becomeIdle();
  ASSERT_EQ(heard.size(), 1u);
  EXPECT_EQ(heard[0].process.get(), address);
}

TEST_F(KTProcessAccessibility, AnApplicationElementThatCannotBeMadeIsLogged) {
  fake.accessibility.elementFails = true;
  process->installAXObserver();
  EXPECT_EQ(fake.log.lines(), Strings{"AX Notifications: Could not create application object for Process "
                                      "\"Editor\" (EDIT) 1.0"});
  EXPECT_TRUE(fake.accessibility.observers.empty());
}

TEST_F(KTProcessAccessibility, AnObserverThatCannotBeMadeIsLoggedAndTheElementIsKept) {
  fake.accessibility.observerFails = true;
  process->installAXObserver();
  EXPECT_EQ(fake.log.lines(),
            Strings{"AX Notifications: Could not create observer for Process \"Editor\" (EDIT) 1.0"});
  process->installAXObserver();
  EXPECT_EQ(fake.accessibility.elementsMade, 1);
  EXPECT_EQ(fake.log.lines().size(), 1u);
}

TEST_F(KTProcessAccessibility, WithoutAnObserverAddingFailsEachTimeAndIsLogged) {
  fake.accessibility.observerFails = true;
  process->addAXNotification("AXWindowCreated");
  process->addAXNotification("AXValueChanged");
  EXPECT_EQ(
      fake.log.lines(),
      (Strings{"AX Notifications: Could not create observer for Process \"Editor\" (EDIT) 1.0",
               "AX Notifications: Could not add notification AXWindowCreated for Process \"Editor\" (EDIT) "
               "1.0",
               "AX Notifications: Could not add notification AXValueChanged for Process \"Editor\" (EDIT) "
               "1.0"}));
}

TEST_F(KTProcessAccessibility, ANotificationThatCannotBeAddedIsLogged) {
  fake.accessibility.unknownNotifications.insert("AXNonsense");
  process->addAXNotification("AXNonsense");
  EXPECT_EQ(fake.log.lines(),
            Strings{"AX Notifications: Could not add notification AXNonsense for Process \"Editor\" (EDIT) "
                    "1.0"});
  process->addAXNotification("AXWindowCreated");
  fake.accessibility.happen("AXWindowCreated", window);
  fake.mainThread.becomeIdle();
  EXPECT_EQ(heard.size(), 1u);
}

}  // namespace
}  // namespace halvorn
