// Process objects, their cache and their notifications.
#include "KTStuff/KTClasses/KTProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/fakes/FakeProcesses.h"

namespace halvorn {
namespace {

using Strings = std::vector<std::string>;

class KTProcessCache : public testing::Test {
 protected:
  FakeApplication& start(const char* name, const char (&code)[5] = "EDIT") {
    return fake.applications.start({.name = name, .signature = fourCharCode(code)});
  }
  KTProcessPointer object(const FakeApplication& application) {
    return processes.processWithSerialNumber(application.number);
  }
  // The changes posted so far, once observers have heard of them.
  Strings changes() {
    fake.mainThread.becomeIdle();
    return changes_;
  }

  FakeProcesses fake;
  FakeApplications& applications = fake.applications;
  KTProcessClass& processes = fake.processes;

 private:
  Strings changes_;
  std::unique_ptr<Notifications::Observation> observation_ = fake.notifications.addObserver(
      KTProcessChangeNotification, &fake.processes,
      [this](const Notification& notification) { changes_.push_back(notification.text("change")->bytes()); });
};

TEST_F(KTProcessCache, TwoLookupsOfOneProcessGiveTheIdenticalObject) {
  const FakeApplication& editor = start("Editor");
  EXPECT_EQ(object(editor), object(editor));
  EXPECT_EQ(processes.processWithPID(editor.pid), object(editor));
  EXPECT_EQ(processes.allProcesses().at(1), object(editor));
}

TEST_F(KTProcessCache, AnEndedProcessIsGoneFromTheCacheAfterItsEventAndIsMadeAnew) {
  FakeApplication& editor = start("Editor");
  const KTProcessPointer before = object(editor);
  applications.endAndTell(editor);
  EXPECT_EQ(processes.cachedProcessWithSerialNumber(editor.number), nullptr);
  const KTProcessPointer after = object(editor);
  EXPECT_NE(after, before);
  EXPECT_TRUE(after->isEqual(before));
  EXPECT_EQ(after->hash(), before->hash());
}

TEST_F(KTProcessCache, TheEnumeratorIsNilBeforeTheFirstLookup) {
  EXPECT_EQ(processes.cachedProcessesEnumerator(), std::nullopt);
  object(start("Editor"));
  EXPECT_EQ(processes.cachedProcessesEnumerator()->size(), 1u);
}

TEST_F(KTProcessCache, TheEnumeratorIsEmptyAndNotNilOnceEverythingHasEnded) {
  FakeApplication& editor = start("Editor");
  object(editor);
  applications.end(editor);
  processes.cleanupCache();
  EXPECT_EQ(processes.cachedProcessesEnumerator(), std::vector<KTProcessPointer>{});
}

TEST_F(KTProcessCache, TheMostRecentlyAskedForStandsInFront) {
  const FakeApplication& a = start("A");
  const FakeApplication& b = start("B");
  const FakeApplication& c = start("C");
  const KTProcessPointer objectA = object(a);
  const KTProcessPointer objectB = object(b);
  const KTProcessPointer objectC = object(c);
  EXPECT_EQ(*processes.cachedProcessesEnumerator(),
            (std::vector<KTProcessPointer>{objectC, objectB, objectA}));
  EXPECT_EQ(processes.cachedProcessWithSerialNumber(a.number), objectA);
  EXPECT_EQ(*processes.cachedProcessesEnumerator(),
            (std::vector<KTProcessPointer>{objectA, objectC, objectB}));
  object(c);
  EXPECT_EQ(*processes.cachedProcessesEnumerator(),
            (std::vector<KTProcessPointer>{objectC, objectA, objectB}));
}

TEST_F(KTProcessCache, AskingForThePositionMovesNothing) {
  const FakeApplication& a = start("A");
  const FakeApplication& b = start("B");
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(a.number), KTProcessClass::kNotFound);
  EXPECT_EQ(KTProcessClass::kNotFound, 9223372036854775807);
  object(a);
  object(b);
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(a.number), 1);
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(a.number), 1);
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(b.number), 0);
}

