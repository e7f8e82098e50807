// Autostart entries as login items.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Core/Text.h"
#include "Platform/session/linux/Environment.h"

namespace halvorn {

class DesktopEntry;
class XdgFolders;

// The person's own entries come before the system's, each folder's by file name. A file of the person's hides
// the system's of that name. Hidden entries and those for other desktops than the running one are not in the
// list; an entry whose program is not there, or lies in no bundle, does not resolve.
class XdgLoginItems {
 public:
  XdgLoginItems(const XdgFolders& folders, const Environment& environment);

  // Read afresh at each call.
  [[nodiscard]] std::optional<std::vector<OptionalText>> snapshot() const;
  // The entries that start a program of the bundle, the person's own and the system's.
  [[nodiscard]] std::vector<std::string> filesStarting(const Text& bundlePath) const;

 private:
  [[nodiscard]] bool isStartedHere(const DesktopEntry& entry) const;
  [[nodiscard]] OptionalText resolve(const DesktopEntry& entry) const;

  std::vector<std::string> folders_;  // most important first
  Environment environment_;
};

}  // namespace halvorn
