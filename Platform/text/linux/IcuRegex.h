// Regex, answered by ICU.
#pragma once

#include "Platform/text/Regex.h"

namespace halvorn {

class IcuRegex : public Regex {
 public:
  [[nodiscard]] RegexCompilation compile(const Text& pattern, RegexOptions options) const override;
};

}  // namespace halvorn
