// The color-scheme setting of the desktop portal.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Platform/color/InterfaceStyleSetting.h"

namespace halvorn {

class PortalInterfaceStyle : public InterfaceStyleSetting {
 public:
  // On the session's bus; without an address the desktop tells nothing. A Qt
  // application must exist when this is asked.
  explicit PortalInterfaceStyle(const std::optional<std::string>& busAddress);
  ~PortalInterfaceStyle() override;

  OptionalText current() override;
  void installChangeHandler(std::function<void()> handler) override;

 private:
  class PortalSettings;
  std::unique_ptr<PortalSettings> settings_;
};

}  // namespace halvorn
