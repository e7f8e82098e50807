// No property list can be read.
#pragma once

#include "Platform/bundles/PropertyLists.h"

namespace halvorn {

class NullPropertyLists : public PropertyLists {
 public:
  std::optional<PropertyDictionary> dictionaryAtPath(const Text& /*path*/) const override {
    return std::nullopt;
  }
};

}  // namespace halvorn
