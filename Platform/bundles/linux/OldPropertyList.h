// Property lists in the old text format: { key = value; list = (a, "b c"); data = <0fbd 77>; }
//
// Also string tables, which are the entries of a dictionary without braces; "key"; alone stands for itself.
#pragma once

#include <optional>

#include "Platform/bundles/linux/PropertyListReader.h"

namespace halvorn {

[[nodiscard]] std::optional<PropertyValue> readOldPropertyList(const Text& text,
                                                               const PropertyListLimits& limits);
[[nodiscard]] std::optional<PropertyDictionary> readOldStringTable(const Text& text,
                                                                   const PropertyListLimits& limits);

}  // namespace halvorn
