// The contract of the views again, on an X server with a window manager.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"

namespace halvorn {
namespace {

TEST(ViewsOnAnXServer, TheContractHoldsThereToo) {
  if (const auto missing = Desktop::missing({.bus = false})) GTEST_SKIP() << *missing;
  Desktop desktop({.bus = false});
  ChildProcess contract(
      {KT_VIEWS_CONTRACT_TEST, "--gtest_filter=-*FakeWorld*:*/0.*"},
      {.environment = desktop.environmentWith({"KT_TEST_ON_DISPLAY=" + desktop.displayName()})});
  EXPECT_EQ(contract.waitForEnd(50), 0) << contract.output();
  EXPECT_NE(contract.output().find("AnAnimationTakesTime"), std::string::npos) << contract.output();
  EXPECT_NE(contract.output().find("ViewsContract/1.BringToFrontPutsTheViewInFrontOfItsSiblings"),
            std::string::npos)
      << contract.output();
}

}  // namespace
}  // namespace halvorn
