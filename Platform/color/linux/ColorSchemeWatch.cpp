#include "Platform/color/linux/ColorSchemeWatch.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <utility>

#include "Platform/color/linux/ColorSchemeSetting.h"

namespace halvorn {
namespace {

constexpr int kPatience = 2000;  // milliseconds

// Asking for a bus that is not there starts one, which takes longer than the whole window.
bool sessionBusExists() {
  return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
         QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

}  // namespace

ColorSchemeWatch::ColorSchemeWatch(std::function<void(bool)> report, std::function<void()> silent)
    : report_(std::move(report)) {
  if (!sessionBusExists()) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  // First listen, then ask: no change falls in between.
  ColorSchemeSetting::listen(bus, this, SLOT(settingChanged(QDBusMessage)));
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(ColorSchemeSetting::question(), kPatience), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this,
          [this, silent = std::move(silent)](QDBusPendingCallWatcher* finished) {
            if (silent && finished->error().type() == QDBusError::NoReply) silent();
            if (!finished->isError()) take(ColorSchemeSetting::prefersDark(finished->reply().arguments()));
            finished->deleteLater();
          });
}

void ColorSchemeWatch::settingChanged(const QDBusMessage& message) {
  take(ColorSchemeSetting::prefersDark(message));
}

void ColorSchemeWatch::take(std::optional<bool> prefersDark) {
  if (prefersDark) report_(*prefersDark);
}

}  // namespace halvorn
