// Notifications inside the program: somebody posts, everybody who asked for that name hears of it.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <variant>

#include "Core/AccessibilityElement.h"
#include "Core/Text.h"

namespace halvorn {

using NotificationValue = std::variant<Text, AccessibilityElementPointer>;  // what can be told along with one

struct Notification {  // what happened, to whom
  Text name;           // observers ask by it
  // Whom it is about; kept alive until the notification is through. Compared by address only.
  std::shared_ptr<const void> object;
  std::map<Text, NotificationValue> userInfo;  // what else is told

  // The text under the key; nullopt when it is missing or no text.
  [[nodiscard]] OptionalText text(const Text& key) const {
    const auto found = userInfo.find(key);
    const Text* value = found == userInfo.end() ? nullptr : std::get_if<Text>(&found->second);
    return value != nullptr ? OptionalText(*value) : std::nullopt;
  }
  // The element under the key; null when it is missing or no element.
  [[nodiscard]] AccessibilityElementPointer element(const Text& key) const {
    const auto found = userInfo.find(key);
    const auto* value =
        found == userInfo.end() ? nullptr : std::get_if<AccessibilityElementPointer>(&found->second);
    return value != nullptr ? *value : nullptr;
  }
};

class Notifications {
 public:
  // Observing lasts as long as this object; it may outlive the Notifications.
  class Observation {
   public:
    virtual ~Observation() = default;
  };
  using Handler = std::function<void(const Notification&)>;  // called on the main thread

  virtual ~Notifications() = default;
  // Calls the handler for every notification of that name about that object; null stands for any object.
  // Thread: main; the handler runs there too. It may end its own or any other observation.
  [[nodiscard]] virtual std::unique_ptr<Observation> addObserver(const Text& name, const void* object,
                                                                 Handler handler) = 0;
  // Hands the notification to its observers once the main thread has nothing else to do: never inside this
  // call, in the order of the calls, and every single one, however alike. Thread: any.
  virtual void enqueueWhenIdle(Notification notification) = 0;
};

}  // namespace halvorn
