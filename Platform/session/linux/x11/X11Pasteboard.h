// The clipboard of an X server, counted by its changes of owner.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Platform/session/Pasteboard.h"

namespace halvorn {

class DisplayConnection;

class X11Pasteboard : public Pasteboard {
 public:
  // Connects at the first question, and counts from then on.
  explicit X11Pasteboard(const std::optional<std::string>& displayName);
  ~X11Pasteboard() override;

  // A program that ends while it owns the clipboard empties it; that counts too.
  std::int64_t changeCount() override;

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
