// A connection of our own to a message bus.
//
// Nothing here ends the program when the bus goes, and nothing waits longer than it is told to.
#pragma once

#include <dbus/dbus.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace halvorn {

struct MessageDeleter {
  void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using BusMessage = std::unique_ptr<DBusMessage, MessageDeleter>;

// Why a call has no reply.
enum class CallFailure {
  NoSuchMethod,  // nothing of that name is exported, or nobody has that bus name
  TimedOut,
  Refused,  // any other error
};
using CallResult = std::variant<BusMessage, CallFailure>;

// Whom a call goes to, and what is called.
struct BusTarget {
  std::string name;
  std::string path;
  std::string interface;
  std::string member;
};
[[nodiscard]] BusMessage methodCall(const BusTarget& target);

// The first argument, when it is of that type.
[[nodiscard]] std::optional<std::string> firstText(const BusMessage& message);
[[nodiscard]] std::vector<std::string> firstTexts(const BusMessage& message);
[[nodiscard]] std::optional<std::uint32_t> firstNumber(const BusMessage& message);

// Thread: one at a time.
class BusConnection {
 public:
  static constexpr double kPatience = 2.0;  // seconds
  // Null when there is no bus at that address ("" is none), or it does not answer in time.
  [[nodiscard]] static std::unique_ptr<BusConnection> open(const std::string& address,
                                                           double patience = kPatience);
  // The library knows where it lies.
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

  [[nodiscard]] bool isConnected() const { return dbus_connection_get_is_connected(connection_.get()); }
  [[nodiscard]] CallResult call(const BusMessage& message, double seconds);
  // Sends and does not wait. False when the connection is gone.
  bool send(const BusMessage& message);

  // Sends, for a reply that readMessages() hands over; the message's serial number, by which the reply names it.
  [[nodiscard]] std::optional<std::uint32_t> ask(const BusMessage& message);
  // Until something comes, that many seconds at most.
  void waitForMessages(double seconds);

  // By which others reach this connection: of no other one, ever, on one bus.
  [[nodiscard]] std::string name() const;
  // From now on readMessages() hands over what others call here while a reply is awaited, too.
  void takeCalls() { takesCalls_ = true; }

  // Of the bus itself, with a short patience; empty and nullopt when it does not say.
  [[nodiscard]] std::vector<std::string> names();
  [[nodiscard]] std::optional<std::string> ownerOf(const std::string& name);
  [[nodiscard]] std::optional<pid_t> pidOf(const std::string& name);
  void addMatch(const std::string& rule);
  void removeMatch(const std::string& rule);

  // For an event loop: readable when something came; then readMessages().
  [[nodiscard]] int descriptor() const;
  // Hands over every message that came by itself, those too that come meanwhile. False once the connection is gone.
  bool readMessages(const std::function<void(DBusMessage*)>& received);

 private:
  struct Close {
    void operator()(DBusConnection* connection) const;
  };
  explicit BusConnection(DBusConnection* connection);
  // Moves bytes both ways, waiting at most until that time of the steady clock for the socket to take or bring some.
  void exchangeUntil(double deadline);
  [[nodiscard]] bool hasSomethingToWrite() const;
  [[nodiscard]] CallResult askBus(const char* member, const std::string* argument,
                                  double patience = kPatience);

  DBusWatch* writing_ = nullptr;  // the library's wish to write; it outlives the connection's end
  std::unique_ptr<DBusConnection, Close> connection_;
  bool takesCalls_ = false;
  std::deque<BusMessage> received_;  // what came while a reply was awaited
};

}  // namespace halvorn
