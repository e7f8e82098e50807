// Notifications reach nobody.
#pragma once

#include "Platform/Notifications.h"

namespace halvorn {

class NullNotifications : public Notifications {
 public:
  std::unique_ptr<Observation> addObserver(const Text&, const void*, Handler) override {
    return std::make_unique<Observation>();
  }
  void enqueueWhenIdle(Notification) override {}
};

}  // namespace halvorn
