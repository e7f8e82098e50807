// The installer window: made from the interface description, handed out as outlets.
//
//   LoadedWindow loaded = InstallerWindow::load(descriptionPath, strings, images);
//   if (!loaded.window) ... loaded.problem
//   InstallerWinController controller(loaded.window->outlets(), ...);
//   loaded.window->setActions({.install = [&] { controller.install(); }, ...});
//   controller.awakeFromNib();
//   loaded.window->showIfVisibleAtLaunch();
//   return application.run();
//
// Thread: main. A QtApplication must exist.
#pragma once

#include <functional>
#include <memory>

#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/window/Images.h"
#include "Platform/window/InstallerOutlets.h"

namespace halvorn {

class WindowWidget;

// What the controls of the window do, by the selectors that the interface description names.
struct InstallerActions {
  std::function<void()> install = {};                  // install:
  std::function<void()> cancel = {};                   // cancel:
  std::function<void()> openDocumentation = {};        // openDocumentation:
  std::function<void()> windowClosed = {};             // after the window has been closed
  std::function<void(const Text& url)> openLink = {};  // a link of the read-me, web and mail addresses only
  std::function<void()> openReadMe = {};               // the whole of it, where only its beginning is shown
};

class InstallerWindow {
 public:
  struct Loaded {
    std::unique_ptr<InstallerWindow> window;  // null when the description cannot be used
    Text problem;                             // then: why, for the log
  };
  // The description lists texts by their English keys, which are looked up in `strings`; that table's entry
  // "LayoutDirection" = "RTL" turns the window around. `images` is asked for pictures when they are first
  // shown. A description without one of the outlets is unusable.
  [[nodiscard]] static Loaded load(const Text& descriptionPath, const LocalizedStrings& strings,
                                   Images& images);

  ~InstallerWindow();
  InstallerWindow(const InstallerWindow&) = delete;
  InstallerWindow& operator=(const InstallerWindow&) = delete;

  // The references live as long as this object.
  [[nodiscard]] InstallerOutlets outlets();
  void setActions(InstallerActions actions);
  // Shows the window when the description says that it is there from the start and nobody has shown it yet.
  // To be called when start-up is over: a set-up error leaves the window to this.
  void showIfVisibleAtLaunch();

  // Takes the window off the screen at once, without waiting for the event loop.
  void hide();

  // For what hangs on the window (alerts, the screen reader).
  [[nodiscard]] WindowWidget& widget();

 private:
  struct Parts;
  explicit InstallerWindow(std::unique_ptr<Parts> parts);
  std::unique_ptr<Parts> parts_;
};

}  // namespace halvorn
