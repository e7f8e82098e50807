#include "Platform/session/linux/wayland/NotifiedIdleTime.h"

#include <ext-idle-notify-v1-client-protocol.h>
#include <kde-idle-client-protocol.h>

#include <algorithm>
#include <utility>

#include "Platform/session/linux/wayland/WaylandConnection.h"

namespace halvorn {
namespace {

constexpr auto kWaitInMilliseconds = static_cast<std::uint32_t>(NotifiedIdleTime::kWait * 1000);
constexpr double kNanosecondsPerSecond = 1e9;

}  // namespace

class NotifiedIdleTime::Watch {
 public:
  // Null where nobody answers or tells.
  static std::unique_ptr<Watch> open(const std::string& socketPath, RunLoop& loop, const Clock& clock) {
    auto connection = WaylandConnection::open(socketPath);
    if (!connection) return nullptr;
    WaylandSeat seat(connection->bind<wl_seat>(wl_seat_interface, 1));
    if (!seat) return nullptr;
    std::unique_ptr<Watch> result(new Watch(std::move(connection), std::move(seat), clock));
    if (!result->arm() || !result->connection_->roundTrip()) return nullptr;
    Watch* const watch = result.get();
    result->source_ = loop.whenReadable(watch->connection_->descriptor(), [watch] { watch->look(); });
    return result;
  }

  [[nodiscard]] std::optional<std::int64_t> nanoseconds() {
    if (!connection_->roundTrip()) return std::nullopt;
    const double now = clock_.monotonicSeconds();
    if (idleSince_)
      return static_cast<std::int64_t>(std::max(0.0, now - *idleSince_) * kNanosecondsPerSecond);
    // Until then nobody can have been told.
    const bool isKnown = hasResumed_ || now - armedAt_ > kWait;
    return isKnown ? std::optional<std::int64_t>(0) : std::nullopt;
  }

 private:
  using Notifier = WaylandPointer<ext_idle_notifier_v1, ext_idle_notifier_v1_destroy>;
  using Notification = WaylandPointer<ext_idle_notification_v1, ext_idle_notification_v1_destroy>;
  using Idle = WaylandPointer<org_kde_kwin_idle, org_kde_kwin_idle_destroy>;
  using Timeout = WaylandPointer<org_kde_kwin_idle_timeout, org_kde_kwin_idle_timeout_release>;

  Watch(std::unique_ptr<WaylandConnection> connection, WaylandSeat seat, const Clock& clock)
      : connection_(std::move(connection)), seat_(std::move(seat)), clock_(clock) {}

  // The younger protocol takes a film that keeps the screen on for input, so it comes second.
  [[nodiscard]] bool arm() {
    armedAt_ = clock_.monotonicSeconds();
    if (connection_->offers(org_kde_kwin_idle_interface)) {
      armInput();
    } else if (connection_->offers(ext_idle_notifier_v1_interface)) {
      armNotification();
    }
    return timeout_ != nullptr || notification_ != nullptr;
  }
  void armInput() {
    static const org_kde_kwin_idle_timeout_listener listener = {
        .idle = [](void* data, org_kde_kwin_idle_timeout*) { static_cast<Watch*>(data)->leave(); },
        .resumed = [](void* data, org_kde_kwin_idle_timeout*) { static_cast<Watch*>(data)->comeBack(); }};
    idle_.reset(connection_->bind<org_kde_kwin_idle>(org_kde_kwin_idle_interface, 1));
    timeout_.reset(org_kde_kwin_idle_get_idle_timeout(idle_.get(), seat_.get(), kWaitInMilliseconds));
    org_kde_kwin_idle_timeout_add_listener(timeout_.get(), &listener, this);
  }
  void armNotification() {
    static const ext_idle_notification_v1_listener listener = {
        .idled = [](void* data, ext_idle_notification_v1*) { static_cast<Watch*>(data)->leave(); },
        .resumed = [](void* data, ext_idle_notification_v1*) { static_cast<Watch*>(data)->comeBack(); }};
    notifier_.reset(connection_->bind<ext_idle_notifier_v1>(ext_idle_notifier_v1_interface, 1));
    notification_.reset(
        ext_idle_notifier_v1_get_idle_notification(notifier_.get(), kWaitInMilliseconds, seat_.get()));
    ext_idle_notification_v1_add_listener(notification_.get(), &listener, this);
  }

  void leave() { idleSince_ = clock_.monotonicSeconds() - kWait; }
  void comeBack() {
    idleSince_.reset();
    hasResumed_ = true;
  }
  void look() {
    connection_->readEvents();
    if (!connection_->isUsable()) source_.reset();
  }

  const std::unique_ptr<WaylandConnection> connection_;
  const WaylandSeat seat_;
  const Clock& clock_;
  Notifier notifier_;
  Notification notification_;
  Idle idle_;
  Timeout timeout_;
  double armedAt_ = 0;               // monotonic seconds, as the next
  std::optional<double> idleSince_;  // the last input; nullopt while there is some
  bool hasResumed_ = false;
  std::unique_ptr<RunLoop::Source> source_;  // goes before the connection whose descriptor it watches
};

NotifiedIdleTime::NotifiedIdleTime(std::string socketPath, RunLoop& loop, const Clock& clock)
    : socketPath_(std::move(socketPath)), loop_(loop), clock_(clock) {}
NotifiedIdleTime::~NotifiedIdleTime() = default;

std::optional<std::int64_t> NotifiedIdleTime::nanosecondsSinceLastInput() {
  if (!std::exchange(hasTriedToConnect_, true)) watch_ = Watch::open(socketPath_, loop_, clock_);
  return watch_ ? watch_->nanoseconds() : std::nullopt;
}

}  // namespace halvorn
