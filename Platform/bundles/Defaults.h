// User defaults: the person's settings, with the command line ("-key value") above them.
#pragma once

#include <optional>

#include "Core/PropertyValue.h"
#include "Core/Text.h"

namespace halvorn {

class Defaults {
 public:
  virtual ~Defaults() = default;
  // Thread: any. The argument domain first, then the program's own domain, then the one for all programs.
  [[nodiscard]] virtual std::optional<PropertyValue> objectForKey(const Text& key) const = 0;
  // The value in the domain of another program ("com.example.sound").
  [[nodiscard]] virtual std::optional<PropertyValue> objectForKey(const Text& key,
                                                                  const Text& domain) const = 0;

  // PropertyValue::isTrue() of the value; false when missing.
  [[nodiscard]] bool boolForKey(const Text& key) const {
    const auto value = objectForKey(key);
    return value && value->isTrue();
  }
};

}  // namespace halvorn
