// Numbers parsed, texts with numbers compared.
#include <cstdlib>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "tests/fuzz/FuzzInput.h"

using namespace halvorn;
using namespace halvorn::StringExtensions;

namespace {

// strtoll with the base worked out here: base 0 means different things to different C standards.
std::int64_t expectedValue(const Text& text) {
  const std::string bytes = text.bytes();
  const char* number = bytes.c_str();
  while (*number == ' ' || (*number >= '\t' && *number <= '\r')) ++number;
  if (*number == '-' || *number == '+') ++number;
  const bool isHexadecimal = number[0] == '0' && (number[1] | 0x20) == 'x';
  return std::strtoll(bytes.c_str(), nullptr, isHexadecimal ? 16 : number[0] == '0' ? 8 : 10);
}

int sign(Ordering ordering) { return static_cast<int>(ordering); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const IcuUnicode unicode;
  FuzzInput input(data, size);
  const Text a = input.text();
  const Text b = input.text();
  const Text c = input.text();
  require(numericValue(a) == expectedValue(a), "numericValue is what strtoll says");
  require(!isIntegerNumber(a) || a.length() > 15 || smartFloatValue(a) == static_cast<float>(a.doubleValue()),
          "digits are a float");
  (void)booleanValue(a);

  for (const auto compare : {numericCompare, caseInsensitiveNumericCompare}) {
    const int ab = sign(compare(a, b, unicode));
    require(sign(compare(a, a, unicode)) == 0, "a text is the same as itself");
    require(ab == -sign(compare(b, a, unicode)), "the order does not depend on who asks");
    const int bc = sign(compare(b, c, unicode));
    if (ab == bc) require(sign(compare(a, c, unicode)) == ab, "the order is transitive");
  }
  return 0;
}
