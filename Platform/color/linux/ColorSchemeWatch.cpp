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

void tell(const std::function<void(bool)>& report, std::optional<bool> preference) {
  if (preference && report) report(*preference);
}

}  // namespace

ColorSchemeWatch::ColorSchemeWatch(Report report, std::function<void()> silent) : report_(std::move(report)) {
  if (!sessionBusExists()) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  // First listen, then ask: no change falls in between.
  ColorSchemeSetting::listen(bus, this, SLOT(settingChanged(QDBusMessage)));
  const auto ask = [this, &bus](const QDBusMessage& question, auto answered) {
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question, kPatience), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [answered](QDBusPendingCallWatcher* finished) {
      answered(*finished);
      finished->deleteLater();
    });
  };
  ask(ColorSchemeSetting::question(),
      [this, silent = std::move(silent)](const QDBusPendingCallWatcher& answer) {
        if (silent && answer.error().type() == QDBusError::NoReply) silent();
        if (!answer.isError())
          tell(report_.scheme, ColorSchemeSetting::prefersDark(answer.reply().arguments()));
      });
  ask(ColorSchemeSetting::questionForContrast(), [this](const QDBusPendingCallWatcher& answer) {
    if (!answer.isError())
      tell(report_.contrast, ColorSchemeSetting::prefersContrast(answer.reply().arguments()));
  });
}

void ColorSchemeWatch::settingChanged(const QDBusMessage& message) {
  tell(report_.scheme, ColorSchemeSetting::prefersDark(message));
  tell(report_.contrast, ColorSchemeSetting::prefersContrast(message));
}

}  // namespace halvorn
