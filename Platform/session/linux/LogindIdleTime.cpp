#include "Platform/session/linux/LogindIdleTime.h"

#include <QDBusArgument>
#include <algorithm>

#include "Platform/session/linux/BusClient.h"

namespace halvorn {

namespace {

constexpr char kService[] = "org.freedesktop.login1";
constexpr char kThisSession[] = "/org/freedesktop/login1/session/auto";
constexpr char kSessionInterface[] = "org.freedesktop.login1.Session";
constexpr double kNanosecondsPerSecond = 1e9;
constexpr double kMicrosecondsPerSecond = 1e6;

}  // namespace

LogindIdleTime::LogindIdleTime(const std::optional<std::string>& busAddress, const Clock& clock)
    : bus_(std::make_unique<BusClient>(busAddress)), clock_(clock) {}
LogindIdleTime::~LogindIdleTime() = default;

std::optional<std::int64_t> LogindIdleTime::nanosecondsSinceLastInput() {
  QDBusMessage question =
      QDBusMessage::createMethodCall(kService, kThisSession, "org.freedesktop.DBus.Properties", "GetAll");
  question << QString(kSessionInterface);
  const auto answer = bus_->call(question);
  if (!answer || answer->isEmpty()) return std::nullopt;
  const auto properties = qdbus_cast<QVariantMap>(answer->front());
  const auto hint = properties.find("IdleHint");
  const auto since = properties.find("IdleSinceHintMonotonic");
  if (hint == properties.end() || since == properties.end()) return std::nullopt;
  if (!hint->toBool()) return 0;
  const double start = static_cast<double>(since->toULongLong()) / kMicrosecondsPerSecond;
  const double seconds = std::max(0.0, clock_.monotonicSeconds() - start);
  return static_cast<std::int64_t>(seconds * kNanosecondsPerSecond);
}

}  // namespace halvorn
