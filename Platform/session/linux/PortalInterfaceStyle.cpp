#include "Platform/session/linux/PortalInterfaceStyle.h"

#include "Platform/session/linux/BusClient.h"
#include "Platform/session/linux/SettingListener.h"

namespace halvorn {

namespace {

constexpr char service[] = "org.freedesktop.portal.Desktop";
constexpr char path[] = "/org/freedesktop/portal/desktop";
constexpr char settingsInterface[] = "org.freedesktop.portal.Settings";
constexpr char group[] = "org.freedesktop.appearance";
constexpr char key[] = "color-scheme";
constexpr uint prefersDark = 1;

}  // namespace

class PortalInterfaceStyle::PortalSettings {
 public:
  explicit PortalSettings(const std::optional<std::string>& busAddress) : bus_(busAddress) {}

  OptionalText style() {
    // Every portal knows Read; its newer namesake without the second wrapping came later.
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, settingsInterface, "Read");
    question << QString(group) << QString(key);
    const auto answer = bus_.call(question);
    if (!answer || answer->isEmpty()) return std::nullopt;
    bool isNumber = false;
    const uint scheme = unwrapped(answer->front()).toUInt(&isNumber);
    return isNumber && scheme == prefersDark ? OptionalText("Dark") : std::nullopt;
  }

  void listen(std::function<void()> handler) {
    listener_.changed = [this, heard = std::move(handler)](const QString& changedGroup,
                                                           const QString& changedKey) {
      bus_.expectAnswers();
      if (changedGroup == QString(group) && changedKey == QString(key)) heard();
    };
    QDBusConnection* const bus = bus_.connection();
    if (bus == nullptr) return;
    // No sender is named: finding out who that is would start a portal that nobody needs yet.
    bus->connect(QString(), path, settingsInterface, "SettingChanged", &listener_, SLOT(heard(QDBusMessage)));
  }

 private:
  BusClient bus_;
  SettingListener listener_;
};

PortalInterfaceStyle::PortalInterfaceStyle(const std::optional<std::string>& busAddress)
    : settings_(std::make_unique<PortalSettings>(busAddress)) {}
PortalInterfaceStyle::~PortalInterfaceStyle() = default;

OptionalText PortalInterfaceStyle::current() { return settings_->style(); }
void PortalInterfaceStyle::installChangeHandler(std::function<void()> handler) {
  settings_->listen(std::move(handler));
}

}  // namespace halvorn
