#include "KTStuff/CocoaExtensions/StringExtensionsEncodings.h"

#include <cstring>

namespace halvorn {
namespace StringExtensions {

Text stringWithOSType(FourCharCode code, const FourCharCodes& codes) { return codes.textOf(code); }

Text stringWithMacRomanCString(const char* bytes, std::int32_t length) {
  return Text::fromMacRoman({bytes, length > 0 ? static_cast<std::size_t>(length) : 0});
}

Text stringWithMacRomanCString(const char* bytes) { return Text::fromMacRoman({bytes, std::strlen(bytes)}); }

bool appendToFile(const Text& text, const Text& path, TextEncoding encoding, FileManager& files,
                  const FileHandles& handles, const TextCodecs& codecs) {
  auto handle = handles.openForWriting(path);
  if (!handle && files.createEmptyFile(path)) handle = handles.openForWriting(path);
  if (!handle || !handle->seekToEnd()) return false;
  // KEEP: only now, so that a missing file has been made also when the text cannot be converted.
  const auto bytes = codecs.encode(text, encoding);
  return bytes && handle->write(*bytes);
}

}  // namespace StringExtensions

namespace MutableStringExtensions {

MutableText stringWithMacRomanCString(const char* bytes, std::int32_t length) {
  return MutableText(StringExtensions::stringWithMacRomanCString(bytes, length));
}

MutableText stringWithMacRomanCString(const char* bytes) {
  return MutableText(StringExtensions::stringWithMacRomanCString(bytes));
}

}  // namespace MutableStringExtensions
}  // namespace halvorn
