// The connection to real compositors, and to what is none.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>
#include <cstring>
#include <thread>

#include "Platform/running/posix/FileDescriptor.h"
#include "Platform/session/linux/WaylandSession.h"
#include "Platform/session/linux/wayland/WaylandConnection.h"
#include "tests/support/Desktop.h"

namespace halvorn {
namespace {

using namespace std::chrono_literals;

constexpr auto kShortPatience = 200ms;

// Takes clients and never says a word.
class SilentDisplay {
 public:
  explicit SilentDisplay(int backlog) : listening_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(::bind(listening_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(listening_.get(), backlog), 0);
  }
  [[nodiscard]] std::string path() const { return folder_ / "wayland-1"; }
  [[nodiscard]] FileDescriptor accept() const {
    return FileDescriptor(::accept4(listening_.get(), nullptr, nullptr, SOCK_CLOEXEC));
  }

 private:
  TemporaryFolder folder_;
  FileDescriptor listening_;
};

class RealConnection : public testing::TestWithParam<Compositor> {
 protected:
  void SetUp() override {
    const DesktopParts parts{.bus = false, .compositor = GetParam()};
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    desktop = std::make_unique<Desktop>(parts);
    connection = WaylandConnection::open(desktop->waylandSocket());
    ASSERT_NE(connection, nullptr) << desktop->waylandSocket();
  }
  std::unique_ptr<Desktop> desktop;
  std::unique_ptr<WaylandConnection> connection;
};
INSTANTIATE_TEST_SUITE_P(Compositors, RealConnection, testing::Values(Compositor::Sway, Compositor::Weston),
                         [](const auto& parameters) {
                           return parameters.param == Compositor::Sway ? "Sway" : "Weston";
                         });

TEST_P(RealConnection, KnowsWhatIsOfferedAndBindsIt) {
  EXPECT_TRUE(connection->offers(wl_compositor_interface));
  EXPECT_FALSE(connection->offers(wl_callback_interface)) << "nobody offers that";
  EXPECT_EQ(connection->bind<wl_callback>(wl_callback_interface, 1), nullptr);
  wl_output* const output = connection->bind<wl_output>(wl_output_interface, 1);
  ASSERT_NE(output, nullptr);
  bool isTold = false;
  static const wl_output_listener listener = {
      .geometry = [](void* data, wl_output*, int, int, int, int, int, const char*, const char*,
                     int) { *static_cast<bool*>(data) = true; },
      .mode = [](void*, wl_output*, std::uint32_t, int, int, int) {},
      .done = nullptr,
      .scale = nullptr,
      .name = nullptr,
      .description = nullptr};
  wl_output_add_listener(output, &listener, &isTold);
  EXPECT_TRUE(connection->roundTrip());
  EXPECT_TRUE(isTold);
  wl_output_destroy(output);
}

TEST_P(RealConnection, ACompositorThatIsKilledMakesItUnusable) {
  EXPECT_TRUE(connection->isUsable());
  EXPECT_EQ(WaylandConnection::ask(desktop->waylandSocket(), 10s), Answer::Given);
  desktop->compositor()->end(SIGKILL);
  EXPECT_FALSE(connection->roundTrip());
  EXPECT_FALSE(connection->isUsable());
  EXPECT_FALSE(connection->roundTrip());
  connection->readEvents();
  EXPECT_EQ(WaylandConnection::open(desktop->waylandSocket()), nullptr);
}

TEST_P(RealConnection, AStoppedCompositorIsWaitedForOnceAndHeardAgainWhenItGoesOn) {
  connection = WaylandConnection::open(desktop->waylandSocket(), kShortPatience);
  ASSERT_NE(connection, nullptr);
  desktop->compositor()->sendSignal(SIGSTOP);
  double start = testSeconds();
  EXPECT_FALSE(connection->roundTrip());
  EXPECT_GE(testSeconds() - start, 0.19);
  start = testSeconds();
  for (int i = 0; i < 100; ++i) EXPECT_FALSE(connection->roundTrip());
  EXPECT_LT(testSeconds() - start, 10.0) << "a hundred times the patience is twice that";
  EXPECT_EQ(WaylandConnection::open(desktop->waylandSocket(), kShortPatience), nullptr);
  EXPECT_TRUE(connection->isUsable());
  desktop->compositor()->sendSignal(SIGCONT);
  EXPECT_TRUE(eventually([&] { return connection->roundTrip(); }));
}

TEST(WaylandConnections, WhereNobodyListensThereIsNone) {
  TemporaryFolder folder;
  for (const std::string& path :
       {std::string(), folder / "wayland-1", folder.path().string(), folder / std::string(200, 'x')}) {
    EXPECT_EQ(WaylandConnection::open(path), nullptr) << path;
    EXPECT_EQ(WaylandConnection::ask(path, kShortPatience), Answer::Missing) << path;
  }
}

TEST(WaylandConnections, ADisplayThatNeverAnswersIsGivenUp) {
  const SilentDisplay display(8);
  const double start = testSeconds();
  EXPECT_EQ(WaylandConnection::open(display.path(), kShortPatience), nullptr);
  EXPECT_GE(testSeconds() - start, 0.19);
  EXPECT_LT(testSeconds() - start, kTestPatience);
  EXPECT_EQ(WaylandConnection::ask(display.path(), kShortPatience), Answer::Silent);
}

TEST(WaylandConnections, ADisplayThatTakesNobodyIsNotWaitedFor) {
  const SilentDisplay display(0);
  const auto first = WaylandConnection::open(display.path(), kShortPatience);
  // It sits in the queue, which is full now.
  const FileDescriptor waiting(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  display.path().copy(address.sun_path, sizeof address.sun_path - 1);
  std::ignore = ::connect(waiting.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  const double start = testSeconds();
  EXPECT_EQ(WaylandConnection::open(display.path(), kShortPatience), nullptr);
  EXPECT_LT(testSeconds() - start, kTestPatience);
}

TEST(WaylandConnections, NonsenseInPlaceOfAnAnswerEndsTheConversation) {
  const SilentDisplay display(8);
  std::thread liar([&] {
    const FileDescriptor client = display.accept();
    // An event of the display itself that there is none of.
    const std::uint32_t nonsense[] = {1, (8U << 16U) | 77};
    std::ignore = ::send(client.get(), nonsense, sizeof nonsense, MSG_NOSIGNAL);
    char byte = 0;
    while (::recv(client.get(), &byte, 1, 0) > 0) {
    }
  });
  const double start = testSeconds();
  EXPECT_EQ(WaylandConnection::open(display.path(), 60s), nullptr);
  EXPECT_LT(testSeconds() - start, kTestPatience) << "it was not waited for";
  liar.join();
}

TEST(WaylandSessions, TheSocketIsAPlaceAndNoName) {
  TemporaryFolder folder;
  std::filesystem::create_directory_symlink(folder.path(), folder.path() / "link");
  const std::string here = std::filesystem::canonical(folder.path()).string() + "/wayland-7";
  EXPECT_EQ(waylandSocketPath("wayland-7", folder.path().string()), here);
  EXPECT_EQ(waylandSocketPath("wayland-7", folder / "link"), here);
  EXPECT_EQ(waylandSocketPath(folder / "link/./wayland-7", ""), here);
  EXPECT_EQ(waylandSocketPath("wayland-7", ""), "");
  EXPECT_EQ(waylandSocketPath("wayland-7", "relative"), "");
  EXPECT_EQ(waylandSocketPath("", folder.path().string()), "");
  using Variables = Environment::Variables;
  const std::string run = folder.path().string();
  EXPECT_EQ(waylandSocketPath(Environment(Variables{{"DISPLAY", ":0"}, {"XDG_RUNTIME_DIR", run}})), "");
  EXPECT_EQ(
      waylandSocketPath(Environment(Variables{{"XDG_SESSION_TYPE", "wayland"}, {"XDG_RUNTIME_DIR", run}})),
      here.substr(0, here.size() - 1) + "0");
}

}  // namespace
}  // namespace halvorn
