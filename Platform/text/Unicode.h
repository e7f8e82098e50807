// Facts about Unicode characters, and the two forms of a text that comparisons need.
//
// Thread: any, for all of it. Fails: nothing here can.
#pragma once

#include "Core/Ordering.h"
#include "Core/Text.h"

namespace halvorn {

class Unicode {
 public:
  virtual ~Unicode() = default;

  // General category L* or M*.
  [[nodiscard]] virtual bool isLetter(char32_t scalar) const = 0;
  // General category L*, M* or N*.
  [[nodiscard]] virtual bool isAlphanumeric(char32_t scalar) const = 0;
  // General category Cc or Cf: what a line of text cannot show.
  [[nodiscard]] virtual bool isControl(char32_t scalar) const = 0;
  // The property White_Space: blanks of every width and line ends, U+200B not among them.
  [[nodiscard]] virtual bool isWhiteSpace(char32_t scalar) const = 0;
  // General category Cn: no character has this code. Surrogates are not among them.
  [[nodiscard]] virtual bool isUnassigned(char32_t scalar) const = 0;

  // Full case folding, the same in every locale: "Straße" gives "strasse". Lone surrogates stay.
  [[nodiscard]] virtual Text caseFolded(const Text& text) const = 0;
  // The canonical decomposition: U+00E9 gives "e", U+0301. Lone surrogates stay.
  [[nodiscard]] virtual Text decomposed(const Text& text) const = 0;

  // Compares without regard to case (full case folding), else literally.
  [[nodiscard]] virtual Ordering compareCaseInsensitive(const Text& a, const Text& b) const = 0;
};

}  // namespace halvorn
