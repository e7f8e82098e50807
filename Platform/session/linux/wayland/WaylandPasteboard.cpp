#include "Platform/session/linux/wayland/WaylandPasteboard.h"

#include <wlr-data-control-client-protocol.h>

#include <utility>

#include "Platform/session/linux/wayland/WaylandConnection.h"

namespace halvorn {

// What is offered is refused as soon as it is the clipboard's; that it was offered is all that counts. Refused earlier, its
// proxy would stay for ever: the library forgets to count down for what a waiting event names.
class WaylandPasteboard::Device {
 public:
  // Null where nobody answers or tells.
  static std::unique_ptr<Device> open(const std::string& socketPath) {
    auto connection = WaylandConnection::open(socketPath);
    if (!connection || !connection->offers(zwlr_data_control_manager_v1_interface)) return nullptr;
    WaylandSeat seat(connection->bind<wl_seat>(wl_seat_interface, 1));
    if (!seat) return nullptr;
    std::unique_ptr<Device> result(new Device(std::move(connection), std::move(seat)));
    // What is on the clipboard already is told now, by some compositors even when it is empty.
    if (!result->connection_->roundTrip()) return nullptr;
    result->count_ = 0;
    return result;
  }

  [[nodiscard]] std::int64_t count() {
    std::ignore = connection_->roundTrip();
    return count_;
  }

 private:
  using Manager = WaylandPointer<zwlr_data_control_manager_v1, zwlr_data_control_manager_v1_destroy>;
  using Control = WaylandPointer<zwlr_data_control_device_v1, zwlr_data_control_device_v1_destroy>;
  using Offer = WaylandPointer<zwlr_data_control_offer_v1, zwlr_data_control_offer_v1_destroy>;

  Device(std::unique_ptr<WaylandConnection> connection, WaylandSeat seat)
      : connection_(std::move(connection)),
        seat_(std::move(seat)),
        manager_(connection_->bind<zwlr_data_control_manager_v1>(zwlr_data_control_manager_v1_interface, 1)),
        control_(zwlr_data_control_manager_v1_get_data_device(manager_.get(), seat_.get())) {
    static const zwlr_data_control_device_v1_listener listener = {
        .data_offer =
            [](void* data, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
              static_cast<Device*>(data)->offer_.reset(offer);
            },
        .selection =
            [](void* data, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1*) {
              auto* const device = static_cast<Device*>(data);
              ++device->count_;
              device->offer_.reset();
            },
        .finished = [](void*, zwlr_data_control_device_v1*) {},
        .primary_selection = [](void*, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1*) {}};
    zwlr_data_control_device_v1_add_listener(control_.get(), &listener, this);
  }

  const std::unique_ptr<WaylandConnection> connection_;
  const WaylandSeat seat_;
  const Manager manager_;
  const Control control_;
  Offer offer_;
  std::int64_t count_ = 0;
};

WaylandPasteboard::WaylandPasteboard(std::string socketPath) : socketPath_(std::move(socketPath)) {}
WaylandPasteboard::~WaylandPasteboard() = default;

std::optional<std::int64_t> WaylandPasteboard::changeCount() {
  if (!std::exchange(hasTriedToConnect_, true)) device_ = Device::open(socketPath_);
  return device_ ? std::optional(device_->count()) : std::nullopt;
}

}  // namespace halvorn
