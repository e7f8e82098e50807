#include "System/mac/Appearance.h"

#include "Core/Paths.h"
#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/color/mac/MacAppearances.h"
#include "Platform/color/mac/MacInterfaceStyleSetting.h"

namespace halvorn {
namespace {

struct PicturePart {
  explicit PicturePart(KTSystem& system)
      : images(Paths::appending(system.bundles().mainBundlePath(), "Contents/Resources")) {}
  MacImages images;
};

struct AppearancePart {
  explicit AppearancePart(KTSystem&) {}
  const MacAppearances appearances;
  MacInterfaceStyleSetting style;
};

struct Theme {
  explicit Theme(KTSystem& system) : theme(system.versions(), system.defaults(), system.interfaceStyle()) {}
  KTUtilitiesTheme theme;
};

struct Colors {
  explicit Colors(KTSystem& system)
      : colors({.appearances = system.appearances(),
                .theme = system.theme(),
                .system = system.systemFacts(),
                .log = system.log()}) {}
  KTDynamicColorClass colors;
};

}  // namespace

ApplicationPart::ApplicationPart(KTSystem& system)
    : application(system.mainThread(), system.parts().settings.programName,
                  system.strings().localized("Quit")) {}

Application& KTSystem::application() { return parts_->of<ApplicationPart>().application; }
Images& KTSystem::images() { return parts_->of<PicturePart>().images; }
const Appearances& KTSystem::appearances() { return parts_->of<AppearancePart>().appearances; }
InterfaceStyleSetting& KTSystem::interfaceStyle() { return parts_->of<AppearancePart>().style; }
KTUtilitiesTheme& KTSystem::theme() { return parts_->of<Theme>().theme; }
KTDynamicColorClass& KTSystem::colors() { return parts_->of<Colors>().colors; }

}  // namespace halvorn
