// By whom this program was started.
#pragma once

#include <optional>

#include "Core/PropertyValue.h"

namespace halvorn {

class LaunchContext {
 public:
  virtual ~LaunchContext() = default;
  // What is known of the process that launched this one. "FileCreator" is its creator as four characters;
  // "lgnw" is the one that launches the login items of a session. nullopt when the launcher is gone or the
  // system does not tell. Thread: any.
  [[nodiscard]] virtual std::optional<PropertyDictionary> launcherInformation() const = 0;
};

}  // namespace halvorn
