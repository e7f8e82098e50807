// The application and its pictures.
#pragma once

#include "Platform/window/mac/MacApplication.h"
#include "Platform/window/mac/MacImages.h"
#include "System/Parts.h"

namespace halvorn {

struct ApplicationPart {
  explicit ApplicationPart(KTSystem& system);
  MacApplication application;
};

}  // namespace halvorn
