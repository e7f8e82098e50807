// Turning what happens in a process's windows into notifications.
#include "Core/Log.h"
#include "Core/Notifications.h"
#include "KTStuff/KTClasses/KTProcess.h"

namespace halvorn {

void notificationHandler(const AccessibilityElementPointer& element, const Text& notification,
                         const KTProcessPointer& process, Notifications& notifications) {
  const NotificationValue shownElement = element ? NotificationValue(element) : NotificationValue(Text());
  notifications.enqueueWhenIdle(
      Notification{KTProcessUINotification, process, {{"element", shownElement}, {"event", notification}}});
}

void KTProcess::installAXObserver() {
  if (axAppElem_) return;
  axAppElem_ = services().accessibility.createApplicationElement(psn_);
  if (!axAppElem_) {
    services().log("AX Notifications: Could not create application object for %@", description());
    return;
  }
  // Weak: a call-back may be on its way when the last owner of this object lets go.
  auto callback = [self = weak_from_this(), &notifications = services().notifications](
                      const AccessibilityElementPointer& element, const Text& name) {
    if (const auto process = self.lock()) notificationHandler(element, name, process, notifications);
  };
  axObserver_ = services().accessibility.createObserver(psn_, std::move(callback));
  if (!axObserver_) {
    services().log("AX Notifications: Could not create observer for %@", description());
    return;
  }
  axObserver_->addToRunLoop();
}

void KTProcess::addAXNotification(const Text& notification) {
  installAXObserver();
  // Without an observer that was logged already, and the registration fails as well.
  const bool isAdded = axObserver_ && axAppElem_ && axObserver_->add(*axAppElem_, notification);
  if (!isAdded) {
    services().log("AX Notifications: Could not add notification %@ for %@", notification, description());
  }
}

void KTProcess::removeAXNotification(const Text& notification) {
  if (axObserver_ && axAppElem_) axObserver_->remove(*axAppElem_, notification);
}

void KTProcess::unregisterAXNotifications() {
  axAppElem_ = nullptr;
  if (!axObserver_) return;
  axObserver_->removeFromRunLoop();
  axObserver_ = nullptr;
}

}  // namespace halvorn
