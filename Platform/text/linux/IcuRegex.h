// Regex, answered by ICU.
// Why: docs/decisions/025-bounded-libraries.md
#pragma once

#include "Platform/text/Regex.h"

namespace halvorn {

class IcuRegex : public Regex {
 public:
  [[nodiscard]] RegexCompilation compile(const Text& pattern, RegexOptions options) const override;
};

}  // namespace halvorn
