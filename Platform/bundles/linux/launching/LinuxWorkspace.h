// The workspace of a desktop that follows the freedesktop rules.
#pragma once

#include <string>
#include <vector>

#include "Platform/bundles/Workspace.h"
#include "Platform/bundles/linux/launching/BundleRegistration.h"
#include "Platform/bundles/linux/launching/XdgLoginItems.h"

namespace halvorn {

class Bundles;
class Launcher;
class XdgFolders;

class LinuxWorkspace : public Workspace {
 public:
  LinuxWorkspace(const Bundles& bundles, const XdgFolders& folders, const Environment& environment,
                 const Launcher& launcher, std::vector<Text> languages, IconDrawing drawing = {});

  // A bundle: its program, when it is one that Linux can start. Anything else: xdg-open.
  bool openFile(const Text& path) override;
  // Web pages only, http and https.
  bool openUrl(const Text& url) override;
  int registerBundle(const Text& urlText) override;
  // True for everything that exists: where the item has no icon of its own, desktops show that of its kind.
  bool hasIcon(const Text& path) override;
  Text displayName(const Text& path) const override;
  std::optional<std::vector<OptionalText>> loginItems() const override { return loginItems_.snapshot(); }

 private:
  [[nodiscard]] bool launchBundle(const Text& path) const;
  [[nodiscard]] bool openWithDesktop(const std::string& argument) const;

  const Bundles& bundles_;
  const Launcher& launcher_;
  std::vector<Text> languages_;
  BundleRegistration registration_;
  XdgLoginItems loginItems_;
};

// Whether the item at the path is an application bundle: a folder with the extension "app".
[[nodiscard]] bool isApplicationBundle(const Text& path);

}  // namespace halvorn
