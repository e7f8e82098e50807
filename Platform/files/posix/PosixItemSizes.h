// Sizes as the file system tells them.
#pragma once

#include "Platform/files/ItemSizes.h"

namespace halvorn {

class PosixItemSizes : public ItemSizes {
 public:
  std::optional<std::uint64_t> bytesIn(const Text& path, const Cancellation& givenUp) const override;
};

}  // namespace halvorn
