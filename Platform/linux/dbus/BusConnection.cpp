#include "Platform/linux/dbus/BusConnection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace halvorn {
namespace {

constexpr double kBusSeconds = 2.0;

class BusError {
 public:
  BusError() { dbus_error_init(&error_); }
  ~BusError() { dbus_error_free(&error_); }
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;

  [[nodiscard]] DBusError* get() { return &error_; }
  [[nodiscard]] bool isOneOf(std::initializer_list<const char*> names) const {
    return std::any_of(names.begin(), names.end(),
                       [&](const char* name) { return dbus_error_has_name(&error_, name); });
  }

 private:
  DBusError error_;
};

int milliseconds(double seconds) {
  const double limit = static_cast<double>(std::numeric_limits<int>::max() - 1);
  return static_cast<int>(std::clamp(std::ceil(seconds * 1000), 0.0, limit));
}

}  // namespace

BusMessage methodCall(const BusTarget& target) {
  return BusMessage(dbus_message_new_method_call(target.name.c_str(), target.path.c_str(),
                                                 target.interface.c_str(), target.member.c_str()));
}

std::optional<std::string> firstText(const BusMessage& message) {
  const char* text = nullptr;
  const bool isText =
      dbus_message_get_args(message.get(), nullptr, DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
  return isText ? std::optional<std::string>(text) : std::nullopt;
}

std::vector<std::string> firstTexts(const BusMessage& message) {
  char** texts = nullptr;
  int count = 0;
  if (!dbus_message_get_args(message.get(), nullptr, DBUS_TYPE_ARRAY, DBUS_TYPE_STRING, &texts, &count,
                             DBUS_TYPE_INVALID)) {
    return {};
  }
  std::vector<std::string> result(texts, texts + count);
  dbus_free_string_array(texts);
  return result;
}

std::optional<std::uint32_t> firstNumber(const BusMessage& message) {
  dbus_uint32_t number = 0;
  const bool isNumber =
      dbus_message_get_args(message.get(), nullptr, DBUS_TYPE_UINT32, &number, DBUS_TYPE_INVALID);
  return isNumber ? std::optional<std::uint32_t>(number) : std::nullopt;
}

void BusConnection::Close::operator()(DBusConnection* connection) const {
  dbus_connection_close(connection);
  dbus_connection_unref(connection);
}

std::unique_ptr<BusConnection> BusConnection::open(const std::string& address) {
  if (address.empty()) return nullptr;
  DBusConnection* raw = dbus_connection_open_private(address.c_str(), nullptr);
  if (raw == nullptr) return nullptr;
  std::unique_ptr<BusConnection> result(new BusConnection(raw));
  dbus_connection_set_exit_on_disconnect(raw, FALSE);
  // The library's own greeting waits for half a minute.
  const CallResult hello = result->askBus("Hello", nullptr);
  const auto* reply = std::get_if<BusMessage>(&hello);
  const auto name = reply != nullptr ? firstText(*reply) : std::nullopt;
  if (!name || !dbus_bus_set_unique_name(raw, name->c_str())) return nullptr;
  return result;
}

CallResult BusConnection::call(const BusMessage& message, double seconds) {
  if (!message) return CallFailure::Refused;
  BusError error;
  BusMessage reply(dbus_connection_send_with_reply_and_block(connection_.get(), message.get(),
                                                             milliseconds(seconds), error.get()));
  if (reply) return reply;
  if (error.isOneOf({DBUS_ERROR_NO_REPLY, DBUS_ERROR_TIMEOUT, DBUS_ERROR_TIMED_OUT})) {
    return CallFailure::TimedOut;
  }
  const bool isUnknown =
      error.isOneOf({DBUS_ERROR_UNKNOWN_METHOD, DBUS_ERROR_UNKNOWN_INTERFACE, DBUS_ERROR_UNKNOWN_OBJECT,
                     DBUS_ERROR_SERVICE_UNKNOWN, DBUS_ERROR_NAME_HAS_NO_OWNER});
  return isUnknown ? CallFailure::NoSuchMethod : CallFailure::Refused;
}

bool BusConnection::send(const BusMessage& message) {
  if (!message || !isConnected()) return false;
  dbus_message_set_no_reply(message.get(), TRUE);
  if (!dbus_connection_send(connection_.get(), message.get(), nullptr)) return false;
  dbus_connection_flush(connection_.get());
  return isConnected();
}

CallResult BusConnection::askBus(const char* member, const std::string* argument) {
  const BusMessage message = methodCall({DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, member});
  if (message && argument != nullptr) {
    const char* text = argument->c_str();
    dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
  }
  return call(message, kBusSeconds);
}

std::vector<std::string> BusConnection::names() {
  const CallResult result = askBus("ListNames", nullptr);
  const auto* reply = std::get_if<BusMessage>(&result);
  return reply != nullptr ? firstTexts(*reply) : std::vector<std::string>();
}

std::optional<std::string> BusConnection::ownerOf(const std::string& name) {
  const CallResult result = askBus("GetNameOwner", &name);
  const auto* reply = std::get_if<BusMessage>(&result);
  return reply != nullptr ? firstText(*reply) : std::nullopt;
}

std::optional<pid_t> BusConnection::pidOf(const std::string& name) {
  const CallResult result = askBus("GetConnectionUnixProcessID", &name);
  const auto* reply = std::get_if<BusMessage>(&result);
  const auto number = reply != nullptr ? firstNumber(*reply) : std::nullopt;
  return number ? std::optional<pid_t>(static_cast<pid_t>(*number)) : std::nullopt;
}

void BusConnection::addMatch(const std::string& rule) { std::ignore = askBus("AddMatch", &rule); }

void BusConnection::removeMatch(const std::string& rule) { std::ignore = askBus("RemoveMatch", &rule); }

int BusConnection::descriptor() const {
  int descriptor = -1;
  dbus_connection_get_unix_fd(connection_.get(), &descriptor);
  return descriptor;
}

bool BusConnection::readMessages(const std::function<void(DBusMessage*)>& received) {
  dbus_connection_read_write(connection_.get(), 0);
  while (const BusMessage message{dbus_connection_pop_message(connection_.get())}) received(message.get());
  return isConnected();
}

}  // namespace halvorn
