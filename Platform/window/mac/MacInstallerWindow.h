// The installer window in AppKit, made from the interface description and handed out as outlets.
//
// Thread: main. A MacApplication must exist.
#pragma once

#include <functional>
#include <memory>

#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/window/Images.h"
#include "Platform/window/InstallerOutlets.h"

namespace halvorn {

class MacApplication;

// What the controls of the window do, by the selectors that the interface description names.
struct MacInstallerActions {
  std::function<void()> install = {};
  std::function<void()> cancel = {};
  std::function<void()> openDocumentation = {};
  std::function<void()> windowClosed = {};
  std::function<void(const Text& url)> openLink = {};
};

class MacInstallerWindow {
 public:
  struct Loaded {
    std::unique_ptr<MacInstallerWindow> window;  // null when the description cannot be used
    Text problem;                                // then: why, for the log
  };
  // The description lists texts by their English keys, which are looked up in `strings`; that table's entry
  // "LayoutDirection" = "RTL" turns the window around. A description without one of the outlets is unusable.
  [[nodiscard]] static Loaded load(const Text& descriptionPath, const LocalizedStrings& strings,
                                   Images& images, MacApplication& application);

  ~MacInstallerWindow();
  MacInstallerWindow(const MacInstallerWindow&) = delete;
  MacInstallerWindow& operator=(const MacInstallerWindow&) = delete;

  // The references live as long as this object.
  [[nodiscard]] InstallerOutlets outlets();
  void setActions(MacInstallerActions actions);
  // Shows the window when the description says that it is there from the start and nobody has shown it yet.
  void showIfVisibleAtLaunch();
  void hide();

  struct Parts;
  [[nodiscard]] Parts& parts() { return *parts_; }

 private:
  explicit MacInstallerWindow(std::unique_ptr<Parts> parts);
  std::unique_ptr<Parts> parts_;
};

}  // namespace halvorn
