#include "Platform/session/linux/BusAddresses.h"

#include <filesystem>
#include <system_error>

namespace halvorn {

namespace {

std::optional<std::string> addressOfSocket(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_socket(path, ignored)) return std::nullopt;
  return "unix:path=" + path;
}

}  // namespace

std::optional<std::string> sessionBusAddress(const Environment& environment) {
  if (auto address = environment.value("DBUS_SESSION_BUS_ADDRESS")) return address;
  const auto runtimeFolder = environment.value("XDG_RUNTIME_DIR");
  return runtimeFolder ? addressOfSocket(*runtimeFolder + "/bus") : std::nullopt;
}

std::optional<std::string> systemBusAddress(const Environment& environment) {
  if (auto address = environment.value("DBUS_SYSTEM_BUS_ADDRESS")) return address;
  return addressOfSocket("/run/dbus/system_bus_socket");
}

}  // namespace halvorn
