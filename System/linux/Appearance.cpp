#include "System/linux/Appearance.h"

#include "Core/Paths.h"
#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "Platform/color/linux/PlainAppearance.h"
#include "Platform/color/linux/QtInterfaceStyle.h"
#include "Platform/session/linux/BusAddresses.h"
#include "Platform/session/linux/PortalInterfaceStyle.h"
#include "Platform/session/linux/WaylandSession.h"
#include "Platform/session/linux/x11/StartupNotification.h"
#include "Platform/window/linux/ToolkitsWayland.h"
#include "Platform/window/linux/pictures/DrawnIcon.h"
#include "System/linux/Activation.h"
#include "System/linux/Toolkit.h"

namespace halvorn {
namespace {

std::optional<InterfaceStyle> styleOf(const Defaults& defaults) {
  const auto style = defaults.objectForKey("AppleInterfaceStyle");
  if (!style || !style->text()) return std::nullopt;
  return *style->text() == Text("Dark") ? InterfaceStyle::Dark : InterfaceStyle::Light;
}

// What lets a launched program come to the front, in the wake of the last click or key.
OptionalText activationToken(const Ground& ground, const QtApplication& application,
                             const std::string& program) {
  const std::string name = Paths::lastComponent(Text(program)).bytes();
  if (isWaylandSession(ground.environment)) {
    const auto token = waylandActivationToken(name);
    return token ? OptionalText(*token) : std::nullopt;
  }
  const auto id = announceStartup(
      ground.environment.value("DISPLAY"),
      {.launcher = ground.programName.bytes(), .program = name, .deedTime = application.timeOfLastDeed()});
  return id ? OptionalText(*id) : std::nullopt;
}

bool ownsTheLook(KTSystem& system) {
  const ApplicationPart* part = system.parts().known<ApplicationPart>();
  return part != nullptr && part->application.isOwn();
}

Text resourcesFolderOf(KTSystem& system) {
  const Text bundle = system.bundles().mainBundlePath();
  const Text inBundle = Paths::appending(bundle, "Contents/Resources");
  return system.files().isDirectory(inBundle) ? inBundle : bundle;
}

// What the windows follow tells the style too; a program without windows, or with a look of its own, asks the portal.
std::unique_ptr<InterfaceStyleSetting> settingFor(KTSystem& system) {
  KTSystem::Parts& parts = system.parts();
  if (ownsTheLook(system)) return std::make_unique<QtInterfaceStyle>(parts.of<AppearancePart>().desktop);
  parts.of<Toolkit>();
  return std::make_unique<PortalInterfaceStyle>(sessionBusAddress(parts.of<Ground>().environment));
}

struct Style {
  explicit Style(KTSystem& system) : setting(settingFor(system)) {}
  const std::unique_ptr<InterfaceStyleSetting> setting;
};

struct StyledPart {
  explicit StyledPart(KTSystem& system) : appearances(system.interfaceStyle()) {}
  const StyledAppearances appearances;
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

ApplicationPart::ApplicationPart(KTSystem& system) : application(system.parts().of<Ground>().programPath) {
  system.parts().of<MainLoop>().use(application, loop, [this](const auto& condition, double seconds) {
    return application.runUntil(condition, seconds);
  });
  system.parts().of<Activation>().tokens =
      [this, &ground = system.parts().of<Ground>()](const std::string& program) {
        return activationToken(ground, application, program);
      };
}

PicturePart::PicturePart(KTSystem& system) : images(resourcesFolderOf(system)) {
  system.parts().of<Pictures>().use(images, drawnIcon);
}

AppearancePart::AppearancePart(KTSystem& system) : desktop(styleOf(system.defaults())) {}

Application& KTSystem::application() {
  QtApplication& application = parts_->of<ApplicationPart>().application;
  parts_->of<PicturePart>();  // icons of programs come from there
  return application;
}
Images& KTSystem::images() { return parts_->of<PicturePart>().images; }
const Appearances& KTSystem::appearances() {
  if (!ownsTheLook(*this)) return parts_->of<StyledPart>().appearances;
  return parts_->of<AppearancePart>().appearances;
}
InterfaceStyleSetting& KTSystem::interfaceStyle() { return *parts_->of<Style>().setting; }
KTUtilitiesTheme& KTSystem::theme() { return parts_->of<Theme>().theme; }
KTDynamicColorClass& KTSystem::colors() { return parts_->of<Colors>().colors; }

}  // namespace halvorn
