#include "Sources/AdministratorRefusal.h"

#include "Core/Log.h"
#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/window/Images.h"

namespace halvorn {

bool isRefusedForAdministrator(bool isAdministrator, const OptionalText& exception) {
  return isAdministrator && exception != Text(kAdministratorInContainer);
}

void logAdministratorRefusal(const Log& log) {
  log("ERROR -- The installer does not run as root. Start it as the person who uses the computer: it asks "
      "for an "
      "administrator's password where one is needed. In a container without another account, set %@=%@.",
      kAdministratorVariable, kAdministratorInContainer);
}

AlertDescription administratorAlert(const LocalizedStrings& strings, Images& images) {
  AlertDescription alert;
  alert.style = AlertDescription::Style::Critical;
  alert.messageText = strings.localized("The installer cannot be used as the administrator \"root\".");
  alert.informativeText = strings.localized(
      "Start it as the person who uses this computer. It asks for an administrator's password where one is "
      "needed.");
  alert.buttonTitles = {strings.localized("Quit")};
  alert.icon = images.imageNamed("AlertStopIcon");
  return alert;
}

}  // namespace halvorn
