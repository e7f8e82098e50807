#include "Platform/session/linux/wayland/WaylandConnection.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <tuple>
#include <utility>

#include "Platform/running/posix/FileDescriptor.h"

namespace halvorn {
namespace {

using Clock = std::chrono::steady_clock;

// The library's own way to connect waits for a compositor whose queue of new clients is full, for ever.
FileDescriptor connectedTo(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) return {};
  std::memcpy(address.sun_path, path.c_str(), path.size());
  FileDescriptor connection(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  const auto connect = [&] {
    return ::connect(connection.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  };
  if (!connection || retried(connect) != 0) return {};
  return connection;
}

}  // namespace

std::unique_ptr<WaylandConnection> WaylandConnection::open(const std::string& socketPath,
                                                           std::chrono::milliseconds patience) {
  return open(connectedTo(socketPath), patience);
}

Answer WaylandConnection::ask(const std::string& socketPath, std::chrono::milliseconds patience) {
  FileDescriptor connection = connectedTo(socketPath);
  if (!connection) return Answer::Missing;
  return open(std::move(connection), patience) != nullptr ? Answer::Given : Answer::Silent;
}

std::unique_ptr<WaylandConnection> WaylandConnection::open(FileDescriptor connection,
                                                           std::chrono::milliseconds patience) {
  if (!connection) return nullptr;
  // It owns the descriptor, also where it fails.
  wl_display* const display = wl_display_connect_to_fd(connection.release());
  if (display == nullptr) return nullptr;
  std::unique_ptr<WaylandConnection> result(new WaylandConnection(display, Whose::Own, patience));
  return result->learnGlobals() ? std::move(result) : nullptr;
}

std::unique_ptr<WaylandConnection> WaylandConnection::over(wl_display* display,
                                                           std::chrono::milliseconds patience) {
  std::unique_ptr<WaylandConnection> result(new WaylandConnection(display, Whose::Foreign, patience));
  return result->learnGlobals() ? std::move(result) : nullptr;
}

WaylandConnection::WaylandConnection(wl_display* display, Whose whose, std::chrono::milliseconds patience)
    : own_(whose == Whose::Own ? display : nullptr),
      display_(display),
      queue_(wl_display_create_queue(display)),
      speaker_(static_cast<wl_display*>(wl_proxy_create_wrapper(display))),
      patience_(patience) {
  wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(speaker_), queue_);
}

WaylandConnection::~WaylandConnection() {
  forgetQuestion();
  if (registry_ != nullptr) wl_registry_destroy(registry_);
  wl_proxy_wrapper_destroy(speaker_);
  wl_event_queue_destroy(queue_);
}

std::optional<pid_t> WaylandConnection::listener() const {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (::getsockopt(descriptor(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || peer.pid <= 0)
    return std::nullopt;
  return peer.pid;
}

bool WaylandConnection::learnGlobals() {
  static const wl_registry_listener listener = {
      .global =
          [](void* data, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t version) {
            static_cast<WaylandConnection*>(data)->globals_.try_emplace(interface, Global{name, version});
          },
      .global_remove =
          [](void* data, wl_registry*, std::uint32_t name) {
            std::erase_if(static_cast<WaylandConnection*>(data)->globals_,
                          [&](const auto& entry) { return entry.second.name == name; });
          }};
  registry_ = wl_display_get_registry(speaker_);
  if (registry_ == nullptr) return false;
  wl_registry_add_listener(registry_, &listener, this);
  return roundTrip();
}

void* WaylandConnection::bindProxy(const wl_interface& interface, std::uint32_t knownVersion) {
  const auto found = globals_.find(interface.name);
  if (found == globals_.end()) return nullptr;
  return wl_registry_bind(registry_, found->second.name, &interface,
                          std::min(found->second.version, knownVersion));
}

void WaylandConnection::forgetQuestion() {
  if (question_ != nullptr) wl_callback_destroy(std::exchange(question_, nullptr));
}

bool WaylandConnection::roundTrip() {
  static const wl_callback_listener listener = {.done = [](void* data, wl_callback*, std::uint32_t) {
    static_cast<WaylandConnection*>(data)->forgetQuestion();
  }};
  if (!isUsable()) return false;
  // Whoever let one question wait too long is not waited for with the next one.
  if (question_ != nullptr && !dispatchUntilAnswered({})) return false;
  question_ = wl_display_sync(speaker_);
  if (question_ == nullptr) return false;
  wl_callback_add_listener(question_, &listener, this);
  return dispatchUntilAnswered(patience_);
}

bool WaylandConnection::dispatchUntilAnswered(std::chrono::milliseconds longest) {
  const auto end = Clock::now() + longest;
  for (;;) {
    while (wl_display_prepare_read_queue(get(), queue_) != 0) {
      if (dispatchPending() < 0) return false;
    }
    if (question_ == nullptr) {
      wl_display_cancel_read(get());
      return true;
    }
    const bool isFull = wl_display_flush(get()) < 0 && errno == EAGAIN;
    pollfd entry = {descriptor(), static_cast<short>(isFull ? POLLIN | POLLOUT : POLLIN), 0};
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    const int count =
        ::poll(&entry, 1, static_cast<int>(std::max(left, std::chrono::milliseconds{}).count()));
    if (count == 0 || (count < 0 && errno != EINTR)) {
      wl_display_cancel_read(get());
      return false;
    }
    if (count < 0 || (entry.revents & ~POLLOUT) == 0) {
      wl_display_cancel_read(get());
    } else if (wl_display_read_events(get()) < 0) {
      return false;
    }
    if (dispatchPending() < 0) return false;
  }
}

void WaylandConnection::readEvents() {
  while (wl_display_prepare_read_queue(get(), queue_) != 0) {
    if (dispatchPending() < 0) return;
  }
  wl_display_flush(get());
  pollfd entry = {descriptor(), POLLIN, 0};
  if (::poll(&entry, 1, 0) > 0) {
    if (wl_display_read_events(get()) < 0) return;
  } else {
    wl_display_cancel_read(get());
  }
  std::ignore = dispatchPending();
}

}  // namespace halvorn
