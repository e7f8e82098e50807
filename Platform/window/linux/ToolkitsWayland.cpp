#include "Platform/window/linux/ToolkitsWayland.h"

#include <xdg-activation-v1-client-protocol.h>

#include <qpa/qplatformnativeinterface.h>
#include <QGuiApplication>
#include <QThread>
#include <QWindow>
#include <cstdint>
#include <future>
#include <memory>

#include "Platform/session/linux/wayland/WaylandConnection.h"

namespace halvorn {
namespace {

// Null where the toolkit is on no compositor.
QPlatformNativeInterface* waylandInterface() {
  const bool isOnWayland =
      qGuiApp != nullptr && QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
  return isOnWayland ? QGuiApplication::platformNativeInterface() : nullptr;
}

wl_display* displayOf(QPlatformNativeInterface& native) {
  return static_cast<wl_display*>(native.nativeResourceForIntegration("wl_display"));
}

// What the person did, in the compositor's terms.
struct Deed {
  wl_display* display = nullptr;
  wl_seat* seat = nullptr;
  wl_surface* surface = nullptr;
  std::uint32_t serial = 0;
};

// Thread: main.
Deed lastDeed() {
  Deed deed;
  QPlatformNativeInterface* const native = waylandInterface();
  if (native == nullptr) return deed;
  const auto resource = [&](const char* name) { return native->nativeResourceForIntegration(name); };
  deed.display = displayOf(*native);
  deed.seat = static_cast<wl_seat*>(resource("wl_seat"));
  // A number in the place of a pointer.
  deed.serial = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(resource("serial")));
  for (QWindow* window : QGuiApplication::topLevelWindows()) {
    if (!window->isVisible() || window->handle() == nullptr) continue;
    deed.surface = static_cast<wl_surface*>(native->nativeResourceForWindow("surface", window));
  }
  return deed;
}

// Another thread asks the main one, which may be waiting for it.
Deed lastDeedOfAnyThread() {
  if (QThread::currentThread() == qGuiApp->thread()) return lastDeed();
  auto answer = std::make_shared<std::promise<Deed>>();
  auto coming = answer->get_future();
  QMetaObject::invokeMethod(
      qGuiApp, [answer] { answer->set_value(lastDeed()); }, Qt::QueuedConnection);
  const bool hasCome = coming.wait_for(WaylandConnection::kPatience / 2) == std::future_status::ready;
  return hasCome ? coming.get() : Deed();
}

}  // namespace

bool hasLostCompositor() {
  QPlatformNativeInterface* const native = waylandInterface();
  wl_display* const display = native != nullptr ? displayOf(*native) : nullptr;
  return display != nullptr && wl_display_get_error(display) != 0;
}

std::optional<std::string> waylandActivationToken(const std::string& application) {
  if (qGuiApp == nullptr) return std::nullopt;
  const Deed deed = lastDeedOfAnyThread();
  if (deed.display == nullptr) return std::nullopt;
  const auto connection = WaylandConnection::over(deed.display, WaylandConnection::kPatience / 2);
  if (!connection) return std::nullopt;
  const WaylandPointer<xdg_activation_v1, xdg_activation_v1_destroy> activation(
      connection->bind<xdg_activation_v1>(xdg_activation_v1_interface, 1));
  if (!activation) return std::nullopt;
  const WaylandPointer<xdg_activation_token_v1, xdg_activation_token_v1_destroy> request(
      xdg_activation_v1_get_activation_token(activation.get()));
  static const xdg_activation_token_v1_listener listener = {
      .done = [](void* data, xdg_activation_token_v1*, const char* text) {
        static_cast<std::string*>(data)->assign(text);
      }};
  std::string token;
  xdg_activation_token_v1_add_listener(request.get(), &listener, &token);
  if (deed.seat != nullptr && deed.serial != 0)
    xdg_activation_token_v1_set_serial(request.get(), deed.serial, deed.seat);
  if (deed.surface != nullptr) xdg_activation_token_v1_set_surface(request.get(), deed.surface);
  xdg_activation_token_v1_set_app_id(request.get(), application.c_str());
  xdg_activation_token_v1_commit(request.get());
  // Most answer at once; those that do not have a second round.
  for (int round = 0; round < 2 && token.empty(); ++round) {
    if (!connection->roundTrip()) break;
  }
  return token.empty() ? std::nullopt : std::optional(token);
}

}  // namespace halvorn
