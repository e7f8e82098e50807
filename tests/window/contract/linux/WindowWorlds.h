// What the cases of the contract are asked of on Linux: the window that a test writes down, and the toolkit's.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <thread>

#include "Platform/window/linux/AlertSheet.h"
#include "Platform/window/linux/InstallerWindow.h"
#include "Platform/window/linux/QtAlerts.h"
#include "Platform/window/linux/QtScreenReader.h"
#include "Platform/window/linux/WindowWidget.h"
#include "Platform/window/linux/pictures/QtImages.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/fakes/FakeMainThread.h"
#include "tests/fakes/FakeWindow.h"
#include "tests/support/OffscreenApplication.h"

namespace halvorn {

inline OffscreenApplication& desktop = offscreenApplication();

// A window that has just been made, with what hangs on it.
class FakeWorld {
 public:
  FakeWorld() { window_.readMeTextView.readable_ = false; }

  InstallerOutlets outlets() { return window_.outlets(); }
  Alerts& alerts() { return alerts_; }
  Images& images() { return images_; }
  Application& application() { return application_; }
  ScreenReader& screenReader() { return screenReader_; }
  MainThread& mainThread() { return mainThread_; }

  void click(const char*) {
    window_.installButton.onClick = [this] { ++installs; };
    window_.installButton.click();
  }
  // Ends the sheet that is up by its first, second ... button, or by Escape.
  void pressSheetButton(int index) { alerts_.press(kAlertFirstButtonReturn + index); }
  void dismissSheet() { alerts_.dismiss(); }
  bool sheetIsUp() { return alerts_.isUp(); }
  bool iconIsDrawn() { return window_.iconField.image_ != nullptr; }
  void makeReadable(const Text&) { window_.readMeTextView.readable_ = true; }
  void runMainThread() {
    mainThread_.runAll();
    mainThread_.runDelayed(0.05);
  }
  void showWindow() {
    application_.show();
    mainThread_.runAll();
  }

  int installs = 0;

 private:
  FakeWindow window_;
  FakeAlerts alerts_;
  FakeImages images_;
  FakeHostApplication application_;
  FakeScreenReader screenReader_;
  FakeMainThread mainThread_;
};

class RealWorld {
 public:
  explicit RealWorld(SheetPlace sheets = SheetPlace::OwnWindow) {
    auto loaded = InstallerWindow::load(KT_SOURCE_DIR "/Resources/InstallerWindow.xml", strings_, images_);
    if (!loaded.window) throw std::runtime_error(loaded.problem.bytes());
    window_ = std::move(loaded.window);
    window_->setActions({.install = [this] { ++installs; }});
    window_->showIfVisibleAtLaunch();
    alerts_ = std::make_unique<QtAlerts>(*window_, sheets);
    screenReader_ = std::make_unique<QtScreenReader>(*window_);
  }

  InstallerOutlets outlets() { return window_->outlets(); }
  Alerts& alerts() { return *alerts_; }
  Images& images() { return images_; }
  Application& application() { return desktop.application(); }
  ScreenReader& screenReader() { return *screenReader_; }
  MainThread& mainThread() { return desktop.application(); }

  void click(const char* id) {
    auto* button = window_->widget().find<QAbstractButton>(QLatin1String(id));
    if (button->isVisible()) button->click();
  }
  void pressSheetButton(int index) { sheet()->findChildren<QAbstractButton*>().at(index)->click(); }
  void dismissSheet() { sheet()->reject(); }
  bool sheetIsUp() { return sheet() != nullptr; }
  bool iconIsDrawn() {
    const QImage seen = window_->widget().find<QWidget>(QStringLiteral("iconField"))->grab().toImage();
    QImage empty(seen.size(), seen.format());
    empty.fill(seen.pixelColor(0, 0));
    empty.setDevicePixelRatio(seen.devicePixelRatio());
    return seen != empty;
  }
  void makeReadable(const Text& path) { std::ofstream(path.bytes()) << "text"; }
  void runMainThread() {
    for (int i = 0; i < 20; ++i) {
      QApplication::processEvents();
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }
  void showWindow() {
    window_->outlets().window.makeKeyAndOrderFront();
    runMainThread();
  }

  int installs = 0;

 private:
  AlertSheet* sheet() {
    for (QObject* child : window_->widget().children()) {
      if (auto* found = dynamic_cast<AlertSheet*>(child); found != nullptr && found->isVisible())
        return found;
    }
    return nullptr;
  }

  FakeLocalizedStrings strings_;
  QtImages images_{KT_SOURCE_DIR "/Resources"};
  std::unique_ptr<InstallerWindow> window_;
  std::unique_ptr<QtAlerts> alerts_;
  std::unique_ptr<QtScreenReader> screenReader_;
};

// As on a desktop that places windows as it likes.
class RealWorldWithSheetsInside : public RealWorld {
 public:
  RealWorldWithSheetsInside() : RealWorld(SheetPlace::InsideWindow) {}
};

using Worlds = testing::Types<FakeWorld, RealWorld, RealWorldWithSheetsInside>;

}  // namespace halvorn
