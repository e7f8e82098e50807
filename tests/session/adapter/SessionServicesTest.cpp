// The interface style from the desktop portal and the idle hint of the session manager, over real buses.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <filesystem>
#include <optional>

#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/session/linux/BusAddresses.h"
#include "Platform/session/linux/LinuxDesktopFacts.h"
#include "Platform/session/linux/LogindIdleTime.h"
#include "Platform/session/linux/PortalInterfaceStyle.h"
#include "tests/fakes/FakeClock.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

constexpr double kBoundOfOneQuestion = 2;  // seconds
const Text dark = "Dark";

class WithBus : public testing::Test {
 protected:
  void SetUp() override {
    const DesktopParts parts{.display = false};
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    desktop.emplace(parts);
  }

  std::unique_ptr<ChildProcess> startService(const std::string& role) {
    auto service = std::make_unique<ChildProcess>(
        std::vector<std::string>{KT_SESSION_SERVICES, role, desktop->busAddress()},
        ChildOptions{.environment = desktop->environment()});
    EXPECT_EQ(service->readLine(kTestPatience), "ready");
    return service;
  }
  static void tell(ChildProcess& service, const std::string& line) {
    service.writeInput(line + "\n");
    EXPECT_EQ(service.readLine(kTestPatience), "done");
  }
  template <typename Condition>
  static bool serveUntil(Condition condition) {
    return eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }

  int argumentCount = 1;
  char name[5] = "test";
  char* arguments[2] = {name, nullptr};
  QCoreApplication application{argumentCount, arguments};
  std::optional<Desktop> desktop;
};

using PortalStyle = WithBus;

TEST_F(PortalStyle, FollowsTheSettingAfresh) {
  const auto portal = startService("portal");
  PortalInterfaceStyle style(desktop->busAddress());
  EXPECT_EQ(style.current(), std::nullopt);
  tell(*portal, "scheme 1");
  EXPECT_EQ(style.current(), dark);
  tell(*portal, "scheme 2");
  EXPECT_EQ(style.current(), std::nullopt) << "2 prefers the light style";
  tell(*portal, "scheme 7");
  EXPECT_EQ(style.current(), std::nullopt) << "unknown schemes are no preference";
}

TEST_F(PortalStyle, TellsOfEachChange) {
  const auto portal = startService("portal");
  PortalInterfaceStyle style(desktop->busAddress());
  int changes = 0;
  style.installChangeHandler([&] { ++changes; });
  EXPECT_EQ(changes, 0);
  tell(*portal, "scheme 1");
  EXPECT_TRUE(serveUntil([&] { return changes == 1; }));
  tell(*portal, "scheme 0");
  EXPECT_TRUE(serveUntil([&] { return changes == 2; }));
}

TEST_F(PortalStyle, ChangeAfterItHasGoneIsHeardByNobody) {
  const auto portal = startService("portal");
  int changes = 0;
  {
    PortalInterfaceStyle style(desktop->busAddress());
    style.installChangeHandler([&] { ++changes; });
  }
  tell(*portal, "scheme 1");
  PortalInterfaceStyle other(desktop->busAddress());
  EXPECT_TRUE(serveUntil([&] { return other.current() == dark; }));
  EXPECT_EQ(changes, 0);
}

TEST_F(PortalStyle, WithoutAPortalIsUnknownAtOnce) {
  PortalInterfaceStyle style(desktop->busAddress());
  style.installChangeHandler([] {});
  const double start = testSeconds();
  EXPECT_EQ(style.current(), std::nullopt);
  EXPECT_LT(testSeconds() - start, kBoundOfOneQuestion);
}

TEST_F(PortalStyle, OfAPortalThatComesLaterIsTaken) {
  PortalInterfaceStyle style(desktop->busAddress());
  EXPECT_EQ(style.current(), std::nullopt);
  const auto portal = startService("portal");
  tell(*portal, "scheme 1");
  EXPECT_EQ(style.current(), dark);
}

TEST_F(PortalStyle, OfASilentPortalIsUnknownAndWaitedForOnce) {
  const auto portal = startService("silence");
  PortalInterfaceStyle style(desktop->busAddress());
  EXPECT_EQ(style.current(), std::nullopt);
  const double start = testSeconds();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(style.current(), std::nullopt);
  EXPECT_LT(testSeconds() - start, 20 * kBoundOfOneQuestion / 2) << "it was not waited for again";
}

TEST_F(PortalStyle, OfAPortalThatTalksNonsenseIsUnknown) {
  const auto portal = startService("nonsense");
  PortalInterfaceStyle style(desktop->busAddress());
  EXPECT_EQ(style.current(), std::nullopt);
}

TEST_F(PortalStyle, WithoutABusIsUnknownAtOnce) {
  const double start = testSeconds();
  for (const std::optional<std::string>& address :
       {std::optional<std::string>(), std::optional<std::string>("unix:path=/no/such/bus"),
        std::optional<std::string>("no address")}) {
    PortalInterfaceStyle style(address);
    style.installChangeHandler([] {});
    EXPECT_EQ(style.current(), std::nullopt);
  }
  EXPECT_LT(testSeconds() - start, kBoundOfOneQuestion);
}

TEST_F(PortalStyle, WithABusThatGoesIsUnknown) {
  const auto portal = startService("portal");
  tell(*portal, "scheme 1");
  PortalInterfaceStyle style(desktop->busAddress());
  EXPECT_EQ(style.current(), dark);
  desktop->bus()->end();
  EXPECT_TRUE(serveUntil([&] { return style.current() == std::nullopt; }));
}

using SessionManager = WithBus;

