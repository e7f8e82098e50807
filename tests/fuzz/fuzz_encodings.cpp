// Bytes of unknown encoding, and of each known one.
#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/linux/IcuTextCodecs.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "tests/fakes/FakeFileManager.h"
#include "tests/fuzz/FuzzInput.h"

using namespace halvorn;
using namespace halvorn::StringExtensions;

namespace {

// What begins with the mark, or with the mark of the other byte order, is taken for marked when it is read.
bool beginsLikeMark(const Text& text) { return text.at(0) == 0xFEFF || text.at(0) == 0xFFFE; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const IcuTextCodecs codecs;
  static const IcuUnicode unicode;
  const std::string bytes(FuzzInput(data, size).rest());
  FakeFileManager files;
  files.addFile("/file", bytes);
  const OptionalText best = stringWithBestEncodingFromFile("/file", files, codecs, unicode);
  require(best.has_value() || bytes.empty(), "bytes are some text, in Latin-1 at least");
  if (best && !best->isEmpty())
    require(reasonableTextFactor(*best, "", unicode) <= 1.0F, "no score is better than 1");

  using namespace TextEncodings;
  for (const TextEncoding encoding : {ascii, utf8, latin1, TextEncodings::unicode, macRoman, utf16BigEndian,
                                      utf16LittleEndian, utf32BigEndian, utf32LittleEndian}) {
    const auto text = codecs.decode(bytes, encoding);
    if (!text || text->isEmpty() || beginsLikeMark(*text)) continue;
    const auto again = codecs.encode(*text, encoding);
    require(again && codecs.decode(*again, encoding) == text, "what was decoded can be encoded");
  }
  return 0;
}
