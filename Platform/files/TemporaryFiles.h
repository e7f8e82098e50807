// Files that only this program needs, and only for a moment.
//
// Thread: any.
#pragma once

#include <optional>
#include <string>

#include "Core/Text.h"

namespace halvorn {

class TemporaryFiles {
 public:
  virtual ~TemporaryFiles() = default;
  // The path of a new, empty file under a name that nobody could foresee, readable for this user alone;
  // nullopt when none can be made.
  [[nodiscard]] virtual OptionalText create() = 0;
  // The bytes that the file holds when it is opened; what others write meanwhile
  // is left. nullopt: unreadable.
  [[nodiscard]] virtual std::optional<std::string> contents(const Text& path) const = 0;
  virtual void remove(const Text& path) = 0;  // does nothing when it is gone
};

}  // namespace halvorn
