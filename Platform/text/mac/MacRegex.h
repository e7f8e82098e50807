// Regular expressions by the system's own class. Its options are those of Regex.h.
#pragma once

#include "Platform/text/Regex.h"

namespace halvorn {

class MacRegex : public Regex {
 public:
  [[nodiscard]] RegexCompilation compile(const Text& pattern, RegexOptions options) const override;
};

}  // namespace halvorn
