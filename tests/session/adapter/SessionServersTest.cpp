// The servers of a session, real ones and such as take the connection and say nothing.
#include "Platform/session/linux/SessionServers.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>
#include <string>
#include <vector>

#include "Platform/running/posix/FileDescriptor.h"
#include "tests/support/Desktop.h"

namespace halvorn {
namespace {

using namespace std::chrono_literals;
constexpr auto kShortPatience = 200ms;

class SilentServer {
 public:
  SilentServer() : listening_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    address_.sun_family = AF_UNIX;
    path().copy(address_.sun_path, sizeof address_.sun_path - 1);
    EXPECT_EQ(::bind(listening_.get(), place(), sizeof address_), 0);
    EXPECT_EQ(::listen(listening_.get(), 0), 0);
  }
  [[nodiscard]] std::string path() const { return folder_ / "socket"; }
  // Until it takes nobody any more.
  void fill() {
    while (true) {
      FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
      if (::connect(client.get(), place(), sizeof address_) != 0) return;
      clients_.push_back(std::move(client));
    }
  }

 private:
  [[nodiscard]] const sockaddr* place() const { return reinterpret_cast<const sockaddr*>(&address_); }
  TemporaryFolder folder_;
  sockaddr_un address_{};
  FileDescriptor listening_;
  std::vector<FileDescriptor> clients_;
};

TEST(SessionServers, ThatAreThereAnswer) {
  const DesktopParts parts{.windowManager = false, .accessibility = true};
  if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
  const Desktop desktop(parts);
  EXPECT_EQ(askDisplay(desktop.displayName(), 10s), Answer::Given);
  const BusAnswers buses = askBuses(desktop.busAddress(), std::nullopt, 10s);
  EXPECT_EQ(buses.session, Answer::Given);
  EXPECT_EQ(buses.accessibility, Answer::Given) << "the session bus knows where it is";
}

TEST(SessionServers, ThatAreNotThereAreMissingAtOnce) {
  const auto begun = std::chrono::steady_clock::now();
  EXPECT_EQ(askDisplay(std::nullopt), Answer::Missing);
  EXPECT_EQ(askDisplay(":63999"), Answer::Missing);
  EXPECT_EQ(askDisplay("no display"), Answer::Missing);
  for (const char* address : {"unix:path=/nowhere", "unix:abstract=halvorn-nobody", "nonsense"}) {
    const BusAnswers buses = askBuses(address, std::nullopt);
    EXPECT_EQ(buses.session, Answer::Missing) << address;
    EXPECT_EQ(buses.accessibility, Answer::Missing) << address;
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begun, kLongestForBuses);
}

TEST(SessionServers, ThatTakeTheConnectionAndSayNothingAreSilentWhenTheTimeIsOver) {
  for (const bool isFull : {false, true}) {
    SilentServer server;
    if (isFull) server.fill();
    const auto begun = std::chrono::steady_clock::now();
    const BusAnswers buses = askBuses("unix:path=" + server.path(), std::nullopt, kShortPatience);
    EXPECT_EQ(buses.session, Answer::Silent);
    const BusAnswers accessible = askBuses(std::nullopt, "unix:path=" + server.path(), kShortPatience);
    EXPECT_EQ(accessible.session, Answer::Missing);
    EXPECT_EQ(accessible.accessibility, Answer::Silent);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 10s);
  }
}

TEST(SessionServers, ABusThatIsStoppedIsSilent) {
  const DesktopParts parts{.display = false, .windowManager = false};
  if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
  Desktop desktop(parts);
  desktop.bus()->sendSignal(SIGSTOP);
  EXPECT_EQ(askBuses(desktop.busAddress(), std::nullopt, kShortPatience).session, Answer::Silent);
  desktop.bus()->sendSignal(SIGCONT);
  EXPECT_EQ(askBuses(desktop.busAddress(), std::nullopt, 10s).session, Answer::Given);
}

}  // namespace
}  // namespace halvorn
