// Aliases that a test writes down.
#pragma once

#include <map>

#include "Platform/files/Aliases.h"

namespace halvorn {

class FakeAliases : public Aliases {
 public:
  OptionalText targetOf(const Text& path) const override {
    const auto found = targets.find(path);
    return found == targets.end() ? std::nullopt : OptionalText(found->second);
  }
  std::map<Text, Text> targets;  // path -> where it leads in the end
};

}  // namespace halvorn
