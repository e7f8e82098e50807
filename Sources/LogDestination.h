// Where the log goes.
#pragma once

#include <vector>

#include "Core/Text.h"

namespace halvorn {

class SearchPaths;
class StandardStreams;

// A product starts the installer with arguments; a person who does so by hand names at most a language.
[[nodiscard]] bool isStartedByProduct(const std::vector<Text>& argumentList);

// From now on the standard streams are the installer's log file, or lead nowhere where it cannot be opened. The file that
// holds the log; nullopt when none does.
[[nodiscard]] OptionalText openLogFile(StandardStreams& streams, const SearchPaths& searchPaths);

}  // namespace halvorn
