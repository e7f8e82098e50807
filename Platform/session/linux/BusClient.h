// A connection of its own to a message bus, made at the first use, for callers that cannot wait long.
//
// Thread: main.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantList>
#include <optional>
#include <string>

namespace halvorn {

class BusClient {
 public:
  // Without an address there is no bus.
  explicit BusClient(const std::optional<std::string>& address);
  ~BusClient();
  BusClient(const BusClient&) = delete;
  BusClient& operator=(const BusClient&) = delete;

  // Null when there is no such bus.
  [[nodiscard]] QDBusConnection* connection();
  // The arguments of the reply; nullopt for an error, and when none came within two seconds. A service that
  // kept this waiting once is not asked again before expectAnswers().
  [[nodiscard]] std::optional<QVariantList> call(const QDBusMessage& question);
  void expectAnswers() { isUnresponsive_ = false; }

 private:
  const std::optional<std::string> address_;
  const QString name_;  // by which the toolkit knows the connection
  std::optional<QDBusConnection> connection_;
  bool isUnresponsive_ = false;
};

// What is inside of variants, however deep they are nested.
[[nodiscard]] QVariant unwrapped(QVariant value);

}  // namespace halvorn
