#include "Platform/bundles/linux/launching/LaunchPerson.h"

#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "Platform/rights/posix/Requester.h"

namespace halvorn {
namespace {

constexpr char kPath[] = "/usr/local/bin:/usr/bin:/bin";

constexpr std::string_view kPassedOn[] = {
    // who and where
    "HOME", "USER", "LOGNAME", "SHELL", "PATH", "TZ", "TMPDIR",
    // language; also everything that begins with LC_
    "LANG", "LANGUAGE",
    // the session and its services; also everything that begins with XDG_, tokens apart
    "DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "DBUS_SESSION_BUS_ADDRESS", "SESSION_MANAGER",
    "DESKTOP_SESSION", "GNOME_DESKTOP_SESSION_ID", "KDE_FULL_SESSION", "KDE_SESSION_VERSION", "SSH_AUTH_SOCK",
    "PULSE_SERVER", "PULSE_COOKIE", "PULSE_RUNTIME_PATH", "PIPEWIRE_REMOTE", "PIPEWIRE_RUNTIME_DIR",
    "BROWSER",
    // input, display and assistance
    "XMODIFIERS", "GTK_IM_MODULE", "QT_IM_MODULE", "QT_IM_MODULES", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME",
    "QT_SCALE_FACTOR", "QT_AUTO_SCREEN_SCALE_FACTOR", "GDK_SCALE", "GDK_DPI_SCALE", "XCURSOR_THEME",
    "XCURSOR_SIZE", "AT_SPI_BUS_ADDRESS", "NO_AT_BRIDGE", "QT_ACCESSIBILITY",
    "QT_LINUX_ACCESSIBILITY_ALWAYS_ON"};

bool isPassedOn(std::string_view name) {
  if (name.starts_with("LC_")) return true;
  if (name.starts_with("XDG_")) return name != "XDG_ACTIVATION_TOKEN";
  return std::find(std::begin(kPassedOn), std::end(kPassedOn), name) != std::end(kPassedOn);
}

// The folders and the bus of the variables are then the administrator's.
void becomePersons(Environment::Variables& variables, const LaunchPerson& person) {
  std::erase_if(variables, [](const auto& variable) {
    return variable.first.starts_with("XDG_") || variable.first == "DBUS_SESSION_BUS_ADDRESS";
  });
  variables["HOME"] = person.home;
  variables["USER"] = person.name;
  variables["LOGNAME"] = person.name;
  variables["SHELL"] = person.shell;
  const std::string runtime = "/run/user/" + std::to_string(person.uid);
  struct stat information = {};
  if (::stat(runtime.c_str(), &information) == 0 && information.st_uid == person.uid) {
    variables["XDG_RUNTIME_DIR"] = runtime;
    variables["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + runtime + "/bus";
  }
}

}  // namespace

LaunchPerson personToLaunchAs(const Environment& environment) {
  const Requester requester = requesterOfThisProcess([&](const std::string& name) {
    const auto found = environment.variables().find(name);
    return found != environment.variables().end() ? std::optional(found->second) : std::nullopt;
  });
  if (requester.kind == Requester::Kind::Unknown) return {.kind = LaunchPerson::Kind::Unknown};
  if (!requester.account) return {};
  const Account& account = *requester.account;
  return {LaunchPerson::Kind::Other,
          account.uid,
          account.gid,
          groupsOf(account),
          account.name,
          account.home,
          account.shell};
}

std::vector<std::string> launchEnvironment(const Environment& environment, const LaunchPerson& person) {
  Environment::Variables variables = environment.variables();
  std::erase_if(variables, [](const auto& variable) { return !isPassedOn(variable.first); });
  variables.emplace("PATH", kPath);
  if (person.kind == LaunchPerson::Kind::Other) becomePersons(variables, person);
  std::vector<std::string> result;
  for (const auto& [name, value] : variables) result.push_back(name + "=" + value);
  return result;
}

}  // namespace halvorn