TEST_F(KTProcessCache, CleanupTakesOutEveryEndedProcessNeighboursToo) {
  std::vector<FakeApplication*> all;
  std::vector<KTProcessPointer> objects;
  for (int i = 0; i < 6; ++i) {
    all.push_back(&start("App"));
    objects.push_back(object(*all.back()));
  }
  for (const int i : {0, 1, 2, 5}) applications.end(*all[static_cast<std::size_t>(i)]);
  processes.cleanupCache();
  EXPECT_EQ(*processes.cachedProcessesEnumerator(), (std::vector<KTProcessPointer>{objects[4], objects[3]}));
}

TEST_F(KTProcessCache, CleanupWithoutACacheDoesNothing) {
  processes.cleanupCache();
  EXPECT_EQ(processes.cachedProcessesEnumerator(), std::nullopt);
}

TEST_F(KTProcessCache, AddToCachePutsTheReceiverInFront) {
  const FakeApplication& editor = start("Editor");
  const KTProcessPointer made = KTProcess::create(processes, editor.number);
  EXPECT_EQ(processes.cachedProcessesEnumerator(), std::nullopt);
  made->addToCache();
  EXPECT_EQ(object(editor), made);
}

TEST_F(KTProcessCache, OfTwoObjectsForOneProcessTheOneInFrontIsFound) {
  FakeApplication& editor = start("Editor");
  const KTProcessPointer first = object(editor);
  const KTProcessPointer second = KTProcess::create(processes, editor.number);
  second->addToCache();
  EXPECT_EQ(object(editor), second);
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(editor.number), 0);
  object(start("Mail"));
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(editor.number), 1);
  first->addToCache();
  EXPECT_EQ(object(editor), first);
  applications.end(editor);
  processes.cleanupCache();
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber(editor.number), KTProcessClass::kNotFound);
  EXPECT_EQ(processes.cachedProcessesEnumerator()->size(), 1u);
}

TEST_F(KTProcessCache, TwoProcessesWithEqualHashesAreTwo) {
  const KTProcessPointer one = processes.processWithSerialNumber({1, 5});
  const KTProcessPointer other = processes.processWithSerialNumber({2, 4});
  EXPECT_EQ(one->hash(), other->hash());
  EXPECT_NE(one, other);
  EXPECT_FALSE(one->isEqual(other));
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber({1, 5}), 1);
  EXPECT_EQ(processes.processWithSerialNumber({1, 5}), one);
  EXPECT_EQ(processes.processWithSerialNumber({2, 4}), other);
  EXPECT_EQ(processes.cachedProcessWithSerialNumber({3, 3}), nullptr);
}

// A system that has several numbers for one process: those that end in the same digit.
class KTProcessCacheWithManyNumbers : public KTProcessCache {
 protected:
  KTProcessCacheWithManyNumbers() {
    applications.isSame = [](ProcessSerialNumber a, ProcessSerialNumber b) {
      return a.low % 10 == b.low % 10;
    };
  }
};

TEST_F(KTProcessCacheWithManyNumbers, TwoNumbersOfOneProcessGiveOneObject) {
  const KTProcessPointer first = processes.processWithSerialNumber({0, 11});
  const KTProcessPointer second = processes.processWithSerialNumber({0, 12});
  EXPECT_EQ(processes.processWithSerialNumber({7, 21}), first);
  EXPECT_EQ(processes.cachedProcessWithSerialNumber({7, 32}), second);
  EXPECT_EQ(processes.cachedProcessesEnumerator(), (std::vector<KTProcessPointer>{second, first}));
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber({9, 41}), 1);
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber({9, 43}), KTProcessClass::kNotFound);
}

