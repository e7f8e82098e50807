// Property-list files.
#pragma once

#include <optional>

#include "Core/PropertyValue.h"
#include "Core/Text.h"

namespace halvorn {

class PropertyLists {
 public:
  virtual ~PropertyLists() = default;
  // The dictionary in the file, XML or binary; nullopt when it cannot be read or holds something else.
  // Hostile, truncated or huge files count as missing. Thread: any.
  [[nodiscard]] virtual std::optional<PropertyDictionary> dictionaryAtPath(const Text& path) const = 0;
};

}  // namespace halvorn
