#include "Platform/window/linux/LauncherEntry.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QVariantMap>

#include "Platform/session/linux/BusAddresses.h"

namespace halvorn {

// A signal to whoever listens: each desktop that knows it takes it from here.
void showProgressInLauncher(std::optional<double> share) {
  // Asking for a bus that is not there would start one.
  if (!sessionBusAddress(Environment::ofThisProcess())) return;
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  QDBusMessage update = QDBusMessage::createSignal(QStringLiteral("/example/halvorn/installer"),
                                                   QStringLiteral("com.canonical.Unity.LauncherEntry"),
                                                   QStringLiteral("Update"));
  update << QStringLiteral("application://%1.desktop").arg(QGuiApplication::desktopFileName())
         << QVariantMap{{QStringLiteral("progress"), share.value_or(0.0)},
                        {QStringLiteral("progress-visible"), share.has_value()}};
  (void)bus.send(update);
}

}  // namespace halvorn
