#include "Platform/session/linux/wayland/SeatKeyboard.h"

#include <unistd.h>

#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/session/linux/wayland/WaylandConnection.h"
#include "Platform/text/linux/LayoutTable.h"

namespace halvorn {
namespace {

constexpr std::uint32_t kFirstLayout = 0;
constexpr std::uint32_t kLargestDescription = 8U << 20;  // bytes; real ones have some ten thousands

// "" where it cannot be read.
std::string contentsOf(const FileDescriptor& file, std::uint32_t size) {
  if (size == 0 || size > kLargestDescription) return "";
  std::string text(size, '\0');
  std::size_t length = 0;
  while (length < size) {
    const auto read = retried(
        [&] { return ::pread(file.get(), text.data() + length, size - length, static_cast<off_t>(length)); });
    if (read <= 0) return "";
    length += static_cast<std::size_t>(read);
  }
  return text.substr(0, text.find('\0'));
}

}  // namespace

class SeatKeyboard::Seat {
 public:
  // Null where nobody answers.
  static std::unique_ptr<Seat> open(const std::string& socketPath) {
    auto connection = WaylandConnection::open(socketPath);
    if (!connection) return nullptr;
    WaylandSeat seat(connection->bind<wl_seat>(wl_seat_interface, 1));
    return seat ? std::unique_ptr<Seat>(new Seat(std::move(connection), std::move(seat))) : nullptr;
  }

  // As it is now; null without a keyboard.
  [[nodiscard]] const LayoutTable* layouts() {
    if (!connection_->roundTrip()) return nullptr;
    // What the seat has is told first, and its keyboard asked for then.
    if (keyboard_ && !layouts_) std::ignore = connection_->roundTrip();
    return layouts_.get();
  }

 private:
  using SeatsKeyboard = WaylandPointer<wl_keyboard, wl_keyboard_destroy>;

  Seat(std::unique_ptr<WaylandConnection> connection, WaylandSeat seat)
      : connection_(std::move(connection)), seat_(std::move(seat)) {
    static const wl_seat_listener listener = {
        .capabilities =
            [](void* data, wl_seat*, std::uint32_t capabilities) {
              static_cast<Seat*>(data)->take((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0);
            },
        .name = [](void*, wl_seat*, const char*) {}};
    wl_seat_add_listener(seat_.get(), &listener, this);
  }

  void take(bool hasKeyboard) {
    if (hasKeyboard == (keyboard_ != nullptr)) return;
    layouts_.reset();
    keyboard_.reset(hasKeyboard ? wl_seat_get_keyboard(seat_.get()) : nullptr);
    if (!keyboard_) return;
    using Key = std::uint32_t;
    static const wl_keyboard_listener listener = {
        .keymap =
            [](void* data, wl_keyboard*, std::uint32_t format, std::int32_t file, std::uint32_t size) {
              static_cast<Seat*>(data)->read(format, FileDescriptor(file), size);
            },
        .enter = [](void*, wl_keyboard*, Key, wl_surface*, wl_array*) {},
        .leave = [](void*, wl_keyboard*, Key, wl_surface*) {},
        .key = [](void*, wl_keyboard*, Key, Key, Key, Key) {},
        .modifiers = [](void*, wl_keyboard*, Key, Key, Key, Key, Key) {},
        .repeat_info = [](void*, wl_keyboard*, std::int32_t, std::int32_t) {}};
    wl_keyboard_add_listener(keyboard_.get(), &listener, this);
  }
  void read(std::uint32_t format, const FileDescriptor& file, std::uint32_t size) {
    layouts_.reset();
    if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1) layouts_ = LayoutTable::parsed(contentsOf(file, size));
  }

  const std::unique_ptr<WaylandConnection> connection_;
  const WaylandSeat seat_;
  SeatsKeyboard keyboard_;
  std::unique_ptr<LayoutTable> layouts_;
};

SeatKeyboard::SeatKeyboard(const std::string& socketPath) : seat_(Seat::open(socketPath)) {}
SeatKeyboard::~SeatKeyboard() = default;

bool SeatKeyboard::hasLayout() const { return seat_ && seat_->layouts() != nullptr; }

// Asks the compositor each time: people switch their layout while programs run.
OptionalText SeatKeyboard::translate(std::uint16_t keyCode, KeyModifiers modifiers,
                                     std::uint8_t keyboardType) const {
  const LayoutTable* const layouts = seat_ ? seat_->layouts() : nullptr;
  return layouts != nullptr ? layouts->typed(keyCode, modifiers, keyboardType, kFirstLayout) : std::nullopt;
}

}  // namespace halvorn
