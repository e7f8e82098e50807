#include "Platform/processes/linux/atspi/AtSpiAccessibility.h"

#include <algorithm>
#include <map>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "Platform/processes/linux/atspi/AtSpiEvents.h"
#include "Platform/processes/linux/proc/RunningApplications.h"
#include "Platform/running/MainThread.h"
#include "Platform/running/posix/RunLoop.h"
#include "Platform/session/linux/bus/BusConnection.h"

namespace halvorn {
namespace {

constexpr char kRegistry[] = "org.a11y.atspi.Registry";
constexpr char kRegistryPath[] = "/org/a11y/atspi/registry";
constexpr char kRootPath[] = "/org/a11y/atspi/accessible/root";
constexpr double kSeconds = 2.0;

// A place on the bus: a program's unique name and the path of one of its objects.
struct Place {
  std::string name;
  std::string path;
};

class Element : public AccessibilityElement {
 public:
  explicit Element(Place place) : place_(std::move(place)) {}
  Text reference() const override { return Text(place_.name + place_.path); }
  [[nodiscard]] const Place& place() const { return place_; }

 private:
  const Place place_;
};

// An array of (bus name, object path).
std::vector<Place> placesIn(const BusMessage& reply) {
  std::vector<Place> places;
  DBusMessageIter arguments;
  DBusMessageIter list;
  if (!dbus_message_iter_init(reply.get(), &arguments) ||
      dbus_message_iter_get_arg_type(&arguments) != DBUS_TYPE_ARRAY ||
      dbus_message_iter_get_element_type(&arguments) != DBUS_TYPE_STRUCT) {
    return places;
  }
  for (dbus_message_iter_recurse(&arguments, &list);
       dbus_message_iter_get_arg_type(&list) == DBUS_TYPE_STRUCT; dbus_message_iter_next(&list)) {
    DBusMessageIter pair;
    dbus_message_iter_recurse(&list, &pair);
    const char* name = nullptr;
    const char* path = nullptr;
    if (dbus_message_iter_get_arg_type(&pair) != DBUS_TYPE_STRING) continue;
    dbus_message_iter_get_basic(&pair, &name);
    dbus_message_iter_next(&pair);
    if (dbus_message_iter_get_arg_type(&pair) != DBUS_TYPE_OBJECT_PATH) continue;
    dbus_message_iter_get_basic(&pair, &path);
    places.push_back({name, path});
  }
  return places;
}

// The text in the variant that a property comes in.
std::string textProperty(const BusMessage& reply) {
  DBusMessageIter arguments;
  DBusMessageIter value;
  if (!dbus_message_iter_init(reply.get(), &arguments) ||
      dbus_message_iter_get_arg_type(&arguments) != DBUS_TYPE_VARIANT) {
    return {};
  }
  dbus_message_iter_recurse(&arguments, &value);
  if (dbus_message_iter_get_arg_type(&value) != DBUS_TYPE_STRING) return {};
  const char* text = nullptr;
  dbus_message_iter_get_basic(&value, &text);
  return text;
}

std::string addressFrom(const std::string& sessionBusAddress) {
  const auto bus = BusConnection::open(sessionBusAddress);
  if (!bus) return {};
  const CallResult result =
      bus->call(methodCall({"org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"}), kSeconds);
  const auto* reply = std::get_if<BusMessage>(&result);
  return reply != nullptr ? firstText(*reply).value_or("") : std::string();
}

std::string matchRule(const std::string& sender, const AtSpiEvent& event) {
  std::string rule = "type='signal',sender='" + sender + "',interface='" + event.interface + "',member='" +
                     event.member + "'";
  if (!event.detail.empty()) rule += ",arg0='" + event.detail + "'";
  return rule;
}

bool isSignalFor(DBusMessage* message, const AtSpiEvent& event) {
  if (!dbus_message_is_signal(message, event.interface.c_str(), event.member.c_str())) return false;
  const char* detail = nullptr;
  dbus_int32_t number = 0;
  dbus_message_get_args(message, nullptr, DBUS_TYPE_STRING, &detail, DBUS_TYPE_INT32, &number,
                        DBUS_TYPE_INVALID);
  if (detail == nullptr) return false;
  return (event.detail.empty() || event.detail == detail) && (!event.number || *event.number == number);
}

}  // namespace

struct AtSpiAccessibility::Session {
  std::unique_ptr<BusConnection> bus;
  std::vector<Observer*> observers;
  std::unique_ptr<RunLoop::Source> readable;

