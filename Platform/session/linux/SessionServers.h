// The servers of a session, asked for a first word before the toolkit connects to them: it waits for their answer without
// a limit, and ends the program when there is no display.
//
// Thread: any.
// Why: docs/decisions/033-a-start-without-waiting.md
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "Platform/session/Answer.h"

namespace halvorn {

// All that one start may wait for servers.
inline constexpr std::chrono::milliseconds kLongestForDisplay{1000};
inline constexpr std::chrono::milliseconds kLongestForBuses{1000};

// Missing when nobody takes the connection or it is refused; nullopt is no name. A display on another computer is not
// asked: it counts as one that answers.
[[nodiscard]] Answer askDisplay(const std::optional<std::string>& displayName,
                                std::chrono::milliseconds patience = kLongestForDisplay);

struct BusAnswers {
  Answer session = Answer::Missing;
  Answer accessibility = Answer::Missing;
};
// Asks the session bus for its greeting, and the accessibility bus that it, or `accessibilityAddress`, tells of.
[[nodiscard]] BusAnswers askBuses(const std::optional<std::string>& sessionAddress,
                                  const std::optional<std::string>& accessibilityAddress,
                                  std::chrono::milliseconds patience = kLongestForBuses);

}  // namespace halvorn
