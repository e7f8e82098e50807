// What the desktop's notifications are asked to show, over a real bus.
#include "Platform/session/linux/NotifiedMessages.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>

#include "tests/support/Desktop.h"
#include "tests/support/TestFiles.h"
#include "tests/support/WaitingWorkers.h"

namespace halvorn {
namespace {

// While it lives, standard error is a file.
class ErrorsInFile {
 public:
  explicit ErrorsInFile(std::string path) : path_(std::move(path)) {
    const int file = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ::dup2(file, STDERR_FILENO);
    ::close(file);
  }
  ~ErrorsInFile() {
    ::dup2(before_, STDERR_FILENO);
    ::close(before_);
  }
  ErrorsInFile(const ErrorsInFile&) = delete;
  ErrorsInFile& operator=(const ErrorsInFile&) = delete;
  [[nodiscard]] std::string text() const { return contentsOf(path_); }

 private:
  const std::string path_;
  const int before_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
};

class NotifiedMessage : public testing::Test {
 protected:
  void SetUp() override {
    const DesktopParts parts{.display = false};
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    desktop.emplace(parts);
  }
  std::unique_ptr<ChildProcess> server(const std::string& role) {
    auto service = std::make_unique<ChildProcess>(
        std::vector<std::string>{KT_SESSION_SERVICES, role, desktop->busAddress()},
        ChildOptions{.environment = desktop->environment()});
    EXPECT_EQ(service->readLine(kTestPatience), "ready");
    return service;
  }
  void tell(const std::string& bus, const Text& title, const Text& sentence) {
    NotifiedMessages messages(workers, bus, "Installer");
    messages.tell(title, sentence);
    workers.finish();
  }
  std::optional<Desktop> desktop;
  const TemporaryFolder folder;
  WaitingWorkers workers;
};

TEST_F(NotifiedMessage, IsShownByTheDesktop) {
  const auto service = server("notifications");
  const ErrorsInFile errors(folder / "errors");
  tell(desktop->busAddress(), "Sample <1>", "Installation failed.\rTry <b>again</b> & wait.");
  EXPECT_TRUE(
      service->waitForOutput("notified Installer|Sample <1>|Installation failed.\\nTry "
                             "&lt;b&gt;again&lt;/b&gt; &amp; wait.|dialog-error\n",
                             kTestPatience))
      << service->output();
  EXPECT_EQ(errors.text(), "");
}

TEST_F(NotifiedMessage, WithoutSuchADesktopItIsToldToWhoStartedTheProgram) {
  for (const std::string& bus : {desktop->busAddress(), std::string("unix:path=/dev/null"), std::string()}) {
    const ErrorsInFile errors(folder / ("errors" + std::to_string(bus.size())));
    NotifiedMessages messages(workers, bus, "Installer");
    // As the log takes the stream over.
    const int nothing = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nothing, STDERR_FILENO);
    ::close(nothing);
    messages.tell("Sample", "Installation failed.\rTry again.");
    EXPECT_TRUE(eventually([&] { return errors.text() == "Sample: Installation failed. Try again.\n"; }))
        << bus << errors.text();
  }
}

TEST_F(NotifiedMessage, NamesThatNoServerCouldTakeAreShownAsWhatTheyAre) {
  const auto service = server("notifications");
  tell(desktop->busAddress(), Text(std::string_view("a\xE4\0z", 4)), Text("\u202Eb"));
  EXPECT_TRUE(
      service->waitForOutput("notified Installer|a\\xE4\\u{0000}z|\\u{202E}b|dialog-error\n", kTestPatience))
      << service->output();
}

}  // namespace
}  // namespace halvorn
