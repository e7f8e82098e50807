#include "tests/support/zoo/ZooBus.h"

#include <dbus/dbus.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace halvorn::zoo {
namespace {

void replyWithList(DBusMessage* reply, const std::string& action) {
  DBusMessageIter arguments;
  DBusMessageIter list;
  dbus_message_iter_init_append(reply, &arguments);
  dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, "s", &list);
  for (const char* name : {"about", action.c_str()}) {
    dbus_message_iter_append_basic(&list, DBUS_TYPE_STRING, &name);
  }
  dbus_message_iter_close_container(&arguments, &list);
}

std::string pathOf(const std::string& name) {
  std::string path = "/" + name;
  std::replace(path.begin(), path.end(), '.', '/');
  std::replace(path.begin(), path.end(), '-', '_');
  return path;
}

}  // namespace

Bus::Bus(const BusOptions& options) : options_(options) {
  connection_ = dbus_bus_get_private(DBUS_BUS_SESSION, nullptr);
  if (connection_ == nullptr ||
      dbus_bus_request_name(connection_, options.name.c_str(), DBUS_NAME_FLAG_DO_NOT_QUEUE, nullptr) !=
          DBUS_REQUEST_NAME_REPLY_PRIMARY_OWNER) {
    std::puts("no bus");
    std::exit(5);
  }
  dbus_connection_set_exit_on_disconnect(connection_, FALSE);
}

int Bus::descriptor() const {
  int descriptor = -1;
  dbus_connection_get_unix_fd(connection_, &descriptor);
  return descriptor;
}

void Bus::readCalls(const std::function<void()>& quit) {
  dbus_connection_read_write(connection_, 0);
  while (DBusMessage* raw = dbus_connection_pop_message(connection_)) {
    const std::unique_ptr<DBusMessage, void (*)(DBusMessage*)> message(raw, dbus_message_unref);
    if (dbus_message_get_type(raw) != DBUS_MESSAGE_TYPE_METHOD_CALL || options_.isSilent) continue;
    const std::string interface = dbus_message_get_interface(raw) ? dbus_message_get_interface(raw) : "";
    const std::string member = dbus_message_get_member(raw);
    const std::string path = dbus_message_get_path(raw);
    const bool isActions = interface == "org.gtk.Actions" && path == pathOf(options_.name) &&
                           (options_.exportsActions || options_.exportsOtherActions);
    const bool isApplication = interface == "org.freedesktop.Application" && path == pathOf(options_.name) &&
                               options_.exportsApplication;
    const bool isToolkit = interface == "org.qtproject.Qt.QCoreApplication" && path == "/MainApplication" &&
                           options_.exportsToolkitQuit;
    const bool isDescription = interface == "org.freedesktop.DBus.Introspectable" &&
                               path == "/MainApplication" && options_.exportsToolkitQuit;
    const char* action = "";
    dbus_message_get_args(raw, nullptr, DBUS_TYPE_STRING, &action, DBUS_TYPE_INVALID);
    DBusMessage* reply = isActions || isApplication || isToolkit || isDescription
                             ? dbus_message_new_method_return(raw)
                             : dbus_message_new_error(raw, DBUS_ERROR_UNKNOWN_METHOD, "not exported");
    if (isDescription) {
      const char* description = "<node><interface name=\"org.qtproject.Qt.QCoreApplication\"/></node>";
      dbus_message_append_args(reply, DBUS_TYPE_STRING, &description, DBUS_TYPE_INVALID);
    }
    bool isQuit = false;
    if (isActions && member == "List") replyWithList(reply, options_.exportsActions ? "quit" : "help");
    if (isActions && member == "Activate") isQuit = std::string(action) == "quit";
    if (isToolkit) isQuit = member == "quit";
    if (isApplication) std::printf("bus %s%s%s\n", member.c_str(), *action ? " " : "", action);
    if (isApplication && member == "ActivateAction") isQuit = std::string(action) == "quit";
    dbus_connection_send(connection_, reply, nullptr);
    dbus_connection_flush(connection_);
    dbus_message_unref(reply);
    if (isQuit) {
      std::puts("bus quit");
      quit();
    }
  }
}

}  // namespace halvorn::zoo
