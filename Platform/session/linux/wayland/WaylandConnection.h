// A connection of its own to a Wayland compositor, or a conversation of its own over somebody else's.
//
// No wait is without an end: a compositor that does not answer in time has not answered, and from then on it
// is not waited for again until what it was asked has come. Nothing here ends the program when the compositor
// goes: the connection is then no longer usable.
//
// Thread: one at a time; call-backs of the protocols run inside roundTrip() and readEvents().
// Why: docs/decisions/030-wayland.md
#pragma once

#include <sys/types.h>
#include <wayland-client-core.h>
#include <wayland-client-protocol.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Platform/session/Answer.h"

namespace halvorn {

class FileDescriptor;

class WaylandConnection {
 public:
  static constexpr std::chrono::milliseconds kPatience{1000};

  // Null when nobody listens at that path, takes connections or answers in time.
  [[nodiscard]] static std::unique_ptr<WaylandConnection> open(
      const std::string& socketPath, std::chrono::milliseconds patience = kPatience);
  // Whether a compositor listens at that path and answers in time.
  [[nodiscard]] static Answer ask(const std::string& socketPath, std::chrono::milliseconds patience);
  // Over a connection that outlives this object and that others use at the same time, from any thread: events of
  // theirs stay theirs. Null when the compositor does not answer in time.
  [[nodiscard]] static std::unique_ptr<WaylandConnection> over(
      wl_display* display, std::chrono::milliseconds patience = kPatience);
  ~WaylandConnection();
  WaylandConnection(const WaylandConnection&) = delete;
  WaylandConnection& operator=(const WaylandConnection&) = delete;

  [[nodiscard]] wl_display* get() const { return display_; }
  [[nodiscard]] int descriptor() const { return wl_display_get_fd(get()); }
  // The process that opened the socket for connections, as the kernel knows it; nullopt when it does not say.
  [[nodiscard]] std::optional<pid_t> listener() const;
  // False once the compositor has gone, or has ended the conversation; it stays so.
  [[nodiscard]] bool isUsable() const { return wl_display_get_error(get()) == 0; }

  [[nodiscard]] bool offers(const wl_interface& interface) const { return globals_.contains(interface.name); }
  // What the compositor offers under that name, in the version that both know; null when it offers none. Of
  // several the one that came first. The caller destroys it.
  template <typename Proxy>
  [[nodiscard]] Proxy* bind(const wl_interface& interface, std::uint32_t knownVersion) {
    return static_cast<Proxy*>(bindProxy(interface, knownVersion));
  }

  // Has all that was asked carried out, and what that brought handled. False when it was not answered in time,
  // or the compositor has gone.
  [[nodiscard]] bool roundTrip();
  // Handles what has come already, and sends what was asked as far as that goes.
  void readEvents();

 private:
  struct Disconnect {
    void operator()(wl_display* display) const { wl_display_disconnect(display); }
  };
  struct Global {
    std::uint32_t name = 0;
    std::uint32_t version = 0;
  };

  enum class Whose { Own, Foreign };
  [[nodiscard]] static std::unique_ptr<WaylandConnection> open(FileDescriptor connection,
                                                               std::chrono::milliseconds patience);
  WaylandConnection(wl_display* display, Whose whose, std::chrono::milliseconds patience);
  [[nodiscard]] bool learnGlobals();
  [[nodiscard]] void* bindProxy(const wl_interface& interface, std::uint32_t knownVersion);
  // Handles events until the answer has come; false when that took longer.
  [[nodiscard]] bool dispatchUntilAnswered(std::chrono::milliseconds longest);
  void forgetQuestion();
  [[nodiscard]] int dispatchPending() { return wl_display_dispatch_queue_pending(get(), queue_); }

  const std::unique_ptr<wl_display, Disconnect> own_;
  wl_display* const display_;
  wl_event_queue* const queue_;
  wl_display* const speaker_;  // what is asked of it is answered in the queue
  const std::chrono::milliseconds patience_;
  wl_registry* registry_ = nullptr;
  std::map<std::string, Global> globals_;
  wl_callback* question_ = nullptr;  // that was not answered yet
};

// Destroys a proxy the way its protocol asks for; the function may be one that each source file has for itself, so
// this stays inside of those.
//
//   WaylandPointer<wl_output, wl_output_destroy> output(connection.bind<wl_output>(wl_output_interface, 1));
template <auto Function>
struct WaylandDestroyer {
  template <typename Proxy>
  void operator()(Proxy* proxy) const {
    Function(proxy);
  }
};
template <typename Proxy, auto Function>
using WaylandPointer = std::unique_ptr<Proxy, WaylandDestroyer<Function>>;

struct SeatDestroyer {
  void operator()(wl_seat* seat) const { wl_seat_destroy(seat); }
};
using WaylandSeat = std::unique_ptr<wl_seat, SeatDestroyer>;

}  // namespace halvorn
