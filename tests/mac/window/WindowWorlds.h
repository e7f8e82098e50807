// What the cases of the contract are asked of on macOS: the window in GNUstep's AppKit, on an X server of the case's own.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "Platform/running/MainThread.h"
#include "Platform/window/Alerts.h"
#include "Platform/window/Application.h"
#include "Platform/window/Images.h"
#include "Platform/window/InstallerOutlets.h"
#include "Platform/window/ScreenReader.h"

namespace halvorn {

class MacWindowWorld {
 public:
  MacWindowWorld();
  ~MacWindowWorld();

  InstallerOutlets outlets();
  Alerts& alerts();
  Images& images();
  Application& application();
  ScreenReader& screenReader();
  MainThread& mainThread();

  void click(const char* name);
  void pressSheetButton(int index);
  void dismissSheet();
  bool sheetIsUp();
  bool iconIsDrawn();
  void makeReadable(const Text& path);
  void runMainThread();
  void showWindow();

  int installs = 0;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};
using Worlds = testing::Types<MacWindowWorld>;

}  // namespace halvorn
