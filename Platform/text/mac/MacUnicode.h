// Unicode, answered by the system's character sets and strings.
#pragma once

#include "Platform/text/Unicode.h"

namespace halvorn {

class MacUnicode : public Unicode {
 public:
  [[nodiscard]] bool isLetter(char32_t scalar) const override;
  [[nodiscard]] bool isAlphanumeric(char32_t scalar) const override;
  [[nodiscard]] bool isControl(char32_t scalar) const override;
  [[nodiscard]] bool isWhiteSpace(char32_t scalar) const override;
  [[nodiscard]] bool isUnassigned(char32_t scalar) const override;
  [[nodiscard]] Text caseFolded(const Text& text) const override;
  [[nodiscard]] Text decomposed(const Text& text) const override;
  [[nodiscard]] Ordering compareCaseInsensitive(const Text& a, const Text& b) const override;
};

}  // namespace halvorn