TEST_F(SessionManager, HintIsTheTimeSinceThePersonLeft) {
  const auto login = startService("login");
  FakeClock clock;
  clock.advance(1000);
  LogindIdleTime idle(desktop->busAddress(), clock);
  EXPECT_EQ(idle.nanosecondsSinceLastInput(), 0) << "the person is here";
  tell(*login, "idle 400000000");
  EXPECT_EQ(idle.nanosecondsSinceLastInput(), 600'000'000'000);
  tell(*login, "idle 2000000000");
  EXPECT_EQ(idle.nanosecondsSinceLastInput(), 0) << "never negative";
  tell(*login, "active 400000000");
  EXPECT_EQ(idle.nanosecondsSinceLastInput(), 0);
}

TEST_F(SessionManager, ThatIsMissingOrTalksNonsenseIsUnknown) {
  const PosixClock clock;
  EXPECT_EQ(LogindIdleTime(desktop->busAddress(), clock).nanosecondsSinceLastInput(), std::nullopt);
  EXPECT_EQ(LogindIdleTime(std::nullopt, clock).nanosecondsSinceLastInput(), std::nullopt);
  const auto nonsense = startService("nonsense");
  EXPECT_EQ(LogindIdleTime(desktop->busAddress(), clock).nanosecondsSinceLastInput(), std::nullopt);
}

TEST_F(SessionManager, IsAskedOnlyWhereTheDisplayDoesNotTell) {
  const DesktopParts parts{.windowManager = false};
  if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
  desktop.emplace(parts);
  const auto login = startService("login");
  tell(*login, "idle 0");
  PollRunLoop loop;
  FakeClock clock;
  clock.advance(100'000);
  constexpr std::int64_t sinceTheHint = 100'000'000'000'000;
  LinuxDesktopFacts withoutDisplay(Environment(), desktop->busAddress(), loop, clock);
  EXPECT_EQ(withoutDisplay.nanosecondsSinceLastInput(), sinceTheHint);
  const Environment environment(Environment::Variables{{"DISPLAY", desktop->displayName()}});
  LinuxDesktopFacts withDisplay(environment, desktop->busAddress(), loop, clock);
  const auto ofDisplay = withDisplay.nanosecondsSinceLastInput();
  ASSERT_TRUE(ofDisplay);
  EXPECT_LT(*ofDisplay, sinceTheHint);
  LinuxDesktopFacts withNeither(Environment(), std::nullopt, loop, clock);
  EXPECT_EQ(withNeither.nanosecondsSinceLastInput(), std::nullopt);
}

// The portal that desktops really run.
class RealPortal : public WithBus {
 protected:
  void SetUp() override {
    constexpr const char* frontEnd = "/usr/libexec/xdg-desktop-portal";
    constexpr const char* backEnd = "/usr/libexec/xdg-desktop-portal-gtk";
    for (const char* const program : {frontEnd, backEnd}) {
      if (!std::filesystem::exists(program)) GTEST_SKIP() << program << " is not installed";
    }
    if (!programExists("gsettings")) GTEST_SKIP() << "gsettings is not installed";
    const DesktopParts parts{.windowManager = false};
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    desktop.emplace(parts);
    environment = desktop->environmentWith({"XDG_CURRENT_DESKTOP=GNOME", "GSETTINGS_BACKEND=keyfile",
                                            "XDG_CONFIG_HOME=" + desktop->folder() + "/config"});
    backEndProgram.emplace(std::vector<std::string>{backEnd}, ChildOptions{.environment = environment});
    frontEndProgram.emplace(std::vector<std::string>{frontEnd}, ChildOptions{.environment = environment});
  }
  void setScheme(const std::string& value) {
    const std::vector<std::string> words = {"gsettings", "set", "org.gnome.desktop.interface", "color-scheme",
                                            value};
    const CommandResult result = runCommand(words, {.environment = environment});
    ASSERT_EQ(result.status, 0) << result.output;
  }

  std::vector<std::string> environment;
  std::optional<ChildProcess> backEndProgram;
  std::optional<ChildProcess> frontEndProgram;
};

TEST_F(RealPortal, StyleFollowsThePersonsChoice) {
  setScheme("prefer-dark");
  PortalInterfaceStyle style(desktop->busAddress());
  int changes = 0;
  style.installChangeHandler([&] { ++changes; });
  ASSERT_TRUE(serveUntil([&] { return style.current() == dark; })) << frontEndProgram->output();
  const int before = changes;
  setScheme("prefer-light");
  EXPECT_TRUE(serveUntil([&] { return changes > before; }));
  EXPECT_EQ(style.current(), std::nullopt);
  setScheme("prefer-dark");
  EXPECT_TRUE(serveUntil([&] { return changes > before + 1; }));
  EXPECT_EQ(style.current(), dark);
}

TEST(BusAddresses, AreThoseOfTheEnvironmentElseTheUsualSockets) {
  const TemporaryFolder folder;
  EXPECT_EQ(sessionBusAddress(Environment()), std::nullopt);
  EXPECT_EQ(
      sessionBusAddress(Environment(Environment::Variables{{"XDG_RUNTIME_DIR", folder.path().string()}})),
      std::nullopt);
  EXPECT_EQ(
      sessionBusAddress(Environment(Environment::Variables{{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/x"}})),
      "unix:path=/x");
  EXPECT_EQ(
      systemBusAddress(Environment(Environment::Variables{{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/y"}})),
      "unix:path=/y");
}

TEST_F(WithBus, SocketInTheRuntimeFolderIsTheSessionBus) {
  const std::string runtimeFolder = desktop->runtimeFolder();
  EXPECT_EQ(sessionBusAddress(Environment(Environment::Variables{{"XDG_RUNTIME_DIR", runtimeFolder}})),
            "unix:path=" + runtimeFolder + "/bus");
}

}  // namespace
}  // namespace halvorn