TEST_F(KTProcessCacheWithManyNumbers, OfTwoObjectsForOneProcessTheOneInFrontIsFound) {
  const KTProcessPointer first = processes.processWithSerialNumber({0, 11});
  const KTProcessPointer second = KTProcess::create(processes, {0, 21});
  second->addToCache();
  // Also by the very number of the one behind.
  EXPECT_EQ(processes.indexOfCachedProcessWithSerialNumber({0, 11}), 0);
  EXPECT_EQ(processes.processWithSerialNumber({0, 11}), second);
  EXPECT_EQ(processes.cachedProcessesEnumerator(), (std::vector<KTProcessPointer>{second, first}));
}

TEST_F(KTProcessCache, ALongCacheKeepsItsOrder) {
  std::vector<KTProcessPointer> expected;
  for (std::uint32_t i = 0; i < 300; ++i) {
    expected.insert(expected.begin(), processes.processWithSerialNumber({i / 3, i}));
  }
  for (const std::uint32_t i : {17u, 299u, 0u, 17u}) {
    const auto asked =
        std::find(expected.begin(), expected.end(), processes.processWithSerialNumber({i / 3, i}));
    ASSERT_NE(asked, expected.end());
    std::rotate(expected.begin(), asked, asked + 1);
    EXPECT_EQ(processes.cachedProcessesEnumerator(), expected);
  }
}

TEST_F(KTProcessCache, ACachedObjectOutlivesItsCallers) {
  FakeApplication& editor = start("Editor");
  const std::weak_ptr<KTProcess> watched = object(editor);
  EXPECT_FALSE(watched.expired());
  applications.end(editor);
  processes.cleanupCache();
  EXPECT_TRUE(watched.expired());
}

TEST_F(KTProcessCache, EveryWayToAProcessInstallsTheHandlerAndOnlyOnce) {
  const FakeApplication& editor = start("Editor");
  const std::vector<std::function<void(FakeProcesses&)>> ways = {
      [](FakeProcesses& p) { p.processes.installNotifications(); },
      [&](FakeProcesses& p) { std::ignore = KTProcess::create(p.processes, editor.number); },
      [](FakeProcesses& p) { std::ignore = p.processes.currentProcess(); },
      [](FakeProcesses& p) {
        p.applications.current = std::nullopt;
        std::ignore = p.processes.currentProcess();
      },
      [](FakeProcesses& p) { std::ignore = p.processes.allProcesses(); },
      [](FakeProcesses& p) { std::ignore = p.processes.processWithSignature(1); },
      [](FakeProcesses& p) { std::ignore = p.processes.processWithIdentifier("x"); },
  };
  for (const auto& way : ways) {
    FakeProcesses fresh;
    EXPECT_EQ(fresh.applications.handlersInstalled, 0);
    way(fresh);
    way(fresh);
    EXPECT_EQ(fresh.applications.handlersInstalled, 1);
  }
}

TEST_F(KTProcessCache, TheFactoriesAnswerNullWhenThePlatformFindsNothing) {
  EXPECT_EQ(processes.processWithPID(4711), nullptr);
  EXPECT_EQ(processes.frontProcess(), nullptr);
  EXPECT_EQ(processes.processWithSignature(fourCharCode("NONE")), nullptr);
  EXPECT_EQ(processes.processWithIdentifier("org.example.none"), nullptr);
  EXPECT_TRUE(fake.log.lines().empty());
}

TEST_F(KTProcessCache, TheCurrentProcessIsLookedUpOnceAndFailureIsTriedAgain) {
  const auto number = applications.current;
  applications.current = std::nullopt;
  EXPECT_EQ(processes.currentProcess(), nullptr);
  applications.current = number;
  const KTProcessPointer current = processes.currentProcess();
  ASSERT_NE(current, nullptr);
  applications.current = start("Other").number;
  EXPECT_EQ(processes.currentProcess(), current);
}

TEST_F(KTProcessCache, TheFrontProcessIsAskedForAfreshEachTime) {
  const FakeApplication& a = start("A");
  const FakeApplication& b = start("B");
  applications.front = a.number;
  EXPECT_EQ(processes.frontProcess(), object(a));
  applications.front = b.number;
  EXPECT_EQ(processes.frontProcess(), object(b));
}