  [[nodiscard]] std::optional<Place> placeOf(const ProcessHold& process);
  [[nodiscard]] AtSpiToolkit toolkitOf(const Place& root);
  void readMessages();
};

class AtSpiAccessibility::Observer : public AccessibilityObserver {
 public:
  Observer(std::shared_ptr<Session> session, const Place& root, Callback callback, MainThread& mainThread)
      : session_(std::move(session)),
        program_(root.name),
        toolkit_(session_->toolkitOf(root)),
        callback_(std::move(callback)),
        mainThread_(mainThread) {
    session_->observers.push_back(this);
  }
  ~Observer() override {
    std::erase(session_->observers, this);
    for (const auto& [notification, events] : added_) withdraw(events);
  }

  void addToRunLoop() override { isInRunLoop_ = true; }
  void removeFromRunLoop() override { isInRunLoop_ = false; }

  bool add(const AccessibilityElement& element, const Text& notification) override {
    const auto* known = dynamic_cast<const Element*>(&element);
    auto events = eventsForNotification(notification.bytes(), toolkit_);
    if (known == nullptr || known->place().name != program_ || events.empty()) return false;
    if (added_.contains(notification)) return true;
    for (const AtSpiEvent& event : events) {
      session_->bus->addMatch(matchRule(program_, event));
      if (!tellRegistry("RegisterEvent", event)) return false;
    }
    added_[notification] = std::move(events);
    // What came in during the calls does not make the connection readable again.
    mainThread_.perform([session = std::weak_ptr<Session>(session_)] {
      if (const auto alive = session.lock()) alive->readMessages();
    });
    return true;
  }

  void remove(const AccessibilityElement&, const Text& notification) override {
    const auto found = added_.find(notification);
    if (found == added_.end()) return;
    withdraw(found->second);
    added_.erase(found);
  }

  void receive(DBusMessage* message) {
    const char* sender = dbus_message_get_sender(message);
    const char* path = dbus_message_get_path(message);
    if (!isInRunLoop_ || sender == nullptr || path == nullptr || program_ != sender) return;
    std::vector<Text> meant;
    for (const auto& [notification, events] : added_) {
      const bool means = std::any_of(events.begin(), events.end(),
                                     [&](const AtSpiEvent& event) { return isSignalFor(message, event); });
      if (means) meant.push_back(notification);
    }
    const auto element = std::make_shared<Element>(Place{sender, path});
    // The call-back may end this observer.
    const Callback callback = callback_;
    for (const Text& notification : meant) callback(element, notification);
  }

 private:
  bool tellRegistry(const char* member, const AtSpiEvent& event) {
    const BusMessage message = methodCall({kRegistry, kRegistryPath, kRegistry, member});
    if (!message) return false;
    const char* name = event.registered.c_str();
    dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID);
    return std::holds_alternative<BusMessage>(session_->bus->call(message, kSeconds));
  }
  void withdraw(const std::vector<AtSpiEvent>& events) {
    for (const AtSpiEvent& event : events) {
      session_->bus->removeMatch(matchRule(program_, event));
      std::ignore = tellRegistry("DeregisterEvent", event);
    }
  }

  const std::shared_ptr<Session> session_;
  const std::string program_;
  const AtSpiToolkit toolkit_;
  const Callback callback_;
  MainThread& mainThread_;
  bool isInRunLoop_ = false;
  std::map<Text, std::vector<AtSpiEvent>> added_;
};

