// Amounts of data as the person reads them.
#pragma once

#include <cstdint>

#include "Core/Text.h"

namespace halvorn {

class LocalizedSizes {
 public:
  // Two amounts, of which one is a part of the other.
  struct Part {
    Text part;   // "1.2"
    Text whole;  // "2.0 GB"
  };
  virtual ~LocalizedSizes() = default;
  // Both in the unit that suits the whole, which alone names it. Thread: any.
  [[nodiscard]] virtual Part partOf(std::uint64_t bytes, std::uint64_t whole) const = 0;
  // A number as it stands in a sentence: "10". Thread: any.
  [[nodiscard]] virtual Text number(std::uint64_t number) const = 0;
};

}  // namespace halvorn
