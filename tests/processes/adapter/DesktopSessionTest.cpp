#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Platform/processes/linux/proc/DesktopSession.h"

namespace halvorn {
namespace {

TEST(DesktopSessions, DifferOnlyWhereBothSaySo) {
  const auto session = [](const std::vector<std::string>& entries) { return DesktopSession::from(entries); };
  const struct {
    std::vector<std::string> a;
    std::vector<std::string> b;
    bool differ;
  } rows[] = {
      {{}, {}, false},
      {{"DISPLAY=:0"}, {}, false},
      {{"DISPLAY=:0"}, {"DISPLAY=:0.0"}, false},
      {{"DISPLAY=:0"}, {"DISPLAY=unix:0"}, false},
      {{"DISPLAY=:0"}, {"DISPLAY=:1"}, true},
      {{"DISPLAY=:0"}, {"DISPLAY=localhost:0"}, true},
      {{"WAYLAND_DISPLAY=/run/a/wayland-0"}, {"DISPLAY=:0"}, true},
      {{"WAYLAND_DISPLAY=/run/a/wayland-0", "XDG_SESSION_ID=2"}, {"DISPLAY=:0", "XDG_SESSION_ID=2"}, false},
      {{"WAYLAND_DISPLAY=/run/a/wayland-0", "DISPLAY=:0"}, {"DISPLAY=:0"}, false},
      {{"WAYLAND_DISPLAY=/run/a/wayland-0", "DISPLAY=:0"}, {"WAYLAND_DISPLAY=/run/a/wayland-0"}, false},
      {{"WAYLAND_DISPLAY=/run/a/wayland-0"}, {}, false},
      {{"WAYLAND_DISPLAY=/run/a/wayland-0"}, {"WAYLAND_DISPLAY=/run/a/wayland-1"}, true},
      // The name is the same; the compositor is another one.
      {{"WAYLAND_DISPLAY=wayland-0", "XDG_RUNTIME_DIR=/run/a"},
       {"WAYLAND_DISPLAY=wayland-0", "XDG_RUNTIME_DIR=/run/b"},
       true},
      {{"WAYLAND_DISPLAY=wayland-0", "XDG_RUNTIME_DIR=/run/a"},
       {"WAYLAND_DISPLAY=/run/b/../a/wayland-0"},
       false},
      // A name alone is no place.
      {{"WAYLAND_DISPLAY=wayland-0"}, {"WAYLAND_DISPLAY=wayland-1"}, false},
      {{"XDG_SESSION_ID=2", "DISPLAY=:0"}, {"XDG_SESSION_ID=3", "DISPLAY=:0"}, true}};
  for (const auto& row : rows) {
    EXPECT_EQ(session(row.a).differsFrom(session(row.b)), row.differ);
    EXPECT_EQ(session(row.b).differsFrom(session(row.a)), row.differ);
  }
}

}  // namespace
}  // namespace halvorn
