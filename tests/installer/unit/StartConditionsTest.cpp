#include "Sources/StartConditions.h"

#include <gtest/gtest.h>

#include "tests/fakes/RecordingLog.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

TEST(StartConditions, NothingStandsInTheWayOfAnOrdinaryStart) {
  EXPECT_EQ(obstacleToTheWindow({}), std::nullopt);
  RecordingLog log;
  logWhatIsMissing({}, log);
  EXPECT_TRUE(log.lines().empty());
}

TEST(StartConditions, EachObstacleHasASentenceOfItsOwn) {
  const struct {
    StartConditions conditions;
    const char* sentence;
  } kCases[] = {
      {{.display = Answer::Missing}, "ERROR -- Without a window: there is no display (DISPLAY is not set)."},
      {{.display = Answer::Missing, .displayName = ":9"},
       "ERROR -- Without a window: the display :9 cannot be reached."},
      {{.display = Answer::Silent, .displayName = ":9"},
       "ERROR -- Without a window: the display :9 does not answer."},
      {{.hasThreads = false}, "ERROR -- Without a window: no further thread can be had (ulimit -u)."},
      {{.hasDescriptors = false},
       "ERROR -- Without a window: too few files may be open at once (ulimit -n)."},
      {{.hasProcessTable = false},
       "ERROR -- Without a window: /proc is missing, where running programs are seen."}};
  for (const auto& each : kCases) EXPECT_EQ(obstacleToTheWindow(each.conditions), Text(each.sentence));
}

TEST(StartConditions, WhatDoesNotAnswerIsNoObstacleAndHasALine) {
  const StartConditions conditions{.sessionBus = Answer::Silent,
                                   .accessibilityBus = Answer::Silent,
                                   .ignoredVariables = {"QT_SCALE_FACTOR=-1"}};
  EXPECT_EQ(obstacleToTheWindow(conditions), std::nullopt);
  RecordingLog log;
  logWhatIsMissing(conditions, log);
  EXPECT_EQ(log.lines(), (std::vector<std::string>{
                             "The session bus does not answer: the desktop's settings are not known",
                             "The accessibility bus does not answer: screen readers are told nothing",
                             "Not heeded: QT_SCALE_FACTOR=-1"}));
}

TEST(StartConditions, WhatIsNotThereIsMissedByNobody) {
  RecordingLog log;
  logWhatIsMissing({.sessionBus = Answer::Missing, .accessibilityBus = Answer::Missing}, log);
  EXPECT_TRUE(log.lines().empty());
}

}  // namespace
}  // namespace halvorn
