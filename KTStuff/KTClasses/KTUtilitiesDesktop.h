// Facts about the person's desktop: who filled the clipboard, full screen, the dark
// style, idle time, file systems.
//
// Making the object is the first use of the class: one second later it begins to follow which
// application is in front. What is called before that, or before the desktop has told of a
// switch, is answered right all the same.
//
// Thread: main, except for what says otherwise.
// Why: docs/decisions/021-the-desktop-is-asked.md
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>

#include "Core/Log.h"
#include "Core/Notifications.h"
#include "Core/Text.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/Defaults.h"
#include "Platform/color/InterfaceStyleSetting.h"
#include "Platform/running/MainThread.h"
#include "Platform/session/DesktopFacts.h"
#include "Platform/session/SystemFacts.h"
#include "Platform/window/Images.h"

namespace halvorn {

struct KTUtilitiesDesktopServices {  // what the desktop is asked through
  KTProcessClass& processes;
  Notifications& notifications;
  MainThread& mainThread;
  DesktopFacts& desktop;
  const Defaults& defaults;
  InterfaceStyleSetting& interfaceStyle;
  const SystemFacts& system;
  const Bundles& bundles;
  Images& images;
  const Log& log;
};

class KTUtilitiesDesktop : public KTUtilitiesTheme {
 public:
  // All that is passed in must outlive this object.
  KTUtilitiesDesktop(const KTUtilitiesVersions& versions, const KTUtilitiesDesktopServices& services);
  KTUtilitiesDesktop(const KTUtilitiesDesktop&) = delete;
  KTUtilitiesDesktop& operator=(const KTUtilitiesDesktop&) = delete;

  // --- the clipboard

  // Has installProcessWatcher() run in one second; only the first call does, which
  // the constructor makes. Thread: any.
  void initialize();
  // Calls processSwitched() after each KTProcessChangeNotification from now on.
  void installProcessWatcher();
  // Takes note of the application in front and of whether the last one changed the clipboard meanwhile.
  void processSwitched();
  // The application that changed the clipboard last; null while none was seen to.
  [[nodiscard]] KTProcessPointer clipboardPublisherProcess();

  // --- how things look; the dark style is the theme's

  // Whether the desktop has hidden its menu bar for a window that fills the screen. The first call
  // begins to watch; what the desktop tells thereupon is answered from the next turn of the main
  // loop on. Logs: when it cannot be watched.
  [[nodiscard]] bool fullScreenMode();
  [[nodiscard]] bool displayIsZoomed() const { return false; }  // desktops here do not tell
  // "tintYosBlue" and its like, out of the resources of the application; null when it has no such image.
  [[nodiscard]] ImagePointer systemTintImage();

  // --- the system

  // "CFBundleExecutable" of the main bundle; "" when it is missing. Thread: any,
  // as all of these but idleTime().
  [[nodiscard]] Text applicationName() const;
  [[nodiscard]] bool debugging() const;  // a debugger is attached
  // Seconds since the person's last input; -1.0 when the system does not tell.
  [[nodiscard]] float idleTime();
  // The type of the file system that holds the path ("ext4"); "" on failure. Logs: always, for diagnosis.
  [[nodiscard]] Text fileSystemTypeFor(const Text& path) const;

 private:
  [[nodiscard]] bool isActiveProcess(const KTProcessPointer& process) const;
  // 0 where the desktop does not tell.
  [[nodiscard]] std::int64_t clipboardChangeCount() const;
  void installMenuBarMonitor();

  const KTUtilitiesVersions& versions_;
  const KTUtilitiesDesktopServices services_;
  // What tasks and handlers hold instead of this object, so that those that come late find nobody.
  const std::shared_ptr<KTUtilitiesDesktop*> self_;

  std::mutex initializeMutex_;
  bool isWatcherInstalled_ = false;  // guarded by initializeMutex_
  std::unique_ptr<Notifications::Observation> processObservation_;

  KTProcessPointer activeProcess_;  // in front when last looked at
  std::int64_t clipboardCountAtStartOfActiveProcess_ = 0;
  KTProcessPointer clipboardPublisherProcess_;

  bool isMenuBarMonitorInstalled_ = false;
  bool isMenuBarHidden_ = false;
};

// What an event of the menu bar means for the flag. Leaves every event to other handlers too.
EventAnswer MonitorMenuBarEventHandler(const MenuBarEvent& event, bool& isMenuBarHidden);

}  // namespace halvorn
