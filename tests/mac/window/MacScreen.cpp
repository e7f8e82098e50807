// An X server for all cases of the program: AppKit connects once.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <memory>

#include "tests/support/Desktop.h"

namespace halvorn {
namespace {

class Screen : public testing::Environment {
 public:
  void SetUp() override {
    desktop_ = std::make_unique<Desktop>(DesktopParts{.windowManager = false, .bus = false});
    ::setenv("DISPLAY", desktop_->displayName().c_str(), 1);
    ::setenv("HOME", desktop_->homeFolder().c_str(), 1);
  }
  void TearDown() override { desktop_.reset(); }

 private:
  std::unique_ptr<Desktop> desktop_;
};
[[maybe_unused]] testing::Environment* const screen = testing::AddGlobalTestEnvironment(new Screen);

}  // namespace
}  // namespace halvorn
