// What the cases of the contract are asked of: main loops, each with what is hung on it.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Platform/running/MainThread.h"
#include "Platform/running/posix/RunLoop.h"

namespace halvorn {

struct Loop {
  virtual ~Loop() = default;
  virtual RunLoop& sources() = 0;
  virtual MainThread& mainThread() = 0;
  virtual bool runUntil(const std::function<bool()>& condition, double seconds) = 0;
};

// One of those that this program was built with.
struct NamedLoop {
  const char* name;
  std::unique_ptr<Loop> (*make)();
};
[[nodiscard]] const std::vector<NamedLoop>& loops();

}  // namespace halvorn