TEST_F(KTProcessCache, AllProcessesKeepTheOrderOfThePlatform) {
  start("Zebra");
  start("Ape");
  Strings names;
  for (const auto& process : processes.allProcesses()) names.push_back(process->name()->bytes());
  EXPECT_EQ(names, (Strings{"Installer", "Zebra", "Ape"}));
}

TEST_F(KTProcessCache, TheOrderOfThePlatformNeedNotBeThatOfTheNumbers) {
  start("Zebra", "BBBB");
  const FakeApplication& newest = start("Ape", "BBBB");
  applications.listOrder = FakeApplications::ListOrder::NewestFirst;
  Strings names;
  for (const auto& process : processes.allProcesses()) names.push_back(process->name()->bytes());
  EXPECT_EQ(names, (Strings{"Ape", "Zebra", "Installer"}));
  EXPECT_EQ(processes.processWithSignature(fourCharCode("BBBB")), object(newest));
}

TEST_F(KTProcessCache, AProcessThatCannotBeReadDoesNotEndTheSearchForASignature) {
  applications.start({.name = "Hidden", .informationFails = true});
  const FakeApplication& editor = start("Editor");
  EXPECT_EQ(processes.processWithSignature(fourCharCode("EDIT")), object(editor));
}

TEST_F(KTProcessCache, TheFirstProcessWithASignatureIsFound) {
  start("A", "AAAA");
  const FakeApplication& first = start("B", "BBBB");
  start("B2", "BBBB");
  EXPECT_EQ(processes.processWithSignature(fourCharCode("BBBB")), object(first));
}

TEST_F(KTProcessCache, ASearchForASignatureMakesNoOtherObjects) {
  start("A", "AAAA");
  const FakeApplication& b = start("B", "BBBB");
  EXPECT_NE(processes.processWithSignature(fourCharCode("BBBB")), nullptr);
  EXPECT_EQ(*processes.cachedProcessesEnumerator(), std::vector<KTProcessPointer>{object(b)});
}

TEST_F(KTProcessCache, TheFirstProcessWithAnIdentifierIsFound) {
  applications.start({.name = "None"});
  const FakeApplication& mail = applications.start({.name = "Mail", .identifier = "org.example.mail"});
  applications.start({.name = "Mail 2", .identifier = "org.example.mail"});
  EXPECT_EQ(processes.processWithIdentifier("org.example.mail"), object(mail));
  // The first process without an identifier has the empty one.
  EXPECT_EQ(processes.processWithIdentifier(""), processes.currentProcess());
}

TEST_F(KTProcessCache, EqualityMeansTheSameProcessAndNotTheSameObject) {
  const FakeApplication& editor = start("Editor");
  const KTProcessPointer one = KTProcess::create(processes, editor.number);
  const KTProcessPointer other = KTProcess::create(processes, editor.number);
  EXPECT_TRUE(one->isEqual(*one));
  EXPECT_TRUE(one->isEqual(other));
  EXPECT_EQ(one->hash(), other->hash());
  EXPECT_TRUE(one->isSameProcess(editor.number));
  EXPECT_FALSE(one->isEqual(object(start("Other"))));
  EXPECT_FALSE(one->isEqual(KTProcessPointer()));
}

TEST_F(KTProcessCache, NothingButAProcessEqualsAProcess) {
  const KTProcessPointer editor = object(start("Editor"));
  EXPECT_FALSE(editor->isEqual(std::any()));
  EXPECT_FALSE(editor->isEqual(std::any(Text("Editor"))));
  EXPECT_TRUE(editor->isEqual(std::any(editor)));
}

TEST_F(KTProcessCache, TheHashIsTheSumOfBothHalvesModulo32Bits) {
  EXPECT_EQ(KTProcess::create(processes, {0x80000001, 0x80000002})->hash(), 3u);
  EXPECT_EQ(KTProcess::create(processes, {7, 35})->hash(), 42u);
}

