// Property lists: XML, binary and the old text format, told apart by their first bytes.
//
// The files come from anywhere, so every reader is bounded: whatever does not fit the limits,
// ends too early or contradicts itself is no property list. Nothing outside the bytes is ever
// read, declared entities are refused.
//
// Numbers above the largest signed 64-bit integer become reals. In the old format every leaf is a text or
// data, unless it is written with a type (<*I12>). The last of several equal keys counts.
//
// Thread: any.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "Core/PropertyValue.h"

namespace halvorn {

struct PropertyListLimits {
  std::size_t fileBytes = 8UL * 1024 * 1024;
  int depth = 128;               // containers within containers
  std::size_t values = 200'000;  // counted each time they appear, also when a binary list shares them
  std::size_t contentBytes = 32UL * 1024 * 1024;  // of texts and data, counted likewise
};

[[nodiscard]] std::optional<PropertyValue> readPropertyList(std::string_view bytes,
                                                            const PropertyListLimits& limits = {});
// A property list that is a dictionary.
[[nodiscard]] std::optional<PropertyDictionary> readPropertyDictionary(std::string_view bytes,
                                                                       const PropertyListLimits& limits = {});
// The same, in a regular file; nullopt also for one that is larger than a property list may be.
[[nodiscard]] std::optional<PropertyDictionary> readPropertyListFile(const std::string& path);
// A property list that is a dictionary, or its entries in the old format without the braces around them.
[[nodiscard]] std::optional<PropertyDictionary> readStringTable(std::string_view bytes,
                                                                const PropertyListLimits& limits = {});

// What is left of the limits while a list is read.
class PropertyListBudget {
 public:
  explicit PropertyListBudget(const PropertyListLimits& limits)
      : values_(limits.values), bytes_(limits.contentBytes), depth_(limits.depth) {}
  // Pays for one value with that much content; false when the limits do not allow it.
  [[nodiscard]] bool spend(std::size_t contentBytes = 0) {
    if (values_ == 0 || contentBytes > bytes_) return false;
    --values_;
    bytes_ -= contentBytes;
    return true;
  }
  [[nodiscard]] bool allowsDepth(int depth) const { return depth <= depth_; }

 private:
  std::size_t values_;
  std::size_t bytes_;
  int depth_;
};

}  // namespace halvorn
