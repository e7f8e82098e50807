// Amounts as plain numbers: "300", "1000 B".
#pragma once

#include <string>

#include "Platform/text/LocalizedSizes.h"

namespace halvorn {

class FakeLocalizedSizes : public LocalizedSizes {
 public:
  Part partOf(std::uint64_t bytes, std::uint64_t whole) const override {
    return {number(bytes), number(whole) + Text(" B")};
  }
  Text number(std::uint64_t number) const override { return Text(std::to_string(number)); }
};

}  // namespace halvorn
