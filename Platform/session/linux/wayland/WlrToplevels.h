// The windows of a compositor that tells of them the way wlroots' do: by the name that each client gives its application,
// and by what state they are in. Whose they are it does not tell.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Platform/session/linux/wayland/ToplevelList.h"
#include "Platform/session/linux/wayland/WaylandConnection.h"

namespace halvorn {

class WlrToplevels : public ToplevelList {
 public:
  // Null, and the connection closed, where they are not offered.
  [[nodiscard]] static std::unique_ptr<WlrToplevels> over(std::unique_ptr<WaylandConnection> connection);
  ~WlrToplevels() override;

  std::optional<std::vector<Toplevel>> windows() override;
  std::vector<Toplevel> knownWindows() const override;
  void close(std::uint64_t number) override;
  void activate(std::uint64_t number) override;
  void setMinimized(std::uint64_t number, bool isMinimized) override;
  int descriptor() const override { return connection_->descriptor(); }
  bool isUsable() const override;
  Changes readChanges() override;

 private:
  class Window;
  class Manager;

  explicit WlrToplevels(std::unique_ptr<WaylandConnection> connection);
  [[nodiscard]] Window* find(std::uint64_t number);

  const std::unique_ptr<WaylandConnection> connection_;
  WaylandSeat seat_;
  std::unique_ptr<Manager> manager_;
};

}  // namespace halvorn
