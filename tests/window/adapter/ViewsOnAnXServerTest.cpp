// The contract of the views again, on an X server with a window manager.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

TEST(ViewsOnAnXServer, TheContractHoldsThereToo) {
  if (const auto missing = Desktop::missing({.bus = false})) GTEST_SKIP() << *missing;
  Desktop desktop({.bus = false});
  // The bus library keeps what it has for the toolkit's X11 plug-in until the very end.
  putFile(desktop.folder() + "/suppressions", "leak:libdbus-1\n");
  ChildProcess contract(
      {KT_VIEWS_CONTRACT_TEST, "--gtest_filter=-*FakeWorld*:*/0.*"},
      {.environment = desktop.environmentWith(
           {"KT_TEST_ON_DISPLAY=" + desktop.displayName(),
            "LSAN_OPTIONS=print_suppressions=0:suppressions=" + desktop.folder() + "/suppressions"})});
  EXPECT_EQ(contract.waitForEnd(50), 0) << contract.output();
  EXPECT_NE(contract.output().find("TheyAreOnTheDisplayThatWasAskedFor"), std::string::npos);
  EXPECT_NE(contract.output().find("AnAnimationTakesTime"), std::string::npos) << contract.output();
  EXPECT_NE(contract.output().find("ViewsContract/1.BringToFrontPutsTheViewInFrontOfItsSiblings"),
            std::string::npos)
      << contract.output();
}

}  // namespace
}  // namespace halvorn
