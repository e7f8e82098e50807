// Property lists in XML.
#pragma once

#include <optional>
#include <string_view>

#include "Platform/bundles/linux/PropertyListReader.h"

namespace halvorn {

[[nodiscard]] std::optional<PropertyValue> readXmlPropertyList(std::string_view bytes,
                                                               const PropertyListLimits& limits);

}  // namespace halvorn
