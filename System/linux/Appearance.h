// The toolkit's application and what follows the desktop's look.
#pragma once

#include <memory>

#include "Platform/color/linux/DesktopAppearance.h"
#include "Platform/window/linux/QtAppearances.h"
#include "Platform/window/linux/QtApplication.h"
#include "Platform/window/linux/QtRunLoop.h"
#include "Platform/window/linux/pictures/QtImages.h"
#include "System/linux/MainLoop.h"
#include "System/linux/Pictures.h"
#include "System/linux/Places.h"

namespace halvorn {

struct ApplicationPart {
  explicit ApplicationPart(KTSystem& system);
  QtApplication application;
  QtRunLoop loop;
};

struct PicturePart {
  explicit PicturePart(KTSystem& system);
  QtImages images;
};

// Needs the application. Nothing is asked of the desktop that a window does not follow anyway.
struct AppearancePart {
  explicit AppearancePart(KTSystem& system);
  DesktopAppearance desktop;
  const QtAppearances appearances{desktop};
};

}  // namespace halvorn
