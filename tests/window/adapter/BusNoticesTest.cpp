// Notices against a notification service of the test's own, on a bus of its own.
#include "Platform/window/linux/BusNotices.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/session/linux/SignalListener.h"
#include "tests/support/Desktop.h"
#include "tests/support/OffscreenApplication.h"

namespace halvorn {
namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");

// What desktops have: numbers its notices, and tells what a person pressed.
class NotificationService : public QDBusVirtualObject {
 public:
  explicit NotificationService(const QString& bus)
      : bus_(QDBusConnection::connectToBus(bus, QStringLiteral("service"))) {
    serves = bus_.registerVirtualObject(kPath, this) && bus_.registerService(kService);
  }
  ~NotificationService() override { QDBusConnection::disconnectFromBus(QStringLiteral("service")); }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (refuses) {
      bus.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("not now")));
    } else if (message.member() == QStringLiteral("GetCapabilities")) {
      bus.send(message.createReply(capabilities));
    } else if (message.member() == QStringLiteral("Notify")) {
      notices.push_back(message.arguments());
      bus.send(message.createReply(static_cast<uint>(notices.size() + 40)));
    } else if (message.member() == QStringLiteral("CloseNotification")) {
      closed.push_back(message.arguments().value(0).toUInt());
      bus.send(message.createReply());
    }
    return true;
  }
  QString introspect(const QString&) const override { return {}; }

  void press(uint number, const char* key) {
    QDBusMessage signal = QDBusMessage::createSignal(kPath, kService, QStringLiteral("ActionInvoked"));
    signal << number << QString::fromUtf8(key);
    bus_.send(signal);
  }
  [[nodiscard]] QString text(std::size_t notice, int argument) const {
    return notices.at(notice).value(argument).toString();
  }
  [[nodiscard]] QVariantMap hints(std::size_t notice) const {
    return qdbus_cast<QVariantMap>(notices.at(notice).value(6).value<QDBusArgument>());
  }

  bool serves = false;
  bool refuses = false;
  QStringList capabilities = {QStringLiteral("actions"), QStringLiteral("body"),
                              QStringLiteral("body-markup")};
  std::vector<QVariantList> notices;
  std::vector<uint> closed;

 private:
  QDBusConnection bus_;
};

OffscreenApplication& application = offscreenApplication();

class BusNoticesTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    desktop = new Desktop({.display = false, .windowManager = false});
    ::setenv("DBUS_SESSION_BUS_ADDRESS", desktop->busAddress().c_str(), 1);
  }
  static void TearDownTestSuite() {
    delete desktop;
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
  }

  template <typename Condition>
  bool soon(Condition condition) {
    return application.application().runUntil(condition, kTestPatience);
  }
  // Until the service has answered everything that was sent before.
  void settle() {
    BusNotices other("Other");
    const std::size_t before = service.notices.size();
    other.show({.title = "settle"});
    ASSERT_TRUE(soon([&] { return service.notices.size() > before; }));
    service.notices.pop_back();
  }

  static inline Desktop* desktop = nullptr;
  NotificationService service{QString::fromStdString(desktop->busAddress())};
  BusNotices notices{"Halvorn Installer"};
  int actions = 0;
  int selections = 0;
  const Notice failure{.kind = Notice::Kind::Failure,
                       .title = "Install Sample",
                       .text = "Installation <failed> & over.\rTry again.",
                       .actionTitle = "Show Log",
                       .action = [this] { ++actions; },
                       .selected = [this] { ++selections; }};
};

TEST_F(BusNoticesTest, TheWholeSentenceIsShownWithItsButton) {
  ASSERT_TRUE(service.serves);
  notices.show(failure);
  ASSERT_TRUE(soon([&] { return service.notices.size() == 1; }));
  EXPECT_EQ(service.text(0, 0), "Halvorn Installer");
  EXPECT_EQ(service.text(0, 2), "dialog-error");
  EXPECT_EQ(service.text(0, 3), "Install Sample");
  EXPECT_EQ(service.text(0, 4), "Installation &lt;failed&gt; &amp; over.\nTry again.");
  EXPECT_EQ(service.notices[0].value(5).toStringList(), (QStringList{"default", "", "action", "Show Log"}));
  EXPECT_EQ(service.hints(0).value(QStringLiteral("urgency")).value<uchar>(), 2);
}

