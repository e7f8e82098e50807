// The window is not opened for the administrator: all that a toolkit, its modules and a product's pictures and
// documents can do would be done with every right there is. Who needs rights for one copy asks for them then.
#pragma once

#include "Platform/window/Alerts.h"

namespace halvorn {

class Images;
class Log;
class LocalizedStrings;

// The exception, for a container whose only account is the administrator's: this variable with this value.
inline constexpr char kAdministratorVariable[] = "HALVORN_AS_ROOT";
inline constexpr char kAdministratorInContainer[] = "container";

// The program's exit status when it refuses.
inline constexpr int kAdministratorRefused = 77;

// `exception` is the value of that variable; any other than the one above makes none.
[[nodiscard]] bool isRefusedForAdministrator(bool isAdministrator, const OptionalText& exception);

// Logs: why, and what to do.
void logAdministratorRefusal(const Log& log);
[[nodiscard]] AlertDescription administratorAlert(const LocalizedStrings& strings, Images& images);

}  // namespace halvorn
