// Values as JSON, on one line.
#pragma once

#include <string>

#include "Core/PropertyValue.h"

namespace halvorn {

// A lone surrogate or a byte that is no UTF-8 has no place in JSON; it becomes U+FFFD.
[[nodiscard]] std::string json(const Text& text);
// "null" for what is no number.
[[nodiscard]] std::string json(double number);
// Dictionaries in the order of their keys; a date as seconds, data as its bytes' count.
[[nodiscard]] std::string json(const PropertyValue& value);

}  // namespace halvorn
