// The clipboard of an X server, counted by its changes of owner.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace halvorn {

class DisplayConnection;

class X11Pasteboard {
 public:
  // Connects at the first question, and counts from then on.
  explicit X11Pasteboard(const std::optional<std::string>& displayName);
  ~X11Pasteboard();

  // A program that ends while it owns the clipboard empties it; that counts too.
  // nullopt without a display; a count that was told once stands still when the display has gone.
  [[nodiscard]] std::optional<std::int64_t> changeCount();

 private:
  void connect();

  const std::optional<std::string> displayName_;
  bool hasTriedToConnect_ = false;
  std::unique_ptr<DisplayConnection> display_;
  std::uint32_t clipboard_ = 0;   // the atom
  std::uint8_t changeEvent_ = 0;  // the number of the event
  std::int64_t count_ = 0;
};

}  // namespace halvorn
