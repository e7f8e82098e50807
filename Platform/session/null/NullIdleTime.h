// Nobody knows when the person was last here.
#pragma once

#include "Platform/session/IdleTime.h"

namespace halvorn {

class NullIdleTime : public IdleTime {
 public:
  std::optional<std::int64_t> nanosecondsSinceLastInput() override { return std::nullopt; }
};

}  // namespace halvorn
