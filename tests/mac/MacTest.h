// A macOS of a test's own. What the adapters were given is released by the end of each case.
#pragma once

#include <gtest/gtest.h>

#include "tests/mac/frameworks/FakeMac.h"

namespace halvorn {

class MacTest : public testing::Test {
 protected:
  MacTest() { fakemac::reset(); }
  void TearDown() override {
    EXPECT_EQ(fakemac::liveObjects(), 0);
    EXPECT_EQ(fakemac::state().liveAppearances, 0);
    EXPECT_EQ(fakemac::installedHandlers(), 0U);
    EXPECT_EQ(fakemac::installedObservers(), 0U);
  }
};

}  // namespace halvorn
