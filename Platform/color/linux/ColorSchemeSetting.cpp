#include "Platform/color/linux/ColorSchemeSetting.h"

#include <QDBusVariant>

namespace halvorn::ColorSchemeSetting {
namespace {

constexpr char kService[] = "org.freedesktop.portal.Desktop";
constexpr char kPath[] = "/org/freedesktop/portal/desktop";
constexpr char kSettingsInterface[] = "org.freedesktop.portal.Settings";
constexpr char kGroup[] = "org.freedesktop.appearance";
constexpr char kScheme[] = "color-scheme";
constexpr char kContrast[] = "contrast";
constexpr uint kPreferred = 1;  // dark, or higher; of either setting
constexpr int kDeepestNesting = 4;

std::optional<bool> isPreferred(QVariant value) {
  // The reply is a variant in a variant, what a signal tells a variant.
  for (int depth = 0; depth < kDeepestNesting && value.canConvert<QDBusVariant>(); ++depth)
    value = value.value<QDBusVariant>().variant();
  bool isNumber = false;
  const uint preference = value.toUInt(&isNumber);
  return isNumber ? std::optional(preference == kPreferred) : std::nullopt;
}

std::optional<bool> isPreferred(const QVariantList& reply) {
  return reply.isEmpty() ? std::nullopt : isPreferred(reply.front());
}

QDBusMessage questionFor(const char* key) {
  // Every portal knows Read; its newer namesake without the second wrapping came later.
  QDBusMessage message = QDBusMessage::createMethodCall(kService, kPath, kSettingsInterface, "Read");
  message << QString(kGroup) << QString(key);
  return message;
}

std::optional<bool> isPreferred(const QDBusMessage& change, const char* key) {
  const QVariantList values = change.arguments();
  const bool isThis = values.size() == 3 && values[0].toString() == kGroup && values[1].toString() == key;
  return isThis ? isPreferred(values[2]) : std::nullopt;
}

}  // namespace

QDBusMessage question() { return questionFor(kScheme); }
QDBusMessage questionForContrast() { return questionFor(kContrast); }

std::optional<bool> prefersDark(const QVariantList& reply) { return isPreferred(reply); }
std::optional<bool> prefersContrast(const QVariantList& reply) { return isPreferred(reply); }

void listen(QDBusConnection& bus, QObject* receiver, const char* slot) {
  // No sender is named: finding out who that is would wait, and start a portal that nobody needs yet.
  bus.connect(QString(), kPath, kSettingsInterface, "SettingChanged", receiver, slot);
}

std::optional<bool> prefersDark(const QDBusMessage& change) { return isPreferred(change, kScheme); }
std::optional<bool> prefersContrast(const QDBusMessage& change) { return isPreferred(change, kContrast); }

}  // namespace halvorn::ColorSchemeSetting
