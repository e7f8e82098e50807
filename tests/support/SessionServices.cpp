// Services of a session, for tests: on the bus whose address is the second argument it plays
//
//   login         the session manager; a line "idle <microseconds on the monotonic clock>" or "active" sets
//   its hint portal        the settings of the desktop portal; "scheme <number>" changes the color scheme
//   notifications  what shows notifications; says "notified PROGRAM|TITLE|BODY|ICON" for each
//   silence       a desktop portal that never answers
//   nonsense      a session manager and a desktop portal whose answers have the wrong form
//
// It says "ready" when its names are taken, and "done" after each line.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSocketNotifier>
#include <iostream>
#include <string>

namespace {

const QString settingsInterface = "org.freedesktop.portal.Settings";
const QString group = "org.freedesktop.appearance";
const QString key = "color-scheme";

class Services : public QDBusVirtualObject {
 public:
  explicit Services(const QString& role) : role_(role) {}

  QString introspect(const QString&) const override { return {}; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (role_ == "silence") return true;
    if (role_ == "nonsense") return bus.send(message.createReply(QVariant(QStringList{"what", "ever"})));
    if (role_ == "notifications") {
      if (message.member() == "GetCapabilities")
        return bus.send(message.createReply(QStringList{"actions", "body", "body-markup"}));
      if (message.member() == "CloseNotification") return bus.send(message.createReply());
      if (message.member() != "Notify" || message.signature() != "susssasa{sv}i") return false;
      const QVariantList words = message.arguments();
      std::cout << "notified ";
      for (const int place : {0, 3, 4, 2})
        std::cout << words[place].toString().replace("\n", "\\n").toStdString() << (place == 2 ? "" : "|");
      std::cout << std::endl;
      return bus.send(message.createReply(QVariant::fromValue<uint>(1)));
    }
    if (role_ == "portal") {
      if (message.interface() != settingsInterface || message.member() != "Read") return false;
      return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(scheme())))));
    }
    if (message.member() != "GetAll") return false;
    const QVariantMap properties = {{"IdleHint", isIdle_},
                                    {"IdleSinceHintMonotonic", QVariant::fromValue<qulonglong>(idleSince_)}};
    return bus.send(message.createReply(QVariant(properties)));
  }

  void obey(const std::string& line, QDBusConnection& bus) {
    const std::size_t blank = line.find(' ');
    const std::string word = line.substr(0, blank);
    const unsigned long long number = blank == std::string::npos ? 0 : std::stoull(line.substr(blank));
    if (word == "idle" || word == "active") {
      isIdle_ = word == "idle";
      idleSince_ = number;
    }
    if (word == "scheme") {
      scheme_ = static_cast<uint>(number);
      QDBusMessage signal =
          QDBusMessage::createSignal("/org/freedesktop/portal/desktop", settingsInterface, "SettingChanged");
      signal << group << key << QVariant::fromValue(scheme());
      bus.send(signal);
    }
    std::cout << "done" << std::endl;
  }

 private:
  QDBusVariant scheme() const { return QDBusVariant(QVariant::fromValue<uint>(scheme_)); }

  const QString role_;
  bool isIdle_ = false;
  qulonglong idleSince_ = 0;
  uint scheme_ = 0;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  QCoreApplication application(argumentCount, arguments);
  if (argumentCount != 3) return EXIT_FAILURE;
  QDBusConnection bus = QDBusConnection::connectToBus(arguments[2], "services");
  const QString role = arguments[1];
  Services services(role);
  bool isServing = bus.registerVirtualObject("/org/freedesktop", &services, QDBusConnection::SubPath);
  const bool showsNotifications = role == "notifications";
  const bool isPortal = role != "login" && !showsNotifications;
  const bool isLogin = role == "login" || role == "nonsense";
  if (isPortal) isServing = bus.registerService("org.freedesktop.portal.Desktop") && isServing;
  if (showsNotifications) isServing = bus.registerService("org.freedesktop.Notifications") && isServing;
  if (isLogin) isServing = bus.registerService("org.freedesktop.login1") && isServing;
  if (!isServing) return EXIT_FAILURE;
  QSocketNotifier input(0, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
    std::string line;
    if (!std::getline(std::cin, line)) return QCoreApplication::quit();
    services.obey(line, bus);
  });
  std::cout << "ready" << std::endl;
  return QCoreApplication::exec();
}
