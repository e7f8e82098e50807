#include "KTStuff/CocoaExtensions/StringExtensionsDigests.h"

#include <string>

namespace halvorn::StringExtensions {

Text MD5String(const Text& text, const Digests& digests) {
  const std::string bytes = text.bytes();
  const auto digest = digests.md5(std::string_view(bytes).substr(0, bytes.find('\0')));
  if (!digest) return Text();
  std::u16string digits;
  for (const std::uint8_t byte : *digest) {
    digits.push_back(u"0123456789abcdef"[byte >> 4]);
    digits.push_back(u"0123456789abcdef"[byte & 0xF]);
  }
  return Text(std::move(digits));
}

}  // namespace halvorn::StringExtensions
