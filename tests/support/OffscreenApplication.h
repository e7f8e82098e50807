// A toolkit application without a display for all cases of a test program; with KT_TEST_ON_DISPLAY in the
// environment, the same on the X server of that name.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <QCoreApplication>
#include <memory>

#include "Platform/window/linux/QtApplication.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {

class OffscreenApplication : public testing::Environment {
 public:
  void SetUp() override {
    const char* display = ::getenv("KT_TEST_ON_DISPLAY");
    ::setenv("QT_QPA_PLATFORM", display != nullptr ? "xcb" : "offscreen", 1);
    if (display != nullptr) ::setenv("DISPLAY", display, 1);
    ::setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), 1);
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    application_ = std::make_unique<QtApplication>("/test/window");
  }
  void TearDown() override { application_.reset(); }

  [[nodiscard]] QtApplication& application() { return *application_; }

 private:
  TemporaryFolder folder_;
  std::unique_ptr<QtApplication> application_;
};

// To be put at namespace level of one source: `OffscreenApplication& desktop = offscreenApplication();`
inline OffscreenApplication& offscreenApplication() {
  return *static_cast<OffscreenApplication*>(testing::AddGlobalTestEnvironment(new OffscreenApplication));
}

}  // namespace halvorn
