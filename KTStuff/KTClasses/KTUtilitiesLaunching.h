// From where and by whom this program was started; aliases; opening files; the helper application "Micro".
//
// Nothing is kept: each call asks the system afresh. Nothing fails loudly: no,
// or the argument, is the answer.
//
// Thread: any, except launchMicro() (main).
#pragma once

#include "Core/Log.h"
#include "Core/Text.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "KTStuff/KTClasses/KTUtilitiesDesktop.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/ItemFacts.h"
#include "Platform/files/FileManager.h"
#include "Platform/files/SearchPaths.h"
#include "Platform/processes/LaunchContext.h"
#include "Platform/running/Clock.h"
#include "Platform/running/Tasks.h"

namespace halvorn {

struct KTUtilitiesLaunchingServices {  // what launching goes through
  KTProcessClass& processes;
  const Bundles& bundles;
  const FileManager& files;
  const SearchPaths& searchPaths;
  const ItemFacts& items;
  const LaunchContext& launchContext;
  Tasks& tasks;
  Clock& clock;
  const Log& log;
};

enum class LeaveFocus { No, Yes };  // whether the helper keeps the front for a while

class KTUtilitiesLaunching {
 public:
  // All that is passed in must outlive this object.
  KTUtilitiesLaunching(KTUtilitiesDesktop& desktop, const KTUtilitiesLaunchingServices& services);

  // Whether the main bundle lies on a volume that the file "launchlock" marks as
  // the product's distribution disk.
  [[nodiscard]] bool runningFromDistributionDisk() const;
  // Whether this program runs from the distribution disk, or from a place where
  // the system put it for the moment.
  [[nodiscard]] bool installationMode() const;

  // The path of the alias's final target; the path itself when it is no alias or leads nowhere.
  [[nodiscard]] Text resolvedAlias(const Text& path) const;

  // Has the helper "Micro" take the front for a moment and then gives it back to the application
  // that had it. With LeaveFocus::Yes that application is not asked for before the helper is
  // through. Does nothing in full-screen mode. Blocks for up to about a second. Logs: how often it
  // looked for the helper, and what went wrong.
  void launchMicro(LeaveFocus leaveFocus);

  // Whether the process that launched this one has that creator ("ABCD").
  [[nodiscard]] bool wasLaunchedByProcess(const Text& creator) const;
  [[nodiscard]] bool wasLaunchedAsLoginItem() const;  // at the start of the session

  // Opens the file as a double click would. Neither waits nor tells.
  void openFile(const Text& path);

 private:
  void runMicro(const KTProcessPointer& remembered, LeaveFocus leaveFocus);
  [[nodiscard]] bool isFront(const KTProcessPointer& process) const;
  template <typename Condition>
  int pollUntil(const Condition& condition);

  KTUtilitiesDesktop& desktop_;
  const KTUtilitiesLaunchingServices services_;
};

}  // namespace halvorn