TEST_F(BusNoticesTest, AServiceWithoutMarkupGetsTheTextAsItIs) {
  service.capabilities = {QStringLiteral("body")};
  notices.show({.title = "Install Sample", .text = "a < b"});
  ASSERT_TRUE(soon([&] { return service.notices.size() == 1; }));
  EXPECT_EQ(service.text(0, 4), "a < b");
  EXPECT_EQ(service.notices[0].value(5).toStringList(), (QStringList{"default", ""})) << "no button";
  EXPECT_EQ(service.hints(0).value(QStringLiteral("urgency")).value<uchar>(), 1);
}

TEST_F(BusNoticesTest, WhatIsPressedIsDoneOnceForTheNoticeThatIsShown) {
  notices.show(failure);
  ASSERT_TRUE(soon([&] { return service.notices.size() == 1; }));
  settle();
  service.press(40, "action");
  service.press(41, "action");
  ASSERT_TRUE(soon([&] { return actions == 1; }));
  service.press(41, "default");
  ASSERT_TRUE(soon([&] { return selections == 1; }));
  EXPECT_EQ(actions, 1) << "another program's notice is not ours";
}

TEST_F(BusNoticesTest, TheNextOneTakesThePlaceOfTheOneBefore) {
  notices.show(failure);
  ASSERT_TRUE(soon([&] { return service.notices.size() == 1; }));
  settle();
  notices.show(failure);
  ASSERT_TRUE(soon([&] { return service.notices.size() == 2; }));
  EXPECT_EQ(service.notices[0].value(1).toUInt(), 0U);
  EXPECT_EQ(service.notices[1].value(1).toUInt(), 41U);
}

TEST_F(BusNoticesTest, WhatIsWithdrawnIsClosedHoweverEarly) {
  notices.show(failure);
  ASSERT_TRUE(soon([&] { return service.notices.size() == 1; }));
  notices.withdraw();  // its number may not be known yet
  EXPECT_TRUE(soon([&] { return service.closed == std::vector<uint>{41}; }));
  service.press(41, "action");
  settle();
  EXPECT_EQ(actions, 0);
}

// As docks hear it.
TEST_F(BusNoticesTest, TheTaskBarIsToldHowFarTheWorkIs) {
  QDBusConnection dock =
      QDBusConnection::connectToBus(QString::fromStdString(desktop->busAddress()), QStringLiteral("dock"));
  SignalListener listener;
  std::vector<QVariantMap> heard;
  QString program;
  listener.heardSignal = [&](const QDBusMessage& signal) {
    program = signal.arguments().value(0).toString();
    heard.push_back(qdbus_cast<QVariantMap>(signal.arguments().value(1).value<QDBusArgument>()));
  };
  ASSERT_TRUE(dock.connect(QString(), QString(), QStringLiteral("com.canonical.Unity.LauncherEntry"),
                           QStringLiteral("Update"), &listener, SLOT(heard(QDBusMessage))));
  application.application().setIdentifier("example.halvorn.installer");
  application.application().setProgress(0.25);
  application.application().setProgress(std::nullopt);
  EXPECT_TRUE(soon([&] { return heard.size() == 2; }));
  ASSERT_EQ(heard.size(), 2U);
  EXPECT_EQ(program, "application://example.halvorn.installer.desktop");
  EXPECT_EQ(heard[0].value(QStringLiteral("progress")).toDouble(), 0.25);
  EXPECT_TRUE(heard[0].value(QStringLiteral("progress-visible")).toBool());
  EXPECT_FALSE(heard[1].value(QStringLiteral("progress-visible")).toBool());
  QDBusConnection::disconnectFromBus(QStringLiteral("dock"));
}

TEST_F(BusNoticesTest, WhoAskedIsToldOnceWhatTheServiceDidNotTake) {
  service.refuses = true;
  int untold = 0;
  notices.show({.title = "Install Sample", .text = "Installation failed.", .notShown = [&] { ++untold; }});
  ASSERT_TRUE(soon([&] { return untold > 0; }));
  service.refuses = false;
  settle();
  EXPECT_EQ(untold, 1);
  EXPECT_TRUE(service.notices.empty());
}

TEST(BusNoticesWithoutADesktop, NobodySeesItAndNothingWaits) {
  BusNotices notices("Halvorn Installer");
  int untold = 0;
  notices.show({.title = "Install Sample", .text = "Installation failed.", .notShown = [&] { ++untold; }});
  EXPECT_EQ(untold, 1) << "who asked for it is told";
  notices.withdraw();
}

}  // namespace
}  // namespace halvorn
