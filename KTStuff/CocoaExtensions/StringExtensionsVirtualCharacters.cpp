#include "KTStuff/CocoaExtensions/StringExtensionsVirtualCharacters.h"

#include <string>

#include "KTStuff/CocoaExtensions/StringExtensionsUnits.h"

namespace halvorn::StringExtensions {
namespace {

// Half-open ranges of codes.
struct CodeRange {
  std::uint32_t first;
  std::uint32_t count;
  [[nodiscard]] constexpr bool contains(std::uint32_t code) const {
    return code >= first && code - first < count;
  }
};

constexpr CodeRange kFlags{0xA0000, 26 * 26};
constexpr CodeRange kZWJ{0xA0300, N_ZWJ_SEQUENCES};
constexpr CodeRange kKeycaps{0xA1000, N_KEYCAP_SEQUENCES};
constexpr CodeRange kLigatures{0xB0000, 0xFFFF};
constexpr char32_t kRegionalIndicatorA = 0x1F1E6;

constexpr char32_t firstIndicator(std::uint32_t flag) {
  return kRegionalIndicatorA + (flag - kFlags.first) / 26;
}
constexpr char32_t secondIndicator(std::uint32_t flag) {
  return kRegionalIndicatorA + (flag - kFlags.first) % 26;
}

// The row of scalars with its zero, in one of the two tables; null for other codes.
const char32_t* rowOf(std::uint32_t code) {
  if (kZWJ.contains(code)) return ZWJ_SEQUENCES[code - kZWJ.first].data();
  if (kKeycaps.contains(code)) return KEYCAP_SEQUENCES[code - kKeycaps.first].data();
  return nullptr;
}

}  // namespace

Text VirtualCharacters::initWithUTF32Character(std::uint32_t code) const {
  std::u16string units;
  if (kFlags.contains(code)) {
    appendCode(units, firstIndicator(code));
    appendCode(units, secondIndicator(code));
  } else if (const char32_t* scalar = rowOf(code)) {
    for (; *scalar != 0; ++scalar) appendCode(units, *scalar);
  } else if (code >= kLigatures.first && code - kLigatures.first < ligatures_.size()) {
    return ligatures_[code - kLigatures.first];
  } else {
    appendCode(units, code);
  }
  return Text(std::move(units));
}

bool VirtualCharacters::isVirtualCharacter(std::int32_t code) {
  const auto unsignedCode = static_cast<std::uint32_t>(code);
  return kLigatures.contains(unsignedCode) || kFlags.contains(unsignedCode) || rowOf(unsignedCode) != nullptr;
}

const char32_t* VirtualCharacters::utf32CharactersForVirtualCharacter(std::uint32_t code) {
  if (!kFlags.contains(code)) return rowOf(code);
  flag_[0] = firstIndicator(code);
  flag_[1] = secondIndicator(code);
  flag_[2] = 0;
  return flag_;
}

}  // namespace halvorn::StringExtensions
