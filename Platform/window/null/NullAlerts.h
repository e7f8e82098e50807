// No alert can be shown, so each ends at once as its default button says.
#pragma once

#include "Platform/window/Alerts.h"

namespace halvorn {

class NullAlerts : public Alerts {
 public:
  void beginSheet(const AlertDescription&, std::function<void(int returnCode)> ended) override {
    if (ended) ended(kAlertFirstButtonReturn);
  }
};

}  // namespace halvorn
