// StringExtensions, virtual characters: single codes that stand for whole sequences.
//
//   0xA0000 .. 0xA02A3   flags: 0xA0000 + 26 * a + b is the flag of the letters a and b (A is 0)
//   0xA0300 .. 0xA0399   rows of ZWJ_SEQUENCES
//   0xA1000 .. 0xA100B   rows of KEYCAP_SEQUENCES
//   0xB0000 ..           ligatures that the program has defined
//
// What lies between is ordinary.
#pragma once

#include <cstdint>
#include <vector>

#include "Core/Text.h"
#include "KTStuff/CocoaExtensions/StringExtensionsEmojiTables.h"

namespace halvorn::StringExtensions {

// One object is made at the program's root, which defines the ligatures at start-up.
// Thread: one at a time. isVirtualCharacter() may be asked anywhere.
class VirtualCharacters {
 public:
  VirtualCharacters() = default;
  // The ligatures are those of the whole program.
  VirtualCharacters(const VirtualCharacters&) = delete;
  VirtualCharacters& operator=(const VirtualCharacters&) = delete;

  // Ligature i is the virtual character 0xB0000 + i. Replaces those defined before.
  void defineLigatures(const std::vector<Text>& ligatures) { ligatures_ = ligatures; }

  // The text of a code: the sequence of a virtual character (of a ligature the very text that was defined),
  // else the character itself. KEEP: no upper check; codes beyond 0x10FFFF give surrogates that mean nothing.
  [[nodiscard]] Text initWithUTF32Character(std::uint32_t code) const;
  [[nodiscard]] Text stringWithUTF32Character(std::uint32_t code) const {
    return initWithUTF32Character(code);
  }

  // KEEP: every code from 0xB0000 to 0xBFFFE is virtual, however many ligatures are defined.
  [[nodiscard]] static bool isVirtualCharacter(std::int32_t code);

  // The scalars of a flag, ZWJ sequence or keycap, followed by a zero; null for anything else, also for
  // ligatures. Those of a flag are good until the next flag is asked for.
  [[nodiscard]] const char32_t* utf32CharactersForVirtualCharacter(std::uint32_t code);

 private:
  std::vector<Text> ligatures_;
  char32_t flag_[3] = {};
};

}  // namespace halvorn::StringExtensions
