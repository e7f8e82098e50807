// Binary property lists ("bplist00").
#pragma once

#include <optional>
#include <string_view>

#include "Platform/bundles/linux/PropertyListReader.h"

namespace halvorn {

[[nodiscard]] std::optional<PropertyValue> readBinaryPropertyList(std::string_view bytes,
                                                                  const PropertyListLimits& limits);

}  // namespace halvorn
