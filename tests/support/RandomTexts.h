// Random texts, rich in the characters that text code gets wrong.
//
// How many a test looks at: KT_RANDOM_TEXTS in the environment says how many for all tests of one program
// together; without it a million, under sanitizers 50,000. KT_RANDOM_SEED begins another sequence.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

#include "Core/Text.h"

namespace halvorn {

class RandomTexts {
 public:
  RandomTexts() : engine_(static_cast<std::uint32_t>(setting("KT_RANDOM_SEED", 20191118))) {}

  // The share of one test among that many.
  [[nodiscard]] static std::size_t share(std::size_t numberOfTests) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr unsigned long kAll = 50'000;
#else
    constexpr unsigned long kAll = 1'000'000;
#endif
    return setting("KT_RANDOM_TEXTS", kAll) / numberOfTests + 1;
  }

  // 0 to limit - 1.
  [[nodiscard]] std::size_t below(std::size_t limit) { return engine_() % limit; }

  // Mostly short, now and then long enough for code that goes by blocks, rarely for code that goes by pages.
  [[nodiscard]] std::u16string units(std::u16string_view alphabet) {
    const std::size_t length = below(2048) == 0 ? below(6000) : below(16) == 0 ? below(200) : below(14);
    std::u16string result;
    while (result.size() < length) result.push_back(alphabet[below(alphabet.size())]);
    return result;
  }
  // A few letters of the alphabet, often again and again.
  [[nodiscard]] Text text(std::u16string_view alphabet) {
    if (below(3) != 0) return Text(units(alphabet));
    const char16_t few[] = {alphabet[below(alphabet.size())], alphabet[below(alphabet.size())]};
    return Text(units({few, 2}));
  }
  // Of everything.
  [[nodiscard]] Text text() { return text(kEdgeUnits); }

  static constexpr std::u16string_view kEdgeUnits =
      u"ab\\\\\\nrt\"\r\n\t "
      u"\u00A0,.*019%xX+-\u0001\u001F\u007F\u0085\u00AD\u00E9\u00DF\u3000\uFE0F\u200D\uFEFF\uFFFF"
      u"\xD83D\xDE00\xD83C\xDFFB\xDBFF\xDC00";

 private:
  static unsigned long setting(const char* name, unsigned long otherwise) {
    const char* const value = std::getenv(name);
    return value != nullptr ? std::strtoul(value, nullptr, 10) : otherwise;
  }

  std::minstd_rand engine_;
};

}  // namespace halvorn
