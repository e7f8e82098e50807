#include "Sources/StartConditions.h"

#include "Core/Format.h"
#include "Core/Log.h"

namespace halvorn {

OptionalText obstacleToTheWindow(const StartConditions& conditions) {
  if (!conditions.hasDescriptors)
    return Text("ERROR -- Without a window: too few files may be open at once (ulimit -n).");
  if (!conditions.hasProcessTable)
    return Text("ERROR -- Without a window: /proc is missing, where running programs are seen.");
  if (!conditions.hasThreads)
    return Text("ERROR -- Without a window: no further thread can be had (ulimit -u).");
  if (conditions.display == Answer::Given) return std::nullopt;
  if (!conditions.displayName)
    return Text("ERROR -- Without a window: there is no display (DISPLAY is not set).");
  return format(conditions.display == Answer::Silent
                    ? "ERROR -- Without a window: the display %@ does not answer."
                    : "ERROR -- Without a window: the display %@ cannot be reached.",
                conditions.displayName);
}

void logWhatIsMissing(const StartConditions& conditions, const Log& log) {
  if (conditions.sessionBus == Answer::Silent)
    log("The session bus does not answer: the desktop's settings are not known");
  if (conditions.accessibilityBus == Answer::Silent)
    log("The accessibility bus does not answer: screen readers are told nothing");
  for (const Text& variable : conditions.ignoredVariables) log("Not heeded: %@", variable);
}

}  // namespace halvorn
