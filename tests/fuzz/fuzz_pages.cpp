// The character set that a page declares.
#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/linux/IcuTextCodecs.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/fuzz/FuzzInput.h"

using namespace halvorn;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const IcuTextCodecs codecs;
  const RecordingLog log;
  const std::string_view bytes = FuzzInput(data, size).rest();
  const Text text = StringExtensions::stringWithHTML(bytes, codecs, log);
  require(text.length() <= 2 * bytes.size(), "no encoding makes more than two units of a byte");
  require(log.lines().size() <= 2, "at most two lines are logged");
  return 0;
}
