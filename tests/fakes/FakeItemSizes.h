// Sizes that a test writes down.
#pragma once

#include <map>

#include "Platform/files/ItemSizes.h"

namespace halvorn {

class FakeItemSizes : public ItemSizes {
 public:
  std::optional<std::uint64_t> bytesIn(const Text& path, const Cancellation& givenUp) const override {
    const auto found = sizes.find(path);
    if (found == sizes.end() || givenUp.isRequested()) return std::nullopt;
    return found->second;
  }
  std::map<Text, std::uint64_t> sizes;
};

}  // namespace halvorn
