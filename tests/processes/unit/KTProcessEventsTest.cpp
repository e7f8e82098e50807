// What the system tells of processes, and what is posted of it.
#include "KTStuff/KTClasses/KTProcessClass.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/processes/unit/KTProcessFixture.h"

namespace halvorn {
namespace {

class KTProcessEvents : public KTProcessFixture {};

TEST_F(KTProcessEvents, EventsBecomeNotificationsInOrderAndOnlyWhenIdle) {
  processes.installNotifications();
  FakeApplication& editor = applications.launch({.name = "Editor"});
  applications.switchFront(editor);
  applications.endAndTell(editor);
  EXPECT_EQ(fake.mainThread.idleTasks.size(), 3u);
  EXPECT_EQ(changes(), (Strings{"started", "front", "ended"}));
}

TEST_F(KTProcessEvents, NotificationsHaveTheNamesOfTheirConstants) {
  EXPECT_STREQ(KTProcessChangeNotification, "KTProcessChangeNotification");
  EXPECT_STREQ(KTProcessUINotification, "KTProcessUINotification");
}

// The kinds are the system's and written out, as are the changes that observers compare with.
TEST_F(KTProcessEvents, TheKindsOfEventsAreFiveSixAndSeven) {
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

TEST_F(KTProcessEvents, TheSystemsEventsArriveAtAPlainFunction) {
  ApplicationStartEndHandler(5, processes);
  ApplicationStartEndHandler(7, processes);
  EXPECT_EQ(changes(), (Strings{"started", "front"}));
  EXPECT_EQ(processes.applicationLaunchEndCount(), 1u);
}

TEST_F(KTProcessEvents, AnUnknownKindOfEventIsPostedWithTheChangeEmpty) {
  processes.installNotifications();
  applications.deliver(4);
  EXPECT_EQ(changes(), Strings{""});
  EXPECT_EQ(processes.applicationLaunchEndCount(), 0u);
}

TEST_F(KTProcessEvents, LaunchesAndEndsAreCountedFrontSwitchesAreNot) {
  processes.installNotifications();
  FakeApplication& editor = applications.launch({.name = "Editor"});
  EXPECT_EQ(processes.applicationLaunchEndCount(), 1u);
  applications.switchFront(editor);
  EXPECT_EQ(processes.applicationLaunchEndCount(), 1u);
  applications.endAndTell(editor);
  EXPECT_EQ(processes.applicationLaunchEndCount(), 2u);
}

TEST_F(KTProcessEvents, AnEndIsCountedOnlyAfterTheCleanup) {
  FakeApplication& editor = start("Editor");
  object(editor);
  applications.end(editor);
  std::vector<std::uint32_t> countsDuringCleanup;
  applications.onPid = [&] { countsDuringCleanup.push_back(processes.applicationLaunchEndCount()); };
  processes.applicationEnded();
  EXPECT_EQ(countsDuringCleanup, std::vector<std::uint32_t>{0});
  EXPECT_EQ(processes.applicationLaunchEndCount(), 1u);
}

TEST_F(KTProcessEvents, OneWalkFindsAllThatEndedTogether) {
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

TEST_F(KTProcessEvents, AnEndIsFollowedByAWalkWhenAnObjectWasMadeOfAnEndedProcess) {
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

TEST_F(KTProcessEvents, WhereEndsAreNotCountedEachIsFollowedByAWalk) {
  object(start("Editor"));
  int questions = 0;
  applications.onPid = [&] { ++questions; };
  processes.applicationEnded();
  processes.applicationEnded();
  EXPECT_EQ(questions, 2);
}

TEST_F(KTProcessEvents, TheObserverFindsAnEndedProcessGoneAlready) {
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

TEST_F(KTProcessEvents, ABurstOf200LaunchesAndEndsLosesNoneAndLeavesNoObject) {
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

TEST_F(KTProcessEvents, AWalkIsNotDisturbedByApplicationsThatEndMeanwhile) {
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

}  // namespace
}  // namespace halvorn
