#include "Platform/processes/linux/x11/XWindowSystem.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <utility>

#include "Platform/processes/linux/proc/ProcessHold.h"

namespace halvorn {
namespace {

constexpr std::uint32_t kRootMessageMask =
    XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
constexpr std::uint32_t kListLimit = 64U * 1024;

}  // namespace

XWindowSystem::XWindowSystem(std::string displayName, Coverage coverage, const ProcFiles& files)
    : displayName_(std::move(displayName)), coverage_(coverage), files_(files) {}

XWindowSystem::~XWindowSystem() = default;

WindowManagerConnection* XWindowSystem::connection() {
  const std::lock_guard lock(mutex_);
  if (!std::exchange(hasTried_, true)) {
    connection_ = WindowManagerConnection::open(displayName_);
    if (connection_) owners_ = std::make_unique<WindowOwners>(*connection_, files_);
  }
  return connection_ && connection_->isUsable() ? connection_.get() : nullptr;
}

bool XWindowSystem::tellsAllWindows() {
  WindowManagerConnection* x = connection();
  if (x == nullptr || coverage_ == Coverage::SomeWindows) return false;
  // A window manager that is gone leaves its list behind; the window that it
  // named for itself is gone with it.
  xcb_window_t manager = XCB_NONE;
  const auto cookie = xcb_ewmh_get_supporting_wm_check(x->ewmh(), x->root());
  if (xcb_ewmh_get_supporting_wm_check_reply(x->ewmh(), cookie, &manager, nullptr) == 0) return false;
  const auto exists = adopted(xcb_get_geometry_reply(x->get(), xcb_get_geometry(x->get(), manager), nullptr));
  return exists != nullptr;
}

std::vector<xcb_window_t> XWindowSystem::windowList(xcb_atom_t property) {
  WindowManagerConnection* x = connection();
  if (x == nullptr) return {};
  const auto reply = adopted(xcb_get_property_reply(
      x->get(), xcb_get_property(x->get(), 0, x->root(), property, XCB_ATOM_WINDOW, 0, kListLimit), nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* first = static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
  return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

std::vector<xcb_window_t> XWindowSystem::windows() {
  WindowManagerConnection* x = connection();
  if (x == nullptr) return {};
  const auto all = windowList(x->ewmh()->_NET_CLIENT_LIST);
  // Not every window manager keeps the order up to date when windows go: what there is, the other list says.
  auto stacked = windowList(x->ewmh()->_NET_CLIENT_LIST_STACKING);
  const auto isIn = [](const std::vector<xcb_window_t>& list, xcb_window_t window) {
    return std::find(list.begin(), list.end(), window) != list.end();
  };
  std::erase_if(stacked, [&](xcb_window_t window) { return !isIn(all, window); });
  for (const xcb_window_t window : all) {
    if (!isIn(stacked, window)) stacked.push_back(window);
  }
  return stacked;
}

std::vector<pid_t> XWindowSystem::owners() {
  const auto all = windows();
  std::vector<pid_t> result;
  if (all.empty()) return result;
  for (const auto& owner : owners_->of(all)) {
    if (owner && std::find(result.begin(), result.end(), *owner) == result.end()) result.push_back(*owner);
  }
  return result;
}

std::vector<XWindowSystem::ClassedOwner> XWindowSystem::classedOwners() {
  const auto all = windows();
  std::vector<ClassedOwner> result;
  if (all.empty()) return result;
  const auto owners = owners_->of(all);
  xcb_connection_t* const x = connection_->get();
  std::vector<xcb_get_property_cookie_t> cookies;
  cookies.reserve(all.size());
  for (const xcb_window_t window : all) cookies.push_back(xcb_icccm_get_wm_class(x, window));
  for (std::size_t i = 0; i < all.size(); ++i) {
    xcb_icccm_get_wm_class_reply_t named{};
    if (xcb_icccm_get_wm_class_reply(x, cookies[i], &named, nullptr) == 0) continue;
    if (owners[i] && named.class_name != nullptr) result.push_back({*owners[i], named.class_name});
    xcb_icccm_get_wm_class_reply_wipe(&named);
  }
  return result;
}

std::vector<WindowSystem::WindowNumber> XWindowSystem::windowsOf(const ProcessHold& process) {
  const auto own = ownWindows(process);
  return {own.begin(), own.end()};
}

std::vector<xcb_window_t> XWindowSystem::ownWindows(const ProcessHold& process) {
  const auto all = windows();
  std::vector<xcb_window_t> result;
  if (all.empty()) return result;
  const auto owners = owners_->of(all);
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (owners[i] == process.pid()) result.push_back(all[i]);
  }
  // As long as it has not ended, the id of the owner was its own.
  if (process.hasEnded()) result.clear();
  return result;
}

std::optional<pid_t> XWindowSystem::activeOwner() {
  WindowManagerConnection* x = connection();
  if (x == nullptr) return std::nullopt;
  xcb_window_t active = XCB_NONE;
  const auto cookie = xcb_ewmh_get_active_window(x->ewmh(), x->screen());
  if (xcb_ewmh_get_active_window_reply(x->ewmh(), cookie, &active, nullptr) == 0 || active == XCB_NONE) {
    return std::nullopt;
  }
  auto asked = windows();
  asked.push_back(active);
  return owners_->of(asked).back();
}

bool XWindowSystem::supports(xcb_atom_t protocol, xcb_window_t window) {
  WindowManagerConnection* x = connection();
  if (x == nullptr) return false;
  xcb_icccm_get_wm_protocols_reply_t protocols{};
  const auto cookie = xcb_icccm_get_wm_protocols(x->get(), window, x->atoms().wmProtocols);
  if (xcb_icccm_get_wm_protocols_reply(x->get(), cookie, &protocols, nullptr) == 0) return false;
  const bool result = std::find(protocols.atoms, protocols.atoms + protocols.atoms_len, protocol) !=
                      protocols.atoms + protocols.atoms_len;
  xcb_icccm_get_wm_protocols_reply_wipe(&protocols);
  return result;
}

bool XWindowSystem::isIconified(xcb_window_t window) {
  WindowManagerConnection* x = connection();
  if (x == nullptr) return false;
  xcb_ewmh_get_atoms_reply_t states{};
  const auto cookie = xcb_ewmh_get_wm_state(x->ewmh(), window);
  if (xcb_ewmh_get_wm_state_reply(x->ewmh(), cookie, &states, nullptr) == 0) return false;
  const auto* end = states.atoms + states.atoms_len;
  const bool result =
      std::find(states.atoms, states.atoms + states.atoms_len, x->ewmh()->_NET_WM_STATE_HIDDEN) != end;
  xcb_ewmh_get_atoms_reply_wipe(&states);
  return result;
}

void XWindowSystem::send(xcb_window_t destination, xcb_window_t window, xcb_atom_t type, std::uint32_t first,
                         std::uint32_t eventMask) {
  WindowManagerConnection* x = connection();
  if (x == nullptr) return;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = type;
  message.data.data32[0] = first;
  xcb_send_event(x->get(), 0, destination, eventMask, reinterpret_cast<const char*>(&message));
}

void XWindowSystem::finish() {
  WindowManagerConnection* x = connection();
  if (x == nullptr) return;
  x->finishRequests();
}

// Straight to the program: a window manager that is asked to close a window kills
// the programs that cannot be asked.
int XWindowSystem::closeWindows(const ProcessHold& process) {
  int asked = 0;
  for (const xcb_window_t window : ownWindows(process)) {
    const auto& atoms = connection_->atoms();
    if (!supports(atoms.wmDeleteWindow, window)) continue;
    send(window, window, atoms.wmProtocols, atoms.wmDeleteWindow, XCB_EVENT_MASK_NO_EVENT);
    ++asked;
  }
  finish();
  return asked;
}

void XWindowSystem::activate(const ProcessHold& process, BringForward which) {
  auto own = ownWindows(process);
  if (own.empty()) return;
  // The topmost one that can be seen; when all are iconified, the topmost.
  const auto shown =
      std::find_if(own.rbegin(), own.rend(), [&](xcb_window_t window) { return !isIconified(window); });
  const xcb_window_t front = shown != own.rend() ? *shown : own.back();
  WindowManagerConnection* x = connection();
  if (x == nullptr) return;
  if (which == BringForward::AllWindows) {
    // From the bottom up, so that they keep their order.
    for (const xcb_window_t window : own) {
      if (window == front) continue;
      xcb_ewmh_request_restack_window(x->ewmh(), x->screen(), window, XCB_NONE, XCB_STACK_MODE_ABOVE);
    }
  }
  xcb_ewmh_request_change_active_window(x->ewmh(), x->screen(), front, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                                        XCB_CURRENT_TIME, XCB_NONE);
  finish();
}

void XWindowSystem::setVisible(const ProcessHold& process, Visible visible) {
  for (const xcb_window_t window : ownWindows(process)) {
    WindowManagerConnection* x = connection();
    if (x == nullptr) return;
    if (visible == Visible::Yes) {
      if (isIconified(window)) xcb_map_window(x->get(), window);
    } else {
      send(x->root(), window, x->atoms().wmChangeState, XCB_ICCCM_WM_STATE_ICONIC, kRootMessageMask);
    }
  }
  finish();
}

std::optional<bool> XWindowSystem::isHidden(const ProcessHold& process) {
  const std::vector<xcb_window_t> own = ownWindows(process);
  if (own.empty()) return std::nullopt;
  return std::all_of(own.begin(), own.end(), [&](xcb_window_t window) { return isIconified(window); });
}

void XWindowSystem::sendEmptyMessage(const ProcessHold& process) {
  for (const xcb_window_t window : ownWindows(process)) {
    send(window, window, connection_->atoms().wakeUp, 0, XCB_EVENT_MASK_NO_EVENT);
  }
  finish();
}

// A connection of its own: whoever waits for a reply takes events off the wire too, and
// the loop would never learn of those.
class XWindowSystem::Watch : public RunLoop::Source {
 public:
  Watch(std::unique_ptr<WindowManagerConnection> connection, RunLoop& loop, Changes changes)
      : connection_(std::move(connection)), changes_(std::move(changes)) {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_->get(), connection_->root(), XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection_->get());
    readable_ = loop.whenReadable(xcb_get_file_descriptor(connection_->get()), [this] { readEvents(); });
  }

 private:
  void readEvents() {
    bool isWindows = false;
    bool isActive = false;
    while (const auto event = adopted(xcb_poll_for_event(connection_->get()))) {
      if ((event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY) continue;
      const xcb_atom_t atom = reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->atom;
      const auto& atoms = *connection_->ewmh();
      isWindows |= atom == atoms._NET_CLIENT_LIST || atom == atoms._NET_SUPPORTING_WM_CHECK;
      isActive |= atom == atoms._NET_ACTIVE_WINDOW;
    }
    if (!connection_->isUsable()) {
      // The descriptor would be readable for ever.
      readable_ = nullptr;
      isWindows = true;
    }
    if (isWindows) changes_.windowsChanged();
    if (isActive) changes_.activeChanged();
  }

  const std::unique_ptr<WindowManagerConnection> connection_;
  const Changes changes_;
  std::unique_ptr<RunLoop::Source> readable_;
};

std::unique_ptr<RunLoop::Source> XWindowSystem::watch(RunLoop& loop, Changes changes) {
  auto own = WindowManagerConnection::open(displayName_);
  return own ? std::make_unique<Watch>(std::move(own), loop, std::move(changes)) : nullptr;
}

}  // namespace halvorn
