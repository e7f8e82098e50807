// Patterns and templates, through the real engine.
#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/text/linux/IcuRegex.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/fuzz/FuzzInput.h"

using namespace halvorn;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const IcuRegex regex;
  static const PosixClock clock;
  const KTRegularExpression expressions([] { return &regex; });
  const RecordingLog log;
  const StringExtensions::RegexReplacing replacing(expressions, clock, log, 0.05);
  FuzzInput input(data, size);
  const Text pattern = input.text();
  const Text replacement = input.text();
  const Text text = input.text();
  const Text result = replacing.stringByReplacingOccurrencesOfRegexPattern(text, pattern, replacement);
  require(log.lines().size() <= 1, "an error is logged once");
  require(log.lines().empty() || result.isSameObject(text), "an error leaves the text as it is");
  return 0;
}
