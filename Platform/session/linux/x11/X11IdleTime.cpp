#include "Platform/session/linux/x11/X11IdleTime.h"

#include <xcb/screensaver.h>

#include "Platform/session/linux/WaylandSession.h"
#include "Platform/session/linux/x11/DisplayConnection.h"

namespace halvorn {

namespace {

constexpr std::int64_t kNanosecondsPerMillisecond = 1'000'000;

}  // namespace

X11IdleTime::X11IdleTime(const std::optional<std::string>& displayName) : displayName_(displayName) {}
X11IdleTime::~X11IdleTime() = default;

std::optional<std::int64_t> X11IdleTime::nanosecondsSinceLastInput() {
  if (!hasTriedToConnect_) {
    hasTriedToConnect_ = true;
    display_ = DisplayConnection::open(displayName_);
    if (display_ && !display_->hasExtension(xcb_screensaver_id)) display_.reset();
  }
  if (!display_) return std::nullopt;
  const auto cookie = xcb_screensaver_query_info(display_->get(), display_->root());
  const auto reply = adopted(xcb_screensaver_query_info_reply(display_->get(), cookie, nullptr));
  if (!reply) return std::nullopt;
  return reply->ms_since_user_input * kNanosecondsPerMillisecond;
}

std::optional<std::string> displayThatSeesAllInput(const Environment& environment) {
  return isWaylandSession(environment) ? std::nullopt : environment.value("DISPLAY");
}

}  // namespace halvorn