TEST_F(KTProcessCache, ProcessesAreOrderedByNameWithoutRegardToCase) {
  const KTProcessPointer ape = object(start("ape"));
  const KTProcessPointer zebra = object(start("Zebra"));
  EXPECT_EQ(ape->compare(*zebra), Ordering::Ascending);
  EXPECT_EQ(zebra->compare(*ape), Ordering::Descending);
  EXPECT_EQ(ape->compare(*object(start("APE"))), Ordering::Same);
}

TEST_F(KTProcessCache, TheDescriptionNamesTheProcessItsSignatureAndItsVersion) {
  EXPECT_EQ(object(start("Editor", "EDIT"))->description(), Text("Process \"Editor\" (EDIT) 1.0"));
}

TEST_F(KTProcessCache, EventsBecomeNotificationsInOrderAndOnlyWhenIdle) {
  processes.installNotifications();
  FakeApplication& editor = applications.launch({.name = "Editor"});
  applications.switchFront(editor);
  applications.endAndTell(editor);
  EXPECT_EQ(fake.mainThread.idleTasks.size(), 3u);
  EXPECT_EQ(changes(), (Strings{"started", "front", "ended"}));
}

TEST_F(KTProcessCache, NotificationsHaveTheNamesOfTheirConstants) {
  EXPECT_STREQ(KTProcessChangeNotification, "KTProcessChangeNotification");
  EXPECT_STREQ(KTProcessUINotification, "KTProcessUINotification");
}

// The kinds are the system's and written out, as are the changes that observers compare with.
TEST_F(KTProcessCache, TheKindsOfEventsAreFiveSixAndSeven) {
  processes.installNotifications();
  const std::pair<int, const char*> kinds[] = {{4, ""}, {5, "started"}, {6, "ended"}, {7, "front"}, {8, ""}};
  Strings expected;
  for (const auto& [kind, change] : kinds) {
    applications.deliver(kind);
    expected.emplace_back(change);
  }
  EXPECT_EQ(changes(), expected);
  EXPECT_EQ(processes.applicationLaunchEndCount(), 2u);
}

TEST_F(KTProcessCache, TheSystemsEventsArriveAtAPlainFunction) {
  ApplicationStartEndHandler(5, processes);
  ApplicationStartEndHandler(7, processes);
  EXPECT_EQ(changes(), (Strings{"started", "front"}));
  EXPECT_EQ(processes.applicationLaunchEndCount(), 1u);
}

TEST_F(KTProcessCache, AnUnknownKindOfEventIsPostedWithTheChangeEmpty) {
  processes.installNotifications();
  applications.deliver(4);
  EXPECT_EQ(changes(), Strings{""});
  EXPECT_EQ(processes.applicationLaunchEndCount(), 0u);
}

TEST_F(KTProcessCache, LaunchesAndEndsAreCountedFrontSwitchesAreNot) {
  processes.installNotifications();
  FakeApplication& editor = applications.launch({.name = "Editor"});
  EXPECT_EQ(processes.applicationLaunchEndCount(), 1u);
  applications.switchFront(editor);
  EXPECT_EQ(processes.applicationLaunchEndCount(), 1u);
  applications.endAndTell(editor);
  EXPECT_EQ(processes.applicationLaunchEndCount(), 2u);
}

TEST_F(KTProcessCache, AnEndIsCountedOnlyAfterTheCleanup) {
  FakeApplication& editor = start("Editor");
  object(editor);
  applications.end(editor);
  std::vector<std::uint32_t> countsDuringCleanup;
  applications.onPid = [&] { countsDuringCleanup.push_back(processes.applicationLaunchEndCount()); };
  processes.applicationEnded();
  EXPECT_EQ(countsDuringCleanup, std::vector<std::uint32_t>{0});
  EXPECT_EQ(processes.applicationLaunchEndCount(), 1u);
}

