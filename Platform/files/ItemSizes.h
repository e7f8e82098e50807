// How much there is to copy.
#pragma once

#include <cstdint>
#include <optional>

#include "Core/Cancellation.h"
#include "Core/Text.h"

namespace halvorn {

class ItemSizes {
 public:
  virtual ~ItemSizes() = default;
  // The bytes of the file, or of all files in the folder, links not followed; what cannot be looked at counts as
  // nothing. nullopt when there is no such item, or as soon as nobody wants to know any more. Takes as long as looking at
  // each file. Thread: any.
  [[nodiscard]] virtual std::optional<std::uint64_t> bytesIn(const Text& path,
                                                             const Cancellation& givenUp) const = 0;
};

}  // namespace halvorn
