#include "KTStuff/CocoaExtensions/ViewExtensions.h"

#include "Platform/SystemInfo.h"
#include "Platform/Views.h"

namespace halvorn::ViewExtensions {

// The framework version of the first release of 10.14.
constexpr double kFirstWithAppearances = 1639.0;

void useLightAquaAppearance(View& view, LightAqua light, const SystemInfo& system) {
  if (system.frameworkVersion() < kFirstWithAppearances) return;
  view.setAppearance(light == LightAqua::Yes ? AppearanceName::Aqua : AppearanceName::Inherited);
}

}  // namespace halvorn::ViewExtensions
