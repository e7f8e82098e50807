// What this program finds when it starts, and what it says of it: why there can be no window, or what there is to do
// without.
#pragma once

#include <vector>

#include "Core/Text.h"
#include "Platform/session/Answer.h"

namespace halvorn {

class Log;

struct StartConditions {
  Answer display = Answer::Given;
  OptionalText displayName = {};
  bool hasThreads = true;
  bool hasDescriptors = true;
  bool hasProcessTable = true;
  Answer sessionBus = Answer::Given;
  Answer accessibilityBus = Answer::Given;
  std::vector<Text> ignoredVariables = {};  // "QT_SCALE_FACTOR=-1"
};

// The program's exit status when there can be no window.
inline constexpr int kNoWindow = 69;

// Why no window can be shown; nullopt when nothing stands in its way.
[[nodiscard]] OptionalText obstacleToTheWindow(const StartConditions& conditions);

// Logs: a line for each service that is there and does not answer, and for each variable that is not heeded. One that
// is not there is missed by nobody.
void logWhatIsMissing(const StartConditions& conditions, const Log& log);

}  // namespace halvorn
