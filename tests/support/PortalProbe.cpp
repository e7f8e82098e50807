// A desktop portal with two settings, color-scheme and contrast, on the session bus: "dark", "light" and "none", or
// "contrast" and "no-contrast" on standard input set them, each answered by "done". With the argument "silent" it takes
// the name and never answers a question.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSocketNotifier>
#include <iostream>
#include <string>

namespace {

class Portal : public QDBusVirtualObject {
 public:
  explicit Portal(bool silent) : silent_(silent) {}

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (silent_) return true;
    const QVariantList asked = message.arguments();
    const QString key = asked.value(1).toString();
    const bool isContrast = key == QStringLiteral("contrast");
    if (message.member() != QStringLiteral("Read") || (!isContrast && key != QStringLiteral("color-scheme")))
      return false;
    const QVariant value = QVariant::fromValue(QDBusVariant(isContrast ? contrast_ : scheme_));
    bus.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
    return true;
  }
  QString introspect(const QString&) const override { return {}; }

  void set(const std::string& name) {
    const bool isContrast = name == "contrast" || name == "no-contrast";
    (isContrast ? contrast_ : scheme_) = name == "dark" || name == "contrast" ? 1U
                                         : name == "light"                    ? 2U
                                                                              : 0U;
    QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                     QStringLiteral("org.freedesktop.portal.Settings"),
                                                     QStringLiteral("SettingChanged"));
    signal << QStringLiteral("org.freedesktop.appearance")
           << (isContrast ? QStringLiteral("contrast") : QStringLiteral("color-scheme"))
           << QVariant::fromValue(QDBusVariant(isContrast ? contrast_ : scheme_));
    QDBusConnection::sessionBus().send(signal);
  }

 private:
  bool silent_;
  uint scheme_ = 0;
  uint contrast_ = 0;
};

}  // namespace

int main(int count, char** arguments) {
  QCoreApplication application(count, arguments);
  Portal portal(count > 1 && std::string(arguments[1]) == "silent");
  QDBusConnection bus = QDBusConnection::sessionBus();
  const bool serves = bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal) &&
                      bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
  if (!serves) return 1;
  QSocketNotifier input(0, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
    std::string line;
    if (!std::getline(std::cin, line)) return QCoreApplication::quit();
    portal.set(line);
    std::cout << "done" << std::endl;
  });
  std::cout << "ready" << std::endl;
  return QCoreApplication::exec();
}
