// What lets launched programs come to the front: told by whoever has a window that a person can click into.
#pragma once

#include "Platform/bundles/linux/launching/Launcher.h"
#include "System/Parts.h"

namespace halvorn {

struct Activation {
  explicit Activation(KTSystem&) {}
  Launcher::ActivationTokens tokens;  // none: no program comes to the front by itself
};

}  // namespace halvorn
