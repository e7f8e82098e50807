#include "Platform/session/linux/bus/BusConnection.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string_view>
#include <tuple>
#include <utility>

namespace halvorn {
namespace {

double steadySeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

CallResult resultFrom(BusMessage reply) {
  if (dbus_message_get_type(reply.get()) == DBUS_MESSAGE_TYPE_METHOD_RETURN) return reply;
  const std::string_view error = dbus_message_get_error_name(reply.get());
  for (const char* timedOut : {DBUS_ERROR_NO_REPLY, DBUS_ERROR_TIMEOUT, DBUS_ERROR_TIMED_OUT}) {
    if (error == timedOut) return CallFailure::TimedOut;
  }
  for (const char* unknown :
       {DBUS_ERROR_UNKNOWN_METHOD, DBUS_ERROR_UNKNOWN_INTERFACE, DBUS_ERROR_UNKNOWN_OBJECT,
        DBUS_ERROR_SERVICE_UNKNOWN, DBUS_ERROR_NAME_HAS_NO_OWNER}) {
    if (error == unknown) return CallFailure::NoSuchMethod;
  }
  return CallFailure::Refused;
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

std::unique_ptr<BusConnection> BusConnection::open(const std::string& address, double patience) {
  if (address.empty()) return nullptr;
  DBusConnection* raw = dbus_connection_open_private(address.c_str(), nullptr);
  if (raw == nullptr) return nullptr;
  std::unique_ptr<BusConnection> result(new BusConnection(raw));
  dbus_connection_set_exit_on_disconnect(raw, FALSE);
  // The library's own greeting waits for half a minute.
  const CallResult hello = result->askBus("Hello", nullptr, patience);
  const auto* reply = std::get_if<BusMessage>(&hello);
  const auto name = reply != nullptr ? firstText(*reply) : std::nullopt;
  if (!name || !dbus_bus_set_unique_name(raw, name->c_str())) return nullptr;
  return result;
}

BusConnection::BusConnection(DBusConnection* connection) : connection_(connection) {
  const auto added = [](DBusWatch* watch, void* self) -> dbus_bool_t {
    if ((dbus_watch_get_flags(watch) & DBUS_WATCH_WRITABLE) != 0)
      static_cast<BusConnection*>(self)->writing_ = watch;
    return TRUE;
  };
  const auto removed = [](DBusWatch* watch, void* self) {
    DBusWatch*& writing = static_cast<BusConnection*>(self)->writing_;
    if (writing == watch) writing = nullptr;
  };
  dbus_connection_set_watch_functions(connection, added, removed, nullptr, this, nullptr);
}

// Also while two ends introduce themselves; and not while a message has to wait for that.
bool BusConnection::hasSomethingToWrite() const {
  return writing_ != nullptr && dbus_watch_get_enabled(writing_);
}

void BusConnection::exchangeUntil(double deadline) {
  dbus_connection_read_write(connection_.get(), 0);
  if (dbus_connection_get_dispatch_status(connection_.get()) == DBUS_DISPATCH_DATA_REMAINS) return;
  const double wait = std::max(deadline - steadySeconds(), 0.0);
  const int events = hasSomethingToWrite() ? POLLIN | POLLOUT : POLLIN;
  pollfd entry{descriptor(), static_cast<short>(events), 0};
  ::poll(&entry, 1, static_cast<int>(std::min(std::ceil(wait * 1000), 1e9)));
}

// The library's own way of waiting has no limit while a server does not greet.
CallResult BusConnection::call(const BusMessage& message, double seconds) {
  dbus_uint32_t serial = 0;
  if (!message || !dbus_connection_send(connection_.get(), message.get(), &serial))
    return CallFailure::Refused;
  const double deadline = steadySeconds() + seconds;
  for (bool isFirst = true; isConnected() && (isFirst || steadySeconds() < deadline); isFirst = false) {
    exchangeUntil(deadline);
    while (BusMessage received{dbus_connection_pop_message(connection_.get())}) {
      if (dbus_message_get_reply_serial(received.get()) == serial) return resultFrom(std::move(received));
      const int type = dbus_message_get_type(received.get());
      const bool isWanted =
          type == DBUS_MESSAGE_TYPE_SIGNAL || (takesCalls_ && type == DBUS_MESSAGE_TYPE_METHOD_CALL);
      if (isWanted) received_.push_back(std::move(received));
    }
  }
  return isConnected() ? CallFailure::TimedOut : CallFailure::Refused;
}

bool BusConnection::send(const BusMessage& message) {
  if (!message || !isConnected()) return false;
  dbus_message_set_no_reply(message.get(), TRUE);
  if (!dbus_connection_send(connection_.get(), message.get(), nullptr)) return false;
  const double deadline = steadySeconds() + kPatience;
  while (isConnected() && dbus_connection_has_messages_to_send(connection_.get()) &&
         steadySeconds() < deadline) {
    exchangeUntil(deadline);
  }
  return isConnected() && !dbus_connection_has_messages_to_send(connection_.get());
}

std::optional<std::uint32_t> BusConnection::ask(const BusMessage& message) {
  dbus_uint32_t serial = 0;
  if (!message || !isConnected()) return std::nullopt;
  if (!dbus_connection_send(connection_.get(), message.get(), &serial)) return std::nullopt;
  return serial;
}

void BusConnection::waitForMessages(double seconds) { exchangeUntil(steadySeconds() + seconds); }

std::string BusConnection::name() const {
  const char* const name = dbus_bus_get_unique_name(connection_.get());
  return name == nullptr ? "" : name;
}

CallResult BusConnection::askBus(const char* member, const std::string* argument, double patience) {
  const BusMessage message = methodCall({DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, member});
  if (message && argument != nullptr) {
    const char* text = argument->c_str();
    dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &text, DBUS_TYPE_INVALID);
  }
  return call(message, patience);
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
  for (;;) {
    // Also what a call out of `received` has read: the descriptor tells nothing of that any more.
    while (BusMessage message{dbus_connection_pop_message(connection_.get())})
      received_.push_back(std::move(message));
    if (received_.empty()) return isConnected();
    const BusMessage message = std::move(received_.front());
    received_.pop_front();
    received(message.get());
  }
}

}  // namespace halvorn
