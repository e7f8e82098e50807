// How long a person has given no input, as each compositor tells it.
#include <ext-idle-notify-v1-server-protocol.h>
#include <gtest/gtest.h>
#include <wayland-server.h>

#include <atomic>
#include <csignal>
#include <optional>
#include <thread>

#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/session/linux/LinuxDesktopFacts.h"
#include "Platform/session/linux/bus/MutterIdleTime.h"
#include "Platform/session/linux/wayland/NotifiedIdleTime.h"
#include "tests/support/DesktopEnvironment.h"
#include "tests/support/Hands.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

// Nothing tells that time has passed, so the condition is asked again and again while the loop is served.
bool settles(PollRunLoop& loop, const std::function<bool()>& condition) {
  return eventually([&] {
    loop.runFor(0.02);
    return condition();
  });
}

class IdleTime : public testing::TestWithParam<Compositor> {
 protected:
  void SetUp() override {
    const DesktopParts parts{.bus = false, .compositor = GetParam()};
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    desktop = std::make_unique<Desktop>(parts);
    hands = startedHands(*desktop);
    facts = std::make_unique<LinuxDesktopFacts>(environmentOf(*desktop), std::nullopt, loop, clock);
  }
  std::optional<double> seconds() {
    const auto told = facts->nanosecondsSinceLastInput();
    return told ? std::optional(static_cast<double>(*told) / 1e9) : std::nullopt;
  }
  bool becomes(const std::function<bool(double)>& condition) {
    return settles(loop, [&] {
      const auto told = seconds();
      return told && condition(*told);
    });
  }
  double secondsToAsk() {
    const double start = clock.monotonicSeconds();
    EXPECT_EQ(seconds(), std::nullopt);
    return clock.monotonicSeconds() - start;
  }

  PollRunLoop loop;
  PosixClock clock;
  std::unique_ptr<Desktop> desktop;
  std::unique_ptr<ChildProcess> hands;
  std::unique_ptr<LinuxDesktopFacts> facts;
};
INSTANTIATE_TEST_SUITE_P(Wayland, IdleTime,
                         testing::Values(Compositor::Sway, Compositor::KWin, Compositor::Gnome),
                         [](const auto& parameters) { return nameOf(parameters.param); });

TEST_P(IdleTime, GrowsWhileNothingComesAndBeginsAnewWithInput) {
  ASSERT_TRUE(becomes([](double told) { return told > 1.2; }));
  const double before = seconds().value();
  const double start = clock.monotonicSeconds();
  loop.runFor(0.5);
  EXPECT_NEAR(seconds().value() - before, clock.monotonicSeconds() - start, 0.05);
  hands->writeInput("click 640 400\n");
  ASSERT_EQ(hands->readLine(kTestPatience), "done");
  EXPECT_TRUE(becomes([](double told) { return told < 1.0; }));
  EXPECT_TRUE(becomes([](double told) { return told > 1.2; })) << "the next absence is told, too";
}

TEST_P(IdleTime, IsUnknownWhileTheCompositorDoesNotAnswer) {
  ASSERT_TRUE(becomes([](double told) { return told >= 0; }));
  ASSERT_EQ(::kill(desktop->compositor()->pid(), SIGSTOP), 0);
  EXPECT_LT(secondsToAsk(), 3.0);
  EXPECT_LT(secondsToAsk(), 0.5) << "it is not waited for again";
  ASSERT_EQ(::kill(desktop->compositor()->pid(), SIGCONT), 0);
  EXPECT_TRUE(becomes([](double told) { return told >= 0; }));
  desktop->compositor()->end(SIGKILL);
  EXPECT_LT(secondsToAsk(), 3.0);
  EXPECT_LT(secondsToAsk(), 0.5);
}

// One bus may serve two desktops.
TEST(IdleTimeOfAnotherDesktop, IsNotThisOnes) {
  const DesktopParts gnome{.compositor = Compositor::Gnome};
  const DesktopParts silent{.bus = false, .compositor = Compositor::Weston};
  for (const DesktopParts& parts : {gnome, silent}) {
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
  }
  const Desktop neighbour(gnome);
  const Desktop here(silent);
  MutterIdleTime ours({here.waylandSocket(), neighbour.busAddress()});
  EXPECT_EQ(ours.nanosecondsSinceLastInput(), std::nullopt);
  MutterIdleTime theirs({neighbour.waylandSocket(), neighbour.busAddress()});
  EXPECT_NE(theirs.nanosecondsSinceLastInput(), std::nullopt);
}

