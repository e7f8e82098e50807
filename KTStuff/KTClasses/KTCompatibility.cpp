#include "KTStuff/KTClasses/KTCompatibility.h"

#include <deque>
#include <mutex>
#include <utility>
#include <vector>

namespace halvorn {

struct NotificationQueue::State {
  struct Observer {
    Text name;
    const void* object = nullptr;
    Handler handler;
    bool isActive = true;
  };

  std::mutex mutex;                                  // guards `waiting`
  std::deque<Notification> waiting;                  // any thread
  std::vector<std::shared_ptr<Observer>> observers;  // main thread only

  void postNext() {
    Notification notification;
    {
      const std::lock_guard lock(mutex);
      if (waiting.empty()) return;
      notification = std::move(waiting.front());
      waiting.pop_front();
    }
    // A snapshot, since handlers may add and end observations.
    const auto snapshot = observers;
    for (const auto& observer : snapshot) {
      const bool wantsIt = observer->name == notification.name &&
                           (observer->object == nullptr || observer->object == notification.object.get());
      if (observer->isActive && wantsIt) observer->handler(notification);
    }
  }
};

class NotificationQueue::Registration : public Notifications::Observation {
 public:
  Registration(std::weak_ptr<State> state, std::shared_ptr<State::Observer> observer)
      : state_(std::move(state)), observer_(std::move(observer)) {}
  ~Registration() override {
    observer_->isActive = false;
    if (const auto state = state_.lock()) std::erase(state->observers, observer_);
  }

 private:
  std::weak_ptr<State> state_;
  std::shared_ptr<State::Observer> observer_;
};

NotificationQueue::NotificationQueue(MainThread& mainThread)
    : mainThread_(mainThread), state_(std::make_shared<State>()) {}

NotificationQueue::~NotificationQueue() {
  std::deque<Notification> dropped;
  const std::lock_guard lock(state_->mutex);
  std::swap(dropped, state_->waiting);
}

std::unique_ptr<Notifications::Observation> NotificationQueue::addObserver(const Text& name,
                                                                           const void* object,
                                                                           Handler handler) {
  auto observer = std::make_shared<State::Observer>(State::Observer{name, object, std::move(handler)});
  state_->observers.push_back(observer);
  return std::make_unique<Registration>(state_, std::move(observer));
}

void NotificationQueue::enqueueWhenIdle(Notification notification) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->waiting.push_back(std::move(notification));
  }
  // One idle moment for each, so that a burst of notifications never holds up events for long.
  mainThread_.performWhenIdle([state = std::weak_ptr<State>(state_)] {
    if (const auto alive = state.lock()) alive->postNext();
  });
}

}  // namespace halvorn
