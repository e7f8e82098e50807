// Translations that a test writes down.
#pragma once

#include <map>

#include "Platform/bundles/LocalizedStrings.h"

namespace halvorn {

class FakeLocalizedStrings : public LocalizedStrings {
 public:
  Text localized(const Text& key) const override {
    const auto found = translations.find(key);
    return found == translations.end() ? key : found->second;
  }

  std::map<Text, Text> translations;
};

}  // namespace halvorn