std::optional<Place> AtSpiAccessibility::Session::placeOf(const ProcessHold& process) {
  const CallResult result =
      bus->call(methodCall({kRegistry, kRootPath, "org.a11y.atspi.Accessible", "GetChildren"}), kSeconds);
  const auto* reply = std::get_if<BusMessage>(&result);
  if (reply == nullptr) return std::nullopt;
  for (Place& place : placesIn(*reply)) {
    // As long as it has not ended, the id is its own.
    if (bus->pidOf(place.name) == process.pid() && !process.hasEnded()) return std::move(place);
  }
  return std::nullopt;
}

AtSpiToolkit AtSpiAccessibility::Session::toolkitOf(const Place& root) {
  const BusMessage message = methodCall({root.name, root.path, "org.freedesktop.DBus.Properties", "Get"});
  const char* interface = "org.a11y.atspi.Application";
  const char* property = "ToolkitName";
  dbus_message_append_args(message.get(), DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING, &property,
                           DBUS_TYPE_INVALID);
  const CallResult result = bus->call(message, kSeconds);
  const auto* reply = std::get_if<BusMessage>(&result);
  return toolkitNamed(reply != nullptr ? textProperty(*reply) : std::string());
}

void AtSpiAccessibility::Session::readMessages() {
  const bool isConnected = bus->readMessages([this](DBusMessage* message) {
    const auto snapshot = observers;
    for (Observer* observer : snapshot) {
      // An earlier one's call-back may have ended it.
      const bool isAlive = std::find(observers.begin(), observers.end(), observer) != observers.end();
      if (isAlive) observer->receive(message);
    }
  });
  if (!isConnected) readable = nullptr;
}

AtSpiAccessibility::AtSpiAccessibility(RunningApplications& applications, std::string sessionBusAddress,
                                       std::string accessibilityBusAddress, RunLoop& loop,
                                       MainThread& mainThread)
    : applications_(applications),
      sessionBusAddress_(std::move(sessionBusAddress)),
      accessibilityBusAddress_(std::move(accessibilityBusAddress)),
      loop_(loop),
      mainThread_(mainThread) {}

AtSpiAccessibility::~AtSpiAccessibility() {
  // Observers may stay, and hear nothing any more.
  if (session_) session_->readable = nullptr;
}

std::shared_ptr<AtSpiAccessibility::Session> AtSpiAccessibility::session() {
  if (session_ && session_->bus->isConnected()) return session_;
  session_ = nullptr;
  const std::string address =
      accessibilityBusAddress_.empty() ? addressFrom(sessionBusAddress_) : accessibilityBusAddress_;
  auto bus = BusConnection::open(address);
  if (!bus) return nullptr;
  session_ = std::make_shared<Session>();
  session_->bus = std::move(bus);
  session_->readable =
      loop_.whenReadable(session_->bus->descriptor(), [session = std::weak_ptr<Session>(session_)] {
        if (const auto alive = session.lock()) alive->readMessages();
      });
  return session_;
}

AccessibilityElementPointer AtSpiAccessibility::createApplicationElement(ProcessSerialNumber number) {
  const auto application = applications_.withNumber(number);
  const auto current = application ? session() : nullptr;
  auto place = current ? current->placeOf(application->hold) : std::nullopt;
  return place ? std::make_shared<Element>(std::move(*place)) : nullptr;
}

std::unique_ptr<AccessibilityObserver> AtSpiAccessibility::createObserver(ProcessSerialNumber number,
                                                                          Callback callback) {
  const auto application = applications_.withNumber(number);
  const auto current = application ? session() : nullptr;
  auto place = current ? current->placeOf(application->hold) : std::nullopt;
  if (!place) return nullptr;
  return std::make_unique<Observer>(current, *place, std::move(callback), mainThread_);
}

}  // namespace halvorn
