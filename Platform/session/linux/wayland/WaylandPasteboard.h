// The clipboard of a compositor that tells of it, counted by its changes of owner.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace halvorn {

class WaylandPasteboard {
 public:
  // The path as waylandSocketPath() tells it. Connects at the first question, and counts from then on.
  explicit WaylandPasteboard(std::string socketPath);
  ~WaylandPasteboard();

  // A program that ends while it owns the clipboard empties it; that counts too. nullopt where the compositor does
  // not tell; a count that was told once stands still while it does not answer, and when it has gone.
  [[nodiscard]] std::optional<std::int64_t> changeCount();

 private:
  class Device;

  const std::string socketPath_;
  bool hasTriedToConnect_ = false;
  std::unique_ptr<Device> device_;
};

}  // namespace halvorn
