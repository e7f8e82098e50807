// The clipboard, as far as counting goes.
#pragma once

#include <cstdint>

namespace halvorn {

class Pasteboard {
 public:
  virtual ~Pasteboard() = default;
  // A number that grows whenever any program puts something on the clipboard or empties it; changes made
  // before the call are counted. It stands still where the desktop does not tell. Thread: main.
  [[nodiscard]] virtual std::int64_t changeCount() = 0;
};

}  // namespace halvorn