// A compositor that tells of absences by the younger protocol alone. It notices none by itself.
class YoungCompositor {
 public:
  explicit YoungCompositor(const std::string& path) : display_(wl_display_create()) {
    wl_global_create(display_, &wl_seat_interface, 1, this,
                     [](wl_client* client, void*, std::uint32_t, std::uint32_t id) {
                       wl_resource_create(client, &wl_seat_interface, 1, id);
                     });
    wl_global_create(display_, &ext_idle_notifier_v1_interface, 1, this, bindNotifier);
    wl_display_add_socket(display_, path.c_str());
    thread_ = std::thread([this] {
      while (!isOver_) {
        wl_display_flush_clients(display_);
        wl_event_loop_dispatch(wl_display_get_event_loop(display_), 10);
        tell();
      }
    });
  }
  ~YoungCompositor() {
    isOver_ = true;
    thread_.join();
    wl_display_destroy_clients(display_);
    wl_display_destroy(display_);
  }
  YoungCompositor(const YoungCompositor&) = delete;
  YoungCompositor& operator=(const YoungCompositor&) = delete;

  void setIdle(bool isIdle) { wanted_ = isIdle; }
  [[nodiscard]] std::uint32_t timeout() const { return timeout_; }  // milliseconds, as it was asked for

 private:
  static void bindNotifier(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    static const struct ext_idle_notifier_v1_interface requests = {
        .destroy = [](wl_client*, wl_resource* notifier) { wl_resource_destroy(notifier); },
        .get_idle_notification =
            [](wl_client* asking, wl_resource* notifier, std::uint32_t number, std::uint32_t timeout,
               wl_resource*) {
              static const struct ext_idle_notification_v1_interface ofNotification = {
                  .destroy = [](wl_client*, wl_resource* notification) {
                    wl_resource_destroy(notification);
                  }};
              auto* const young = static_cast<YoungCompositor*>(wl_resource_get_user_data(notifier));
              young->notification_ =
                  wl_resource_create(asking, &ext_idle_notification_v1_interface, 1, number);
              wl_resource_set_implementation(young->notification_, &ofNotification, young, nullptr);
              young->timeout_ = timeout;
            }};
    wl_resource* const notifier =
        wl_resource_create(client, &ext_idle_notifier_v1_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(notifier, &requests, self, nullptr);
  }
  void tell() {
    if (notification_ == nullptr || wanted_ == told_) return;
    told_ = wanted_;
    if (told_) {
      ext_idle_notification_v1_send_idled(notification_);
    } else {
      ext_idle_notification_v1_send_resumed(notification_);
    }
  }

  wl_display* const display_;
  wl_resource* notification_ = nullptr;
  bool told_ = false;
  std::atomic<bool> wanted_ = false;
  std::atomic<std::uint32_t> timeout_ = 0;
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

TEST(IdleTimeByTheYoungerProtocol, CountsFromTheInputBeforeTheNoticeToTheNextOne) {
  const TemporaryFolder folder;
  YoungCompositor compositor(folder / "wayland");
  PollRunLoop loop;
  PosixClock clock;
  NotifiedIdleTime idle(folder / "wayland", loop, clock);
  EXPECT_EQ(idle.nanosecondsSinceLastInput(), std::nullopt) << "nobody can tell yet";
  EXPECT_EQ(compositor.timeout(), 1000U);
  EXPECT_TRUE(settles(loop, [&] { return idle.nanosecondsSinceLastInput() == 0; }))
      << "it would have told of an absence by now";
  compositor.setIdle(true);
  std::optional<std::int64_t> first;
  EXPECT_TRUE(settles(loop, [&] { return (first = idle.nanosecondsSinceLastInput()) > 0; }));
  EXPECT_GE(first, 1'000'000'000) << "the wait counts, too";
  compositor.setIdle(false);
  EXPECT_TRUE(settles(loop, [&] { return idle.nanosecondsSinceLastInput() == 0; }));
}

}  // namespace
}  // namespace halvorn
