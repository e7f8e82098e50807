// What the class library takes for granted and most platforms lack: a
// notification queue that posts when idle.
#pragma once

#include <memory>

#include "Core/Notifications.h"
#include "Platform/running/MainThread.h"

namespace halvorn {

// Queues notifications and hands them out at the main thread's quiet moments. Observers that come while a
// notification waits hear of it; observers that go do not.
class NotificationQueue : public Notifications {
 public:
  explicit NotificationQueue(MainThread& mainThread);  // which outlives it
  // What still waits is dropped. Thread: main.
  ~NotificationQueue() override;
  NotificationQueue(const NotificationQueue&) = delete;
  NotificationQueue& operator=(const NotificationQueue&) = delete;

  std::unique_ptr<Observation> addObserver(const Text& name, const void* object, Handler handler) override;
  void enqueueWhenIdle(Notification notification) override;

 private:
  struct State;
  class Registration;

  MainThread& mainThread_;
  std::shared_ptr<State> state_;  // outlives this object in idle tasks and observations, then empty
};

}  // namespace halvorn
