#include "Platform/color/linux/ColorSchemeWatch.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFileInfo>
#include <utility>

namespace halvorn {
namespace {

constexpr char kService[] = "org.freedesktop.portal.Desktop";
constexpr char kPath[] = "/org/freedesktop/portal/desktop";
constexpr char kInterface[] = "org.freedesktop.portal.Settings";
constexpr char kNamespace[] = "org.freedesktop.appearance";
constexpr char kKey[] = "color-scheme";
constexpr uint kPreferDark = 1;

// Asking for a bus that is not there starts one, which takes longer than the whole window.
bool sessionBusExists() {
  return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
         QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

}  // namespace

ColorSchemeWatch::ColorSchemeWatch(std::function<void(bool)> report) : report_(std::move(report)) {
  if (!sessionBusExists()) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  // First listen, then ask: no change falls in between. No sender is named because finding out who that is
  // would wait for an answer.
  bus.connect(QString(), QLatin1String(kPath), QLatin1String(kInterface), QStringLiteral("SettingChanged"),
              this, SLOT(settingChanged(QDBusMessage)));
  QDBusMessage question = QDBusMessage::createMethodCall(QLatin1String(kService), QLatin1String(kPath),
                                                         QLatin1String(kInterface), QStringLiteral("Read"));
  question << QLatin1String(kNamespace) << QLatin1String(kKey);
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
    const QDBusPendingReply<QDBusVariant> reply = *finished;
    if (!reply.isError()) take(reply.value().variant());
    finished->deleteLater();
  });
}

void ColorSchemeWatch::settingChanged(const QDBusMessage& message) {
  const QVariantList values = message.arguments();
  if (values.size() != 3 || values[0].toString() != QLatin1String(kNamespace) ||
      values[1].toString() != QLatin1String(kKey)) {
    return;
  }
  take(values[2]);
}

void ColorSchemeWatch::take(const QVariant& value) {
  // The answer to Read is a variant in a variant, the signal's value a variant.
  QVariant inner = value;
  for (int i = 0; i < 3 && inner.canConvert<QDBusVariant>(); ++i)
    inner = inner.value<QDBusVariant>().variant();
  bool ok = false;
  const uint scheme = inner.toUInt(&ok);
  if (ok) report_(scheme == kPreferDark);
}

}  // namespace halvorn
