// What items on disk are beyond files and folders: packages, programs, aliases.
//
// Nothing outside the item is read; hostile or truncated data counts as missing. Thread: any.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Core/FourCharCode.h"
#include "Core/Text.h"

namespace halvorn {

struct ApplicationItemFlags {        // what the desktop knows of an item
  bool isPackage = false;            // a folder that people see as one thing
  bool isNativeApplication = false;  // with a program in it that this system can start
};

class ItemFacts {
 public:
  virtual ~ItemFacts() = default;
  // nullopt when there is no item at the path.
  [[nodiscard]] virtual std::optional<ApplicationItemFlags> flags(const Text& path) const = 0;
  // The bytes of a classic resource in the item's resource fork; nullopt without
  // a fork or without the resource.
  [[nodiscard]] virtual std::optional<std::string> resource(const Text& path, FourCharCode type,
                                                            std::int16_t id) const = 0;
  // Where the alias at the path leads in the end, through any number of further aliases. nullopt when the
  // item is no alias, does not exist, or leads nowhere.
  [[nodiscard]] virtual OptionalText aliasTarget(const Text& path) const = 0;
};

}  // namespace halvorn
