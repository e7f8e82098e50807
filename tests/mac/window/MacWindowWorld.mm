#import <AppKit/AppKit.h>

#include <fstream>
#include <stdexcept>

#include "Platform/running/mac/MacMainThread.h"
#include "Platform/running/mac/MacRunLoop.h"
#include "Platform/window/mac/InterfaceBuilder.h"
#include "Platform/window/mac/MacAlerts.h"
#include "Platform/window/mac/MacApplication.h"
#include "Platform/window/mac/MacImages.h"
#include "Platform/window/mac/MacInstallerWindow.h"
#include "Platform/window/mac/MacScreenReader.h"
#include "Platform/window/mac/WindowOf.h"
#include "WindowWorlds.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/mac/MacLoop.h"
#include "tests/mac/frameworks/FakeMac.h"

namespace halvorn {
struct MacWindowWorld::Parts {
  MacPool pool;
  MacMainThread mainThread;
  MacApplication application{mainThread, "Test", "Quit"};
  FakeLocalizedStrings strings;
  MacImages images{KT_SOURCE_DIR "/Resources"};
  std::unique_ptr<MacInstallerWindow> window;
  std::unique_ptr<MacAlerts> alerts;
  MacScreenReader screenReader;

  void serve() {
    for (int i = 0; i < 10; ++i) static_cast<void>(serveMacLoopUntil([] { return false; }, 0.01));
  }
};

MacWindowWorld::MacWindowWorld() {
  fakemac::reset();
  parts_ = std::make_unique<Parts>();
  auto loaded = MacInstallerWindow::load(KT_SOURCE_DIR "/Resources/InstallerWindow.xml", parts_->strings,
                                         parts_->images, parts_->application);
  if (!loaded.window) throw std::runtime_error(loaded.problem.bytes());
  parts_->window = std::move(loaded.window);
  parts_->window->setActions({.install = [this] { ++installs; }});
  parts_->alerts = std::make_unique<MacAlerts>(*parts_->window);
}
MacWindowWorld::~MacWindowWorld() = default;

InstallerOutlets MacWindowWorld::outlets() { return parts_->window->outlets(); }
Alerts& MacWindowWorld::alerts() { return *parts_->alerts; }
Images& MacWindowWorld::images() { return parts_->images; }
Application& MacWindowWorld::application() { return parts_->application; }
ScreenReader& MacWindowWorld::screenReader() { return parts_->screenReader; }
MainThread& MacWindowWorld::mainThread() { return parts_->mainThread; }

void MacWindowWorld::click(const char* name) {
  auto& outlet = dynamic_cast<MacView&>(std::string(name) == "installButton"
                                            ? static_cast<View&>(outlets().installButton)
                                            : static_cast<View&>(outlets().cancelButton));
  NSButton* const button = (NSButton*)outlet.view();
  if (![button isHidden]) [button performClick:nil];
}
void MacWindowWorld::pressSheetButton(int index) { fakemac::endSheet(index); }
void MacWindowWorld::dismissSheet() { fakemac::endSheet(-1); }
bool MacWindowWorld::sheetIsUp() { return fakemac::sheetIsUp(); }
bool MacWindowWorld::iconIsDrawn() {
  NSImageView* const view = (NSImageView*)dynamic_cast<MacView&>(outlets().iconField).view();
  return [view image] != nil;
}
void MacWindowWorld::makeReadable(const Text& path) { std::ofstream(path.bytes()) << "text"; }
void MacWindowWorld::runMainThread() { parts_->serve(); }
void MacWindowWorld::showWindow() {
  outlets().window.makeKeyAndOrderFront();
  runMainThread();
}

}  // namespace halvorn
