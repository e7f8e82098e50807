#include "Platform/color/linux/ColorSchemeSetting.h"

#include <QDBusVariant>

namespace halvorn::ColorSchemeSetting {
namespace {

constexpr char service[] = "org.freedesktop.portal.Desktop";
constexpr char path[] = "/org/freedesktop/portal/desktop";
constexpr char settingsInterface[] = "org.freedesktop.portal.Settings";
constexpr char group[] = "org.freedesktop.appearance";
constexpr char key[] = "color-scheme";
constexpr uint dark = 1;
constexpr int deepestNesting = 4;

std::optional<bool> prefersDark(QVariant value) {
  // The reply is a variant in a variant, what a signal tells a variant.
  for (int depth = 0; depth < deepestNesting && value.canConvert<QDBusVariant>(); ++depth)
    value = value.value<QDBusVariant>().variant();
  bool isNumber = false;
  const uint scheme = value.toUInt(&isNumber);
  return isNumber ? std::optional(scheme == dark) : std::nullopt;
}

}  // namespace

QDBusMessage question() {
  // Every portal knows Read; its newer namesake without the second wrapping came later.
  QDBusMessage message = QDBusMessage::createMethodCall(service, path, settingsInterface, "Read");
  message << QString(group) << QString(key);
  return message;
}

std::optional<bool> prefersDark(const QVariantList& reply) {
  return reply.isEmpty() ? std::nullopt : prefersDark(reply.front());
}

void listen(QDBusConnection& bus, QObject* receiver, const char* slot) {
  // No sender is named: finding out who that is would wait, and start a portal that nobody needs yet.
  bus.connect(QString(), path, settingsInterface, "SettingChanged", receiver, slot);
}

std::optional<bool> prefersDark(const QDBusMessage& change) {
  const QVariantList values = change.arguments();
  const bool isThis = values.size() == 3 && values[0].toString() == group && values[1].toString() == key;
  return isThis ? prefersDark(values[2]) : std::nullopt;
}

}  // namespace halvorn::ColorSchemeSetting
