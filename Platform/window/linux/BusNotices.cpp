#include "Platform/window/linux/BusNotices.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QGuiApplication>
#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <optional>
#include <utility>

#include "Platform/session/linux/BusAddresses.h"
#include "Platform/session/linux/SignalListener.h"
#include "Platform/window/linux/QtText.h"

namespace halvorn {
namespace {

constexpr int kPatience = 5000;  // milliseconds
constexpr char kAction[] = "action";
constexpr char kSelected[] = "default";  // as the service calls it

const QString& service() {
  static const QString name = QStringLiteral("org.freedesktop.Notifications");
  return name;
}
const QString& path() {
  static const QString name = QStringLiteral("/org/freedesktop/Notifications");
  return name;
}

QDBusMessage callOf(const char* method, const QVariantList& arguments = {}) {
  QDBusMessage call = QDBusMessage::createMethodCall(service(), path(), service(), QLatin1String(method));
  call.setArguments(arguments);
  return call;
}

// The service's words for how much something matters.
QVariant urgencyOf(Notice::Kind kind) {
  constexpr uchar kNormal = 1;
  constexpr uchar kCritical = 2;
  return QVariant::fromValue<uchar>(kind == Notice::Kind::Failure ? kCritical : kNormal);
}

// Of the icon theme; the program's own stands on each.
QString iconOf(Notice::Kind kind) {
  return kind == Notice::Kind::Failure ? QStringLiteral("dialog-error") : QString();
}

}  // namespace

struct BusNotices::Service {
  explicit Service(const Text& programName)
      : name(toQString(programName)), bus(QDBusConnection::sessionBus()) {
    listener.heardSignal = [this](const QDBusMessage& signal) { hear(signal); };
    bus.connect(service(), path(), service(), QStringLiteral("ActionInvoked"), &listener,
                SLOT(heard(QDBusMessage)));
  }

  void whenAnswered(const QDBusMessage& call, std::function<void(const QDBusMessage&)> then) {
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(call, kPatience), &listener);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &listener,
                     [this, then = std::move(then)](QDBusPendingCallWatcher* finished) {
                       finished->deleteLater();
                       if (!finished->isError()) return then(finished->reply());
                       // Of several that are under way the last one counts, and is told of once.
                       if (const auto lost = std::exchange(notice, std::nullopt); lost && lost->notShown)
                         lost->notShown();
                     });
  }

  void show(const Notice& wanted) {
    notice = wanted;
    whenAnswered(callOf("GetCapabilities"), [this](const QDBusMessage& reply) {
      if (notice) send(reply.arguments().value(0).toStringList().contains(QStringLiteral("body-markup")));
    });
  }

  void send(bool understandsMarkup) {
    const QString text = forDisplay(notice->text);
    QStringList actions = {QLatin1String(kSelected), QString()};
    if (!notice->actionTitle.isEmpty()) actions << QLatin1String(kAction) << forDisplay(notice->actionTitle);
    const QVariantMap hints = {{QStringLiteral("urgency"), urgencyOf(notice->kind)},
                               {QStringLiteral("desktop-entry"), QGuiApplication::desktopFileName()}};
    const QVariantList arguments = {name,
                                    number.value_or(0U),
                                    iconOf(notice->kind),
                                    forDisplay(notice->title),
                                    understandsMarkup ? text.toHtmlEscaped() : text,
                                    actions,
                                    hints,
                                    -1};
    whenAnswered(callOf("Notify", arguments), [this](const QDBusMessage& reply) {
      number = reply.arguments().value(0).toUInt();
      if (!notice) withdraw();  // nobody wanted it any more when it came up
    });
  }

  void withdraw() {
    notice.reset();
    if (const auto shown = std::exchange(number, std::nullopt))
      bus.send(callOf("CloseNotification", {*shown}));
  }

  void hear(const QDBusMessage& signal) {
    const QVariantList arguments = signal.arguments();
    if (!notice || !number || arguments.value(0).toUInt() != *number) return;
    const Notice shown = *notice;  // what it does may show another one
    const QString key = arguments.value(1).toString();
    if (key == QLatin1String(kAction) && shown.action) shown.action();
    if (key == QLatin1String(kSelected) && shown.selected) shown.selected();
  }

  const QString name;
  QDBusConnection bus;
  SignalListener listener;
  std::optional<Notice> notice;    // that is shown, or about to be
  std::optional<unsigned> number;  // by which the service knows it
};

BusNotices::BusNotices(const Text& programName) : programName_(programName) {}

BusNotices::~BusNotices() { BusNotices::withdraw(); }

void BusNotices::show(const Notice& notice) {
  // Asking for a bus that is not there would start one.
  if (!sessionBusAddress(Environment::ofThisProcess())) {
    if (notice.notShown) notice.notShown();
    return;
  }
  if (!service_) service_ = std::make_unique<Service>(programName_);
  service_->show(notice);
}

void BusNotices::withdraw() {
  if (service_) service_->withdraw();
}

}  // namespace halvorn
