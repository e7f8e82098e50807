// A clipboard that never changes.
#pragma once

#include "Platform/session/Pasteboard.h"

namespace halvorn {

class NullPasteboard : public Pasteboard {
 public:
  std::int64_t changeCount() override { return 0; }
};

}  // namespace halvorn
