#include "Platform/color/linux/AppearanceWatch.h"

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

AppearanceWatch::AppearanceWatch(Told told, std::function<void()> silent) : told_(std::move(told)) {
  if (!sessionBusExists()) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  // First listen, then ask: no change falls in between.
  ColorSchemeSetting::listen(bus, this, SLOT(settingChanged(QDBusMessage)));
  auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(AppearanceSettings::question(), kPatience), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this,
          [this, silent = std::move(silent)](QDBusPendingCallWatcher* finished) {
            if (silent && finished->error().type() == QDBusError::NoReply) silent();
            if (!finished->isError()) {
              settings_.takeAll(finished->reply().arguments());
              told_(settings_);
            }
            finished->deleteLater();
          });
}

void AppearanceWatch::settingChanged(const QDBusMessage& message) {
  settings_.take(message);
  told_(settings_);
}

}  // namespace halvorn
