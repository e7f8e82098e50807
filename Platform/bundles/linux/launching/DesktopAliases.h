// Aliases of a Linux desktop: symbolic links, and desktop entries of the type Link.
#pragma once

#include "Platform/files/Aliases.h"

namespace halvorn {

class DesktopAliases : public Aliases {
 public:
  // Entries that lead to a web page or to another computer lead nowhere.
  OptionalText targetOf(const Text& path) const override;
};

}  // namespace halvorn
