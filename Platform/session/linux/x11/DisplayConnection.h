// A connection of its own to an X server.
//
// Never ends the program when the server goes: the connection is then no longer usable, and replies are null.
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace halvorn {

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};
// Replies and events of the server.
template <typename Reply>
using XPointer = std::unique_ptr<Reply, FreeDeleter>;
template <typename Reply>
XPointer<Reply> adopted(Reply* reply) {
  return XPointer<Reply>(reply);
}

class DisplayConnection {
 public:
  // Null without a name, and when the server cannot be reached.
  [[nodiscard]] static std::unique_ptr<DisplayConnection> open(const std::optional<std::string>& displayName);

  [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
  [[nodiscard]] bool isUsable() const { return xcb_connection_has_error(get()) == 0; }
  [[nodiscard]] xcb_window_t root() const { return root_; }
  [[nodiscard]] bool hasExtension(xcb_extension_t& extension) const;
  [[nodiscard]] xcb_atom_t atom(const std::string& name) const;
  // The 32-bit values of the property; empty when it is missing or of another type.
  [[nodiscard]] std::vector<std::uint32_t> values(xcb_window_t window, xcb_atom_t property,
                                                  xcb_atom_t type) const;
  // Returns when the server has done everything asked so far; its events up to then can be taken.
  void synchronize() const;

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  DisplayConnection(xcb_connection_t* connection, int screen);

  const std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  xcb_window_t root_ = XCB_NONE;
};

}  // namespace halvorn
