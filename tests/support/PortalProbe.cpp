// A desktop portal with a few settings on the session bus. Each of these on standard input sets one, answered by "done":
//
//   dark | light | none              color-scheme           contrast | no-contrast     contrast
//   still | moving                   reduced-motion         animations YES | NO        GNOME's
//   theme NAME                       GNOME's                high-contrast YES | NO     GNOME's
//   scheme NAME                      KDE's                  durations FACTOR           KDE's
//
// With the argument "silent" it takes the name and never answers a question.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMap>
#include <QSocketNotifier>
#include <iostream>
#include <string>

namespace {

constexpr char kAppearance[] = "org.freedesktop.appearance";

using Settings = QMap<QString, QVariantMap>;  // by group and key

class Portal : public QDBusVirtualObject {
 public:
  explicit Portal(bool silent) : silent_(silent) {
    settings_[kAppearance] = {{"color-scheme", 0U}, {"contrast", 0U}};
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (silent_) return true;
    const QVariantList asked = message.arguments();
    if (message.member() == QStringLiteral("ReadAll")) {
      Settings answer;
      for (const QString& group : asked.value(0).toStringList()) {
        if (settings_.contains(group)) answer[group] = settings_[group];
      }
      return bus.send(message.createReply(QVariant::fromValue(answer)));
    }
    const QVariant value = settings_.value(asked.value(0).toString()).value(asked.value(1).toString());
    if (message.member() != QStringLiteral("Read") || !value.isValid()) return false;
    const QVariant wrapped = QVariant::fromValue(QDBusVariant(value));
    return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(wrapped))));
  }
  QString introspect(const QString&) const override { return {}; }

  void obey(const QString& line) {
    const QString verb = line.section(u' ', 0, 0);
    const QString rest = line.section(u' ', 1);
    if (verb == "dark") set(kAppearance, "color-scheme", 1U);
    if (verb == "light") set(kAppearance, "color-scheme", 2U);
    if (verb == "none") set(kAppearance, "color-scheme", 0U);
    if (verb == "contrast") set(kAppearance, "contrast", 1U);
    if (verb == "no-contrast") set(kAppearance, "contrast", 0U);
    if (verb == "still") set(kAppearance, "reduced-motion", 1U);
    if (verb == "moving") set(kAppearance, "reduced-motion", 0U);
    if (verb == "animations") set("org.gnome.desktop.interface", "enable-animations", rest == "YES");
    if (verb == "theme") set("org.gnome.desktop.interface", "gtk-theme", rest);
    if (verb == "high-contrast") set("org.gnome.desktop.a11y.interface", "high-contrast", rest == "YES");
    if (verb == "scheme") set("org.kde.kdeglobals.General", "ColorScheme", rest);
    if (verb == "durations") set("org.kde.kdeglobals.KDE", "AnimationDurationFactor", rest);
  }

 private:
  void set(const QString& group, const QString& key, const QVariant& value) {
    settings_[group][key] = value;
    QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                     QStringLiteral("org.freedesktop.portal.Settings"),
                                                     QStringLiteral("SettingChanged"));
    signal << group << key << QVariant::fromValue(QDBusVariant(value));
    QDBusConnection::sessionBus().send(signal);
  }

  bool silent_;
  Settings settings_;
};

}  // namespace

int main(int count, char** arguments) {
  QCoreApplication application(count, arguments);
  qDBusRegisterMetaType<Settings>();
  Portal portal(count > 1 && std::string(arguments[1]) == "silent");
  QDBusConnection bus = QDBusConnection::sessionBus();
  const bool serves = bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal) &&
                      bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
  if (!serves) return 1;
  QSocketNotifier input(0, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
    std::string line;
    if (!std::getline(std::cin, line)) return QCoreApplication::quit();
    portal.obey(QString::fromStdString(line));
    std::cout << "done" << std::endl;
  });
  std::cout << "ready" << std::endl;
  return QCoreApplication::exec();
}