TEST_F(KTProcessCache, OneWalkFindsAllThatEndedTogether) {
  applications.countsEnds = true;
  std::vector<FakeApplication*> all;
  for (int i = 0; i < 5; ++i) all.push_back(&start("App"));
  for (const FakeApplication* application : all) object(*application);
  int questions = 0;
  applications.onPid = [&] { ++questions; };
  for (const int i : {0, 2, 4}) applications.end(*all[static_cast<std::size_t>(i)]);
  for (int i = 0; i < 3; ++i) processes.applicationEnded();
  EXPECT_EQ(questions, 5);
  EXPECT_EQ(processes.cachedProcessesEnumerator()->size(), 2u);
  EXPECT_EQ(processes.applicationLaunchEndCount(), 3u);

  applications.end(*all[1]);
  processes.applicationEnded();
  EXPECT_EQ(questions, 7);
  EXPECT_EQ(processes.cachedProcessesEnumerator()->size(), 1u);
}

TEST_F(KTProcessCache, AnEndIsFollowedByAWalkWhenAnObjectWasMadeOfAnEndedProcess) {
  applications.countsEnds = true;
  FakeApplication& first = start("Editor");
  FakeApplication& second = start("Mail");
  object(first);
  applications.end(first);
  applications.end(second);
  processes.applicationEnded();
  object(second);
  EXPECT_EQ(processes.cachedProcessesEnumerator()->size(), 1u);
  processes.applicationEnded();
  EXPECT_TRUE(processes.cachedProcessesEnumerator()->empty());
}

TEST_F(KTProcessCache, WhereEndsAreNotCountedEachIsFollowedByAWalk) {
  object(start("Editor"));
  int questions = 0;
  applications.onPid = [&] { ++questions; };
  processes.applicationEnded();
  processes.applicationEnded();
  EXPECT_EQ(questions, 2);
}

TEST_F(KTProcessCache, TheObserverFindsAnEndedProcessGoneAlready) {
  FakeApplication& editor = start("Editor");
  object(editor);
  bool wasGone = false;
  const auto observation =
      fake.notifications.addObserver(KTProcessChangeNotification, nullptr, [&](const Notification&) {
        wasGone = processes.indexOfCachedProcessWithSerialNumber(editor.number) == KTProcessClass::kNotFound;
      });
  applications.endAndTell(editor);
  fake.mainThread.becomeIdle();
  EXPECT_TRUE(wasGone);
}

TEST_F(KTProcessCache, ABurstOf200LaunchesAndEndsLosesNoneAndLeavesNoObject) {
  processes.installNotifications();
  std::vector<FakeApplication*> all;
  for (int i = 0; i < 200; ++i) {
    all.push_back(&applications.launch({.name = "App"}));
    object(*all.back());
  }
  for (FakeApplication* application : all) applications.endAndTell(*application);
  EXPECT_EQ(fake.mainThread.idleTasks.size(), 400u);
  const Strings heard = changes();
  EXPECT_EQ(std::count(heard.begin(), heard.begin() + 200, "started"), 200);
  EXPECT_EQ(std::count(heard.begin() + 200, heard.end(), "ended"), 200);
  EXPECT_EQ(processes.applicationLaunchEndCount(), 400u);
  EXPECT_TRUE(processes.cachedProcessesEnumerator()->empty());
}

TEST_F(KTProcessCache, AWalkIsNotDisturbedByApplicationsThatEndMeanwhile) {
  std::vector<FakeApplication*> all;
  for (int i = 0; i < 5; ++i) all.push_back(&start("App"));
  int walked = 0;
  for (const KTProcessPointer& process : processes.allProcesses()) {
    for (FakeApplication* application : all) applications.endAndTell(*application);
    EXPECT_EQ(process->isStillRunning(), process == processes.currentProcess());
    ++walked;
  }
  EXPECT_EQ(walked, 6);
}

class KTProcessAccessibility : public KTProcessCache {
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
