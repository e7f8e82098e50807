#include "Sources/LogDestination.h"

#include "Core/Paths.h"
#include "Platform/files/SearchPaths.h"
#include "Platform/running/StandardStreams.h"

namespace halvorn {
namespace {

constexpr char kLogFile[] = "~/Library/Logs/HalvornInstaller.log";

}  // namespace

bool isStartedByProduct(const std::vector<Text>& argumentList) {
  return argumentList.size() >= 3 && argumentList[1] != Text("-AppleLanguages");
}

OptionalText openLogFile(StandardStreams& streams, const SearchPaths& searchPaths) {
  const Text path = Paths::expandingTilde(kLogFile, searchPaths.homeFolder());
  bool isOpen = false;
  for (const auto stream : {StandardStreams::Stream::Output, StandardStreams::Stream::Error}) {
    isOpen = streams.reopen(stream, path);
    // With /dev/null gone too there is nowhere left to say so.
    if (!isOpen) static_cast<void>(streams.reopen(stream, "/dev/null"));
  }
  return isOpen ? OptionalText(path) : std::nullopt;
}

}  // namespace halvorn
