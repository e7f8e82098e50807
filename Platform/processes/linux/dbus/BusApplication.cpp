#include "Platform/processes/linux/dbus/BusApplication.h"

#include <algorithm>
#include <utility>

#include "Platform/processes/linux/proc/RunningApplications.h"

namespace halvorn {
namespace {

constexpr char kActions[] = "org.gtk.Actions";
constexpr char kApplication[] = "org.freedesktop.Application";
constexpr char kMainApplicationPath[] = "/MainApplication";
constexpr char kMainApplication[] = "org.qtproject.Qt.QCoreApplication";
constexpr double kLookSeconds = 1.0;

void appendText(DBusMessageIter& arguments, const char* text) {
  dbus_message_iter_append_basic(&arguments, DBUS_TYPE_STRING, &text);
}

void appendEmptyArray(DBusMessageIter& arguments, const char* elementType) {
  DBusMessageIter array;
  dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, elementType, &array);
  dbus_message_iter_close_container(&arguments, &array);
}

// The arguments of both Activate(action) and ActivateAction(action): no parameter, no platform data.
void appendAction(const BusMessage& message, const char* action) {
  if (!message) return;
  DBusMessageIter arguments;
  dbus_message_iter_init_append(message.get(), &arguments);
  appendText(arguments, action);
  appendEmptyArray(arguments, "v");
  appendEmptyArray(arguments, "{sv}");
}

}  // namespace

std::string objectPathFor(const std::string& busName) {
  std::string path = "/" + busName;
  std::replace(path.begin(), path.end(), '.', '/');
  std::replace(path.begin(), path.end(), '-', '_');
  return path;
}

std::vector<BusApplication> BusApplication::of(BusConnection& bus, const HeldApplication& application) {
  std::vector<BusApplication> result;
  for (const std::string& name : bus.names()) {
    if (name.starts_with(':')) continue;
    const auto owner = bus.ownerOf(name);
    // The process id means this application as long as it runs.
    const bool isItsName = owner && bus.pidOf(*owner) == application.pid && !application.hold.hasEnded();
    const std::string path = objectPathFor(name);
    if (isItsName && dbus_validate_path(path.c_str(), nullptr)) {
      result.push_back(BusApplication(bus, *owner, path));
    }
  }
  return result;
}

BusApplication::BusApplication(BusConnection& bus, std::string uniqueName, std::string path)
    : bus_(&bus), uniqueName_(std::move(uniqueName)), path_(std::move(path)) {}

BusApplication::Answer BusApplication::perform(const BusMessage& message, Reply reply, double seconds) {
  if (reply == Reply::Unwanted) return bus_->send(message) ? Answer::Done : Answer::NotHandled;
  const CallResult result = bus_->call(message, seconds);
  const auto* failure = std::get_if<CallFailure>(&result);
  if (failure == nullptr) return Answer::Done;
  return *failure == CallFailure::TimedOut ? Answer::TimedOut : Answer::NotHandled;
}

BusApplication::Answer BusApplication::quit(Reply reply, double seconds) {
  const CallResult listed = bus_->call(methodCall({uniqueName_, path_, kActions, "List"}), kLookSeconds);
  if (const auto* actions = std::get_if<BusMessage>(&listed)) {
    const auto names = firstTexts(*actions);
    if (std::find(names.begin(), names.end(), "quit") == names.end()) return Answer::NotHandled;
    const BusMessage message = methodCall({uniqueName_, path_, kActions, "Activate"});
    appendAction(message, "quit");
    return perform(message, reply, seconds);
  }
  if (std::get<CallFailure>(listed) == CallFailure::TimedOut) return Answer::TimedOut;
  if (exportsMainApplication()) {
    return perform(methodCall({uniqueName_, kMainApplicationPath, kMainApplication, "quit"}), reply, seconds);
  }
  // This interface does not tell its actions, so whether there is one shows in the reply.
  const BusMessage message = methodCall({uniqueName_, path_, kApplication, "ActivateAction"});
  appendAction(message, "quit");
  return perform(message, Reply::Awaited, reply == Reply::Awaited ? seconds : kLookSeconds);
}

bool BusApplication::exportsMainApplication() {
  const CallResult result = bus_->call(
      methodCall({uniqueName_, kMainApplicationPath, "org.freedesktop.DBus.Introspectable", "Introspect"}),
      kLookSeconds);
  const auto* reply = std::get_if<BusMessage>(&result);
  const auto description = reply != nullptr ? firstText(*reply) : std::nullopt;
  return description && description->find(std::string("\"") + kMainApplication + "\"") != std::string::npos;
}

BusApplication::Answer BusApplication::activate(Reply reply, double seconds) {
  const BusMessage message = methodCall({uniqueName_, path_, kApplication, "Activate"});
  if (message) {
    DBusMessageIter arguments;
    dbus_message_iter_init_append(message.get(), &arguments);
    appendEmptyArray(arguments, "{sv}");
  }
  return perform(message, reply, seconds);
}

BusApplication::Answer BusApplication::openNothing(Reply reply, double seconds) {
  const BusMessage message = methodCall({uniqueName_, path_, kApplication, "Open"});
  if (message) {
    DBusMessageIter arguments;
    dbus_message_iter_init_append(message.get(), &arguments);
    appendEmptyArray(arguments, "s");
    appendEmptyArray(arguments, "{sv}");
  }
  return perform(message, reply, seconds);
}

}  // namespace halvorn
