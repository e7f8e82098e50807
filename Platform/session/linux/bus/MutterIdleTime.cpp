#include "Platform/session/linux/bus/MutterIdleTime.h"

#include <utility>

#include "Platform/session/linux/bus/OwnerOfCompositor.h"

namespace halvorn {
namespace {

constexpr char kName[] = "org.gnome.Mutter.IdleMonitor";
constexpr char kPath[] = "/org/gnome/Mutter/IdleMonitor/Core";
constexpr std::int64_t kNanosecondsPerMillisecond = 1'000'000;

}  // namespace

class MutterIdleTime::Monitor {
 public:
  // Null where this session's compositor is another.
  static std::unique_ptr<Monitor> open(const DesktopAddresses& desktop) {
    const auto compositor = WaylandConnection::open(desktop.waylandSocket);
    const auto listener = compositor ? compositor->listener() : std::nullopt;
    auto bus = listener ? BusConnection::open(desktop.bus, kPatience.count()) : nullptr;
    auto owner = bus ? compositorWithName(*bus, kName, *listener) : std::nullopt;
    return owner ? std::unique_ptr<Monitor>(new Monitor(std::move(bus), *std::move(owner))) : nullptr;
  }

  [[nodiscard]] std::optional<std::int64_t> nanoseconds() {
    read();
    if (question_ || !bus_->isConnected()) return std::nullopt;
    question_ = bus_->ask(methodCall({owner_, kPath, kName, "GetIdletime"}));
    milliseconds_.reset();
    const auto end = Clock::now() + kPatience;
    while (question_ && bus_->isConnected() && Clock::now() < end) {
      bus_->waitForMessages(std::chrono::duration<double>(end - Clock::now()).count());
      read();
    }
    if (question_ || !milliseconds_) return std::nullopt;
    return static_cast<std::int64_t>(*milliseconds_) * kNanosecondsPerMillisecond;
  }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::duration<double> kPatience = WaylandConnection::kPatience;

  Monitor(std::unique_ptr<BusConnection> bus, std::string owner)
      : bus_(std::move(bus)), owner_(std::move(owner)) {}

  void read() {
    bus_->readMessages([this](DBusMessage* message) {
      if (!question_ || dbus_message_get_reply_serial(message) != *question_) return;
      question_.reset();
      dbus_uint64_t told = 0;
      if (dbus_message_get_args(message, nullptr, DBUS_TYPE_UINT64, &told, DBUS_TYPE_INVALID))
        milliseconds_ = told;
    });
  }

  const std::unique_ptr<BusConnection> bus_;
  const std::string owner_;
  std::optional<std::uint32_t> question_;  // that was not answered yet
  std::optional<std::uint64_t> milliseconds_;
};

MutterIdleTime::MutterIdleTime(DesktopAddresses desktop) : desktop_(std::move(desktop)) {}
MutterIdleTime::~MutterIdleTime() = default;

std::optional<std::int64_t> MutterIdleTime::nanosecondsSinceLastInput() {
  if (!std::exchange(hasTriedToConnect_, true)) monitor_ = Monitor::open(desktop_);
  return monitor_ ? monitor_->nanoseconds() : std::nullopt;
}

}  // namespace halvorn
