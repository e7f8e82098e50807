// The interface style of the system settings.
#pragma once

#include <memory>

#include "Platform/color/InterfaceStyleSetting.h"

namespace halvorn {

class MacInterfaceStyleSetting : public InterfaceStyleSetting {
 public:
  MacInterfaceStyleSetting();
  ~MacInterfaceStyleSetting() override;
  OptionalText current() override;
  void installChangeHandler(std::function<void()> handler) override;

 private:
  struct Observation;
  std::unique_ptr<Observation> observation_;
};

}  // namespace halvorn
