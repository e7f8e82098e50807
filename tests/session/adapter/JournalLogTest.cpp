#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <regex>
#include <thread>

#include "Platform/session/linux/JournalLog.h"
#include "tests/fakes/FakeClock.h"
#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

// A journal of the test's own: a datagram socket that keeps what it is sent.
class Journal {
 public:
  explicit Journal(const std::string& path)
      : path_(path), socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    if (::bind(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) socket_.reset();
  }
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] bool isRunning() const { return socket_.isOpen(); }

  // The next entry; "" when none waits. A descriptor that came instead is read.
  std::string next() {
    std::string bytes(1 << 20, '\0');
    iovec content = {bytes.data(), bytes.size()};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    msghdr message = {};
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    const ssize_t size = ::recvmsg(socket_.get(), &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    if (size < 0) return {};
    bytes.resize(static_cast<std::size_t>(size));
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    if (header == nullptr || header->cmsg_type != SCM_RIGHTS) return bytes;
    int descriptor = -1;
    std::copy_n(CMSG_DATA(header), sizeof descriptor, reinterpret_cast<unsigned char*>(&descriptor));
    const FileDescriptor file(descriptor);
    seals_ = ::fcntl(descriptor, F_GET_SEALS);
    return contentsOf("/proc/self/fd/" + std::to_string(descriptor));
  }
  [[nodiscard]] int seals() const { return seals_; }

 private:
  std::string path_;
  FileDescriptor socket_;
  int seals_ = 0;
};

TEST(JournalLog, EachEventIsOneLineAndOneStructuredEntry) {
  const TemporaryFolder folder;
  Journal journal(folder / "journal");
  ASSERT_TRUE(journal.isRunning());
  ASSERT_EQ(inChild([&] {
              sendStandardErrorTo(folder / "log");
              const FakeClock clock;
              const JournalLog log(clock, "Installer", Environment(), journal.path());
              log("Install\nPRIORITY=0");
              log("second");
              return 0;
            }),
            0);
  EXPECT_TRUE(std::regex_match(journal.next(), std::regex("MESSAGE=Install\\\\nPRIORITY=0\nPRIORITY=6\n"
                                                          "SYSLOG_IDENTIFIER=Installer\nSYSLOG_PID=\\d+\n")));
  EXPECT_TRUE(journal.next().starts_with("MESSAGE=second\n"));
  EXPECT_EQ(journal.next(), "");
  const std::string lines = contentsOf(folder / "log");
  EXPECT_NE(lines.find("] Install\\nPRIORITY=0\n"), std::string::npos);
  EXPECT_NE(lines.find("] second\n"), std::string::npos);
}

TEST(JournalLog, WithoutAJournalTheLineAloneIsWritten) {
  const TemporaryFolder folder;
  ASSERT_EQ(inChild([&] {
              sendStandardErrorTo(folder / "log");
              const FakeClock clock;
              const JournalLog log(clock, "Installer", Environment(), folder / "no-journal");
              log("Install");
              return 0;
            }),
            0);
  EXPECT_NE(contentsOf(folder / "log").find("] Install\n"), std::string::npos);
}

TEST(JournalLog, AJournalThatDoesNotReadHoldsNothingUp) {
  const TemporaryFolder folder;
  const Journal journal(folder / "journal");
  const int status = inChild([&] {
    sendStandardErrorTo(folder / "log");
    const FakeClock clock;
    const JournalLog log(clock, "Installer", Environment(), journal.path());
    for (int i = 0; i < 3000; ++i) log("line %d", i);
    return 0;
  });
  EXPECT_EQ(status, 0) << "1014 is the alarm";
  EXPECT_NE(contentsOf(folder / "log").find("] line 2999\n"), std::string::npos);
}

TEST(JournalLog, AnEntryTooLargeForADatagramGoesAsASealedFile) {
  const TemporaryFolder folder;
  Journal journal(folder / "journal");
  const std::string large(600'000, 'x');
  std::thread writer([&] {
    EXPECT_EQ(inChild([&] {
                sendStandardErrorTo("/dev/null");
                const FakeClock clock;
                const JournalLog log(clock, "Installer", Environment(), journal.path());
                log("%@", Text(large));
                return 0;
              }),
              0);
  });
  writer.join();
  EXPECT_TRUE(journal.next().starts_with("MESSAGE=" + large + "\n"));
  EXPECT_EQ(journal.seals() & F_SEAL_WRITE, F_SEAL_WRITE);
}

TEST(JournalLog, WhereStandardErrorIsTheJournalAnEventIsNotInItTwice) {
  const TemporaryFolder folder;
  Journal journal(folder / "journal");
  ASSERT_EQ(inChild([&] {
              sendStandardErrorTo(folder / "log");
              struct stat information = {};
              ::fstat(STDERR_FILENO, &information);
              const std::string stream =
                  std::to_string(information.st_dev) + ":" + std::to_string(information.st_ino);
              const FakeClock clock;
              const JournalLog log(clock, "Installer",
                                   Environment(Environment::Variables{{"JOURNAL_STREAM", stream}}),
                                   journal.path());
              log("once");
              return 0;
            }),
            0);
  EXPECT_TRUE(journal.next().starts_with("MESSAGE=once\n"));
  EXPECT_EQ(contentsOf(folder / "log"), "");
}

}  // namespace
}  // namespace halvorn
