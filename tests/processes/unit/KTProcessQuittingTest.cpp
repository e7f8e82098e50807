// Quitting, activating and events.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "KTStuff/KTClasses/KTProcess.h"
#include "tests/fakes/FakeProcesses.h"

namespace halvorn {
namespace {

using Strings = std::vector<std::string>;
using Quitting = FakeApplication::Quitting;

class KTProcessQuitting : public testing::Test {
 protected:
  KTProcessPointer start(FakeApplication application) {
    application.name = "Editor";
    started = &fake.applications.start(std::move(application));
    const KTProcessPointer process = fake.processes.processWithSerialNumber(started->number);
    EXPECT_TRUE(process->getProcessInfo());
    return process;
  }
  std::ptrdiff_t count(const char* request) const {
    return std::count(started->requests.begin(), started->requests.end(), request);
  }
  Strings log() const { return fake.log.lines(); }

  FakeProcesses fake;
  FakeApplication* started = nullptr;
};

TEST_F(KTProcessQuitting, AProcessThatEndsOnTheFirstRequestIsLoggedWithOneAttempt) {
  EXPECT_TRUE(start({})->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_EQ(log(), Strings{"quit Editor: terminated after 0.001s (1 attempts)"});
  EXPECT_EQ(count("terminate"), 1);
  EXPECT_EQ(fake.clock.slept, std::vector<double>{0.001});
}

TEST_F(KTProcessQuitting, TheRequestIsRepeatedEveryMillisecondUntilTheProcessEnds) {
  EXPECT_TRUE(start({.secondsToQuit = 0.0025})->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_EQ(log(), Strings{"quit Editor: terminated after 0.003s (3 attempts)"});
  EXPECT_EQ(count("terminate"), 3);
}

TEST_F(KTProcessQuitting, ARefusedRequestMeansThatTheProcessStopped) {
  EXPECT_TRUE(start({.quitting = Quitting::VanishesWhenAsked})->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_EQ(log(), Strings{"quit Editor: process stopped after 0.000s (1 attempts)"});
  EXPECT_TRUE(fake.clock.slept.empty());
}

TEST_F(KTProcessQuitting, AProcessThatIgnoresRequestsIsForcedAfterTheWholeTimeout) {
  EXPECT_TRUE(start({.quitting = Quitting::OnlyByForce})->quitRunningApplicationWithTimeout(0.5F));
  EXPECT_EQ(log(), Strings{"force-quit Editor: terminated after 0.001s (1 attempts)"});
  EXPECT_NEAR(static_cast<double>(count("terminate")), 500, 1);
  EXPECT_EQ(count("forceTerminate"), 1);
  EXPECT_NEAR(fake.clock.monotonicSeconds(), 0.501, 0.002);
}

TEST_F(KTProcessQuitting, FoceQuitIsSpelledAsItAlwaysWas) {
  EXPECT_TRUE(start({.quitting = Quitting::VanishesWhenForced})->quitRunningApplicationWithTimeout(0.25F));
  EXPECT_EQ(log(), Strings{"foce-quit Editor: process stopped after 0.000s (1 attempts)"});
}

TEST_F(KTProcessQuitting, AProcessThatNeverEndsTakesTwiceTheTimeoutAndFails) {
  EXPECT_FALSE(start({.quitting = Quitting::Never})->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_EQ(log(), Strings{"quitting Editor failed"});
  EXPECT_GE(fake.clock.monotonicSeconds(), 8.0);
  EXPECT_LT(fake.clock.monotonicSeconds(), 8.01);
  EXPECT_GT(count("forceTerminate"), 3990);
}

TEST_F(KTProcessQuitting, CanceledWhileItAsksItStopsWithinAMillisecondAndForcesNothing) {
  const KTProcessPointer process = start({.quitting = Quitting::OnlyByForce});
  Cancellation cancellation;
  fake.clock.onAdvance = [&](double seconds) {
    if (seconds > 0.0195) cancellation.request();
  };
  EXPECT_FALSE(process->quitRunningApplicationWithTimeout(4.0F, cancellation));
  EXPECT_EQ(log(), Strings{"quit Editor: given up after 0.020s (20 attempts)"});
  EXPECT_EQ(count("terminate"), 20);
  EXPECT_EQ(count("forceTerminate"), 0);
}

TEST_F(KTProcessQuitting, CanceledInTheLastMomentOfAskingItForcesNothing) {
  const KTProcessPointer process = start({.quitting = Quitting::OnlyByForce});
  Cancellation cancellation;
  fake.clock.onAdvance = [&](double seconds) {
    if (seconds >= 0.25) cancellation.request();
  };
  EXPECT_FALSE(process->quitRunningApplicationWithTimeout(0.25F, cancellation));
  EXPECT_EQ(count("forceTerminate"), 0);
  EXPECT_EQ(log().size(), 1u);
  EXPECT_TRUE(log().front().starts_with("quit Editor: given up after 0.25")) << log().front();
}

TEST_F(KTProcessQuitting, CanceledWhileItForcesItStopsWithinAMillisecond) {
  const KTProcessPointer process = start({.quitting = Quitting::Never});
  Cancellation cancellation;
  fake.clock.onAdvance = [&](double) {
    if (count("forceTerminate") == 3) cancellation.request();
  };
  EXPECT_FALSE(process->quitRunningApplicationWithTimeout(0.25F, cancellation));
  EXPECT_EQ(log(), Strings{"force-quit Editor: given up after 0.003s (3 attempts)"});
  EXPECT_EQ(count("forceTerminate"), 3);
}

TEST_F(KTProcessQuitting, CanceledBeforehandNothingIsAskedAndNoEventIsSent) {
  const KTProcessPointer process = start({});
  Cancellation cancellation;
  cancellation.request();
  process->quit(cancellation);
  EXPECT_TRUE(started->requests.empty());
  EXPECT_TRUE(fake.appleEvents.sent.empty());
  EXPECT_EQ(log(), Strings{"quit Editor: given up after 0.000s (0 attempts)"});
}

TEST_F(KTProcessQuitting, AProcessThatEndedBeforeTheCancellationWasSeenHasQuit) {
  const KTProcessPointer process = start({});
  Cancellation cancellation;
  fake.clock.onAdvance = [&](double) { cancellation.request(); };
  EXPECT_TRUE(process->quitRunningApplicationWithTimeout(4.0F, cancellation));
  EXPECT_EQ(log(), Strings{"quit Editor: terminated after 0.001s (1 attempts)"});
}

// Ends the process right after its id was asked for; somebody else has the id from then on.
class KTProcessWhoseIdComesBack : public KTProcessQuitting {
 protected:
  KTProcessPointer startAndReplace() {
    const KTProcessPointer process = start({});
    fake.applications.onPid = [this] {
      fake.applications.onPid = nullptr;
      fake.applications.end(*started);
      bystander = &fake.applications.start(
          {.name = "Bystander", .pid = started->pid, .startTime = Date{1'700'000'000.0}});
    };
    return process;
  }
  FakeApplication* bystander = nullptr;
};

TEST_F(KTProcessWhoseIdComesBack, QuittingReachesNobodyElse) {
  EXPECT_FALSE(startAndReplace()->quitRunningApplicationWithTimeout(4.0F));
  ASSERT_NE(bystander, nullptr);
  EXPECT_EQ(bystander->requests, Strings{});
  EXPECT_EQ(log(), Strings{"cannot quit Editor: no process found"});
}

TEST_F(KTProcessWhoseIdComesBack, AnEventIsAddressedToTheProcessAndNotToItsId) {
  const KTProcessPointer process = startAndReplace();
  process->sendAppleEvent(fourCharCode("aevt"), fourCharCode("rapp"), 1);
  ASSERT_EQ(fake.appleEvents.sent.size(), 1u);
  EXPECT_EQ(fake.appleEvents.sent[0].number, started->number);
}

TEST_F(KTProcessWhoseIdComesBack, TheLaunchDateIsNotThatOfSomebodyElse) {
  EXPECT_EQ(startAndReplace()->launchDate().secondsSince1970, 0.0);
}

TEST_F(KTProcessQuitting, ATimeoutOfNothingAsksNothingAndFails) {
  for (const float timeout : {0.0F, -1.0F}) {
    EXPECT_FALSE(start({})->quitRunningApplicationWithTimeout(timeout));
    EXPECT_TRUE(started->requests.empty());
  }
  EXPECT_EQ(log(), (Strings{"quitting Editor failed", "quitting Editor failed"}));
}

TEST_F(KTProcessQuitting, AProcessThatIsGoneHasNoPid) {
  const KTProcessPointer process = start({});
  fake.applications.end(*started);
  EXPECT_FALSE(process->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_EQ(log(), Strings{"cannot quit Editor: no pid"});
  EXPECT_TRUE(fake.clock.slept.empty());
}

TEST_F(KTProcessQuitting, WithoutRunningApplicationsNothingCanBeQuit) {
  const KTProcessPointer process = start({});
  fake.applications.canEndApplications = false;
  EXPECT_FALSE(process->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_EQ(log(), Strings{"cannot quit Editor: NSRunningApplication not available"});
}

TEST_F(KTProcessQuitting, AProcessThatIsNoRunningApplicationIsNotFound) {
  const KTProcessPointer process = start({});
  fake.applications.findsRunningApplications = false;
  EXPECT_FALSE(process->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_EQ(log(), Strings{"cannot quit Editor: no process found"});
}

TEST_F(KTProcessQuitting, QuitGivesFourSecondsAndSendsNoEventWhenThatWorks) {
  start({.secondsToQuit = 3.9})->quit();
  EXPECT_EQ(log().size(), 1u);
  EXPECT_TRUE(fake.appleEvents.sent.empty());
  start({.quitting = Quitting::OnlyByForce})->quit();
  EXPECT_NEAR(fake.clock.monotonicSeconds(), 3.9 + 4.0, 0.01);
  EXPECT_TRUE(fake.appleEvents.sent.empty());
}

TEST_F(KTProcessQuitting, QuitGoesOnToTheQuitEventAndDoesNotWait) {
  start({.quitting = Quitting::Never})->quit();
  ASSERT_EQ(fake.appleEvents.sent.size(), 1u);
  const auto& sent = fake.appleEvents.sent[0];
  EXPECT_EQ(sent.eventClass, fourCharCode("aevt"));
  EXPECT_EQ(sent.eventID, fourCharCode("quit"));
  EXPECT_EQ(sent.number, started->number);
  EXPECT_EQ(sent.sending.mode, EventSending::kNoReply);
  EXPECT_EQ(sent.sending.priority, EventSending::Priority::High);
  EXPECT_EQ(sent.sending.timeoutTicks, EventSending::kDefaultTimeout);
  EXPECT_EQ(log(), Strings{"quitting Editor failed"});
  EXPECT_EQ(fake.appleEvents.aliveDescriptors, 0);
}

TEST_F(KTProcessQuitting, QuitOfAProcessThatIsGoneGoesOnToTheEvent) {
  const KTProcessPointer process = start({});
  fake.applications.end(*started);
  process->quit();
  EXPECT_EQ(log(), Strings{"cannot quit Editor: no pid"});
  EXPECT_EQ(fake.appleEvents.sent.size(), 1u);
}

TEST_F(KTProcessQuitting, EachFailureOfTheQuitEventHasItsLine) {
  const KTProcessPointer process = start({});
  fake.applications.end(*started);
  fake.appleEvents.sendStatus = -600;
  process->quit();
  fake.appleEvents.eventStatus = -1701;
  process->quit();
  fake.appleEvents.addressStatus = -108;
  process->quit();
  Strings lines = log();
  std::erase(lines, "cannot quit Editor: no pid");
  EXPECT_EQ(lines, (Strings{"quitting Editor failed (-600; could not send event)",
                            "quitting Editor failed (-1701; could not create event)",
                            "quitting Editor failed (-108; could not create descriptor)"}));
  EXPECT_EQ(fake.appleEvents.aliveDescriptors, 0);
}

TEST_F(KTProcessQuitting, AnEventWaitsForItsReply) {
  start({.pid = 4711})->sendAppleEvent(fourCharCode("aevt"), fourCharCode("rapp"), 2.51F);
  ASSERT_EQ(fake.appleEvents.sent.size(), 1u);
  const auto& sent = fake.appleEvents.sent[0];
  EXPECT_EQ(sent.number, started->number);
  EXPECT_EQ(sent.eventClass, fourCharCode("aevt"));
  EXPECT_EQ(sent.eventID, fourCharCode("rapp"));
  EXPECT_EQ(sent.sending.mode, 0x3093);
  EXPECT_EQ(sent.sending.timeoutTicks, 150);  // 150.6 truncated
  EXPECT_TRUE(log().empty());
  EXPECT_EQ(fake.appleEvents.aliveDescriptors, 0);
}

TEST_F(KTProcessQuitting, TimeoutsOutOfRangeAreClamped) {
  const KTProcessPointer process = start({});
  for (const float timeout : {1e30F, -1e30F, std::numeric_limits<float>::quiet_NaN()}) {
    process->sendAppleEvent(1, 2, timeout);
  }
  EXPECT_EQ(fake.appleEvents.sent[0].sending.timeoutTicks, std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(fake.appleEvents.sent[1].sending.timeoutTicks, std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(fake.appleEvents.sent[2].sending.timeoutTicks, std::numeric_limits<std::int32_t>::min());
}

TEST_F(KTProcessQuitting, OnlyAFailureToSendAnEventIsLogged) {
  const KTProcessPointer process = start({});
  fake.appleEvents.sendStatus = -1712;
  process->sendAppleEvent(1, 2, 1);
  EXPECT_EQ(log(), Strings{"*** event error: -1712"});
  fake.appleEvents.eventStatus = -1701;
  process->sendAppleEvent(1, 2, 1);
  fake.appleEvents.addressStatus = -108;
  process->sendAppleEvent(1, 2, 1);
  EXPECT_EQ(log().size(), 1u);
  EXPECT_EQ(fake.appleEvents.aliveDescriptors, 0);
}

TEST_F(KTProcessQuitting, ActivatingHidingAndWakingReachTheProcess) {
  const KTProcessPointer process = start({});
  process->setFrontProcess();
  process->setFrontProcessFrontWindowOnly();
  process->setHidden(true);
  EXPECT_EQ(process->isHidden(), true);
  process->setHidden(false);
  EXPECT_EQ(process->isHidden(), false);
  process->wakeUp();
  EXPECT_EQ(started->requests, (Strings{"front", "front window", "hide", "show", "wake"}));
}

TEST_F(KTProcessQuitting, TemporarilySwitchOutBringsThisProgramInFrontAndThenTheProcess) {
  const KTProcessPointer process = start({});
  process->temporarilySwitchOut();
  EXPECT_EQ(started->requests, (Strings{"front window", "wake"}));
  EXPECT_EQ(fake.applications.front, started->number);
}

TEST_F(KTProcessQuitting, TemporarilySwitchOutOnThisProgramBringsItInFrontTwiceAndWakesIt) {
  const KTProcessPointer current = fake.processes.currentProcess();
  current->temporarilySwitchOut();
  EXPECT_EQ(fake.applications.requestsOf(current->serialNumber()),
            (Strings{"front", "front window", "wake"}));
  EXPECT_TRUE(log().empty());
}

TEST_F(KTProcessQuitting, TemporarilySwitchOutWithoutACurrentProcessStillActivatesTheReceiver) {
  fake.applications.current = std::nullopt;
  start({})->temporarilySwitchOut();
  EXPECT_EQ(started->requests, (Strings{"front window", "wake"}));
}

}  // namespace
}  // namespace halvorn
