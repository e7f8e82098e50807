// The desktop's workspace: opening, registering, icons, and what starts with the session.
//
// Thread: any.
#pragma once

#include <optional>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

class Workspace {
 public:
  virtual ~Workspace() = default;

  // Opens the item as the user would: an application bundle is launched as the user, anything else goes to
  // its default application. True when that started. Never waits for the program to end.
  [[nodiscard]] virtual bool openFile(const Text& path) = 0;
  // Opens the web page in the default browser.
  virtual bool openUrl(const Text& url) = 0;
  // Makes the bundle known to the desktop (launcher entry, icons). Takes the path as the text of a URL and
  // accepts it with or without "file://". 0, or a negative status.
  [[nodiscard]] virtual int registerBundle(const Text& urlText) = 0;
  // Whether the desktop has an icon for the item.
  [[nodiscard]] virtual bool hasIcon(const Text& path) = 0;
  // The name people see: localized, the extension ".app" hidden; else the file name.
  [[nodiscard]] virtual Text displayName(const Text& path) const = 0;
  // What the session starts by itself when the person logs in, in list order, each as the bundle that it
  // starts; nullopt for an item that starts none, so that nobody takes a plain file for a bundle that can be
  // replaced. The whole answer is nullopt when there is no list at all.
  [[nodiscard]] virtual std::optional<std::vector<OptionalText>> loginItems() const = 0;
};

}  // namespace halvorn
