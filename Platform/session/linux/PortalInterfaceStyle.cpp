#include "Platform/session/linux/PortalInterfaceStyle.h"

#include "Platform/color/linux/ColorSchemeSetting.h"
#include "Platform/session/linux/BusClient.h"
#include "Platform/session/linux/SignalListener.h"

namespace halvorn {

class PortalInterfaceStyle::PortalSettings {
 public:
  explicit PortalSettings(const std::optional<std::string>& busAddress) : bus_(busAddress) {}

  OptionalText style() {
    const auto answer = bus_.call(ColorSchemeSetting::question());
    const bool isDark = answer && ColorSchemeSetting::prefersDark(*answer).value_or(false);
    return isDark ? OptionalText("Dark") : std::nullopt;
  }

  void listen(std::function<void()> handler) {
    listener_.heardSignal = [this, heard = std::move(handler)](const QDBusMessage& change) {
      bus_.expectAnswers();
      if (ColorSchemeSetting::prefersDark(change)) heard();
    };
    if (QDBusConnection* const bus = bus_.connection()) {
      ColorSchemeSetting::listen(*bus, &listener_, SLOT(heard(QDBusMessage)));
    }
  }

 private:
  BusClient bus_;
  SignalListener listener_;
};

PortalInterfaceStyle::PortalInterfaceStyle(const std::optional<std::string>& busAddress)
    : settings_(std::make_unique<PortalSettings>(busAddress)) {}
PortalInterfaceStyle::~PortalInterfaceStyle() = default;

OptionalText PortalInterfaceStyle::current() { return settings_->style(); }
void PortalInterfaceStyle::installChangeHandler(std::function<void()> handler) {
  settings_->listen(std::move(handler));
}

}  // namespace halvorn
