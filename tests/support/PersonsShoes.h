// Plays a part of a test as the person of a PolkitWorld.
#pragma once

#include <functional>

#include "tests/support/PolkitWorld.h"

namespace halvorn {

// Runs `play` in a child process with the person's rights, groups, home and environment, and waits for its
// end. What it expects in vain fails the test that calls this.
void inThePersonsShoes(const PolkitWorld& world, const std::function<void()>& play);

}  // namespace halvorn
