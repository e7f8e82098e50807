#include "Platform/session/linux/BusClient.h"

#include <QDBusError>
#include <QDBusVariant>

namespace halvorn {

namespace {

constexpr int kPatience = 2000;  // milliseconds
constexpr int kDeepestNesting = 4;

}  // namespace

BusClient::BusClient(const std::optional<std::string>& address)
    : address_(address), name_(QStringLiteral("halvorn-%1").arg(reinterpret_cast<quintptr>(this))) {}

BusClient::~BusClient() {
  if (!connection_) return;
  connection_.reset();
  QDBusConnection::disconnectFromBus(name_);
}

QDBusConnection* BusClient::connection() {
  if (!address_) return nullptr;
  if (!connection_) connection_ = QDBusConnection::connectToBus(QString::fromStdString(*address_), name_);
  return connection_->isConnected() ? &*connection_ : nullptr;
}

std::optional<QVariantList> BusClient::call(const QDBusMessage& question) {
  QDBusConnection* const bus = connection();
  if (bus == nullptr || isUnresponsive_) return std::nullopt;
  const QDBusMessage reply = bus->call(question, QDBus::Block, kPatience);
  const QDBusError::ErrorType error = QDBusError(reply).type();
  isUnresponsive_ =
      error == QDBusError::NoReply || error == QDBusError::Timeout || error == QDBusError::TimedOut;
  if (reply.type() != QDBusMessage::ReplyMessage) return std::nullopt;
  return reply.arguments();
}

QVariant unwrapped(QVariant value) {
  for (int depth = 0; depth < kDeepestNesting && value.canConvert<QDBusVariant>(); ++depth) {
    value = value.value<QDBusVariant>().variant();
  }
  return value;
}

}  // namespace halvorn
