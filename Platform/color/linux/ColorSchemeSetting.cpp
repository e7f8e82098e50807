#include "Platform/color/linux/ColorSchemeSetting.h"

#include <QDBusVariant>

namespace halvorn::ColorSchemeSetting {
namespace {

constexpr char kService[] = "org.freedesktop.portal.Desktop";
constexpr char kPath[] = "/org/freedesktop/portal/desktop";
constexpr char kSettingsInterface[] = "org.freedesktop.portal.Settings";
constexpr char kGroup[] = "org.freedesktop.appearance";
constexpr char kScheme[] = "color-scheme";
constexpr uint kDark = 1;
constexpr int kDeepestNesting = 4;

std::optional<bool> isDark(const QVariant& value) {
  bool isNumber = false;
  const uint scheme = unwrapped(value).toUInt(&isNumber);
  return isNumber ? std::optional(scheme == kDark) : std::nullopt;
}

}  // namespace

QDBusMessage question() {
  // Every portal knows Read; its newer namesake without the second wrapping came later.
  QDBusMessage message = QDBusMessage::createMethodCall(kService, kPath, kSettingsInterface, "Read");
  message << QString(kGroup) << QString(kScheme);
  return message;
}

QDBusMessage questionForAll(const QStringList& groups) {
  QDBusMessage message = QDBusMessage::createMethodCall(kService, kPath, kSettingsInterface, "ReadAll");
  message << groups;
  return message;
}

QVariant unwrapped(QVariant value) {
  // The reply to one question is a variant in a variant, what a signal tells a variant.
  for (int depth = 0; depth < kDeepestNesting && value.canConvert<QDBusVariant>(); ++depth)
    value = value.value<QDBusVariant>().variant();
  return value;
}

std::optional<bool> prefersDark(const QVariantList& reply) {
  return reply.isEmpty() ? std::nullopt : isDark(reply.front());
}

void listen(QDBusConnection& bus, QObject* receiver, const char* slot) {
  // No sender is named: finding out who that is would wait, and start a portal that nobody needs yet.
  bus.connect(QString(), kPath, kSettingsInterface, "SettingChanged", receiver, slot);
}

std::optional<bool> prefersDark(const QDBusMessage& change) {
  const QVariantList values = change.arguments();
  const bool isThis = values.size() == 3 && values[0].toString() == kGroup && values[1].toString() == kScheme;
  return isThis ? isDark(values[2]) : std::nullopt;
}

}  // namespace halvorn::ColorSchemeSetting
