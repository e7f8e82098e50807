#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <functional>
#include <regex>
#include <thread>

#include "Platform/running/posix/PosixStandardStreams.h"
#include "Platform/running/posix/StandardErrorLog.h"
#include "Platform/session/linux/JournalLog.h"
#include "tests/fakes/FakeClock.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/WaitingWorkers.h"

namespace halvorn {
namespace {

// Runs the body in a process of its own, since it changes the standard streams; 0 to 99 is what the body
// returned, 1000 and more the signal that ended it.
int inChild(const std::function<int()>& body) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::alarm(20);
    ::_exit(body());
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

void sendStandardErrorTo(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  ::dup2(file, STDERR_FILENO);
}

void write(int descriptor, const std::string& bytes) {
  (void)!::write(descriptor, bytes.data(), bytes.size());
}

TEST(StandardErrorLog, ALineIsTimeProgramPidAndText) {
  const TemporaryFolder folder;
  ASSERT_EQ(inChild([&] {
              sendStandardErrorTo(folder / "log");
              ::setenv("TZ", "UTC", 1);
              const FakeClock clock;
              const StandardErrorLog log(clock, "Insta\nller");
              log("launching %@", Text("/opt/F\no.app"));
              return 0;
            }),
            0);
  EXPECT_TRUE(std::regex_match(contentsOf(folder / "log"),
                               std::regex("2023-11-14 22:13:20\\.000 Insta\\\\nller\\[\\d+\\] "
                                          "launching /opt/F\\\\no\\.app\n")))
      << contentsOf(folder / "log");
}

TEST(StandardErrorLog, LinesOfSeveralThreadsStayWhole) {
  const TemporaryFolder folder;
  ASSERT_EQ(inChild([&] {
              sendStandardErrorTo(folder / "log");
              const FakeClock clock;
              const StandardErrorLog log(clock, "p");
              const Text word(std::string(300, 'x'));
              {
                WaitingWorkers workers;
                for (int i = 0; i < 4; ++i) {
                  workers.detach([&] {
                    for (int j = 0; j < 50; ++j) log("<%@>", word);
                  });
                }
              }
              return 0;
            }),
            0);
  const std::string written = contentsOf(folder / "log");
  const std::regex line("[^\n]*\\] <x{300}>\n");
  const auto count =
      std::distance(std::sregex_iterator(written.begin(), written.end(), line), std::sregex_iterator());
  EXPECT_EQ(count, 200);
  EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), 200);
}

TEST(StandardErrorLog, AReaderThatWentAwayEndsNothing) {
  EXPECT_EQ(inChild([] {
              int ends[2];
              if (::pipe(ends) != 0) return 1;
              ::dup2(ends[1], STDERR_FILENO);
              ::close(ends[0]);
              const FakeClock clock;
              const StandardErrorLog log(clock, "p");
              log("nobody reads this");
              sigset_t pending;
              ::sigpending(&pending);
              return sigismember(&pending, SIGPIPE) == 1 ? 2 : 0;
            }),
            0);
}

TEST(StandardErrorLog, AClosedStreamEndsNothing) {
  EXPECT_EQ(inChild([] {
              ::close(STDERR_FILENO);
              const FakeClock clock;
              const StandardErrorLog log(clock, "p");
              log("nobody reads this");
              return 0;
            }),
            0);
}

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

TEST(PosixStandardStreams, AppendToTheFileAndMakeItsFolder) {
  const TemporaryFolder folder;
  const std::string logs = folder / "home/Library/Logs";
  const std::string file = logs + "/Installer.log";
  for (const char* const word : {"one", "two"}) {
    ASSERT_EQ(inChild([&] {
                PosixStandardStreams streams{Text(logs)};
                using Stream = StandardStreams::Stream;
                if (!streams.reopen(Stream::Output, file) || !streams.reopen(Stream::Error, file)) return 1;
                std::printf("out %s\n", word);
                std::fflush(stdout);
                std::fprintf(stderr, "err %s\n", word);
                write(STDERR_FILENO, "raw\n");
                return 0;
              }),
              0);
  }
  EXPECT_EQ(contentsOf(file), "out one\nerr one\nraw\nout two\nerr two\nraw\n");
  struct stat information = {};
  for (const std::string& made : {logs, folder / "home/Library"}) {
    ASSERT_EQ(::stat(made.c_str(), &information), 0);
    EXPECT_EQ(information.st_mode & 07777, 0700u) << made;
  }
}

TEST(PosixStandardStreams, AFolderThatIsThereStaysAsItIs) {
  const TemporaryFolder folder;
  const std::string logs = folder / "Logs";
  std::filesystem::create_directory(logs);
  std::filesystem::permissions(logs, static_cast<std::filesystem::perms>(0755));
  ASSERT_EQ(inChild([&] {
              return PosixStandardStreams{Text(logs)}.reopen(StandardStreams::Stream::Error, logs + "/x.log")
                         ? 0
                         : 1;
            }),
            0);
  EXPECT_EQ(static_cast<int>(std::filesystem::status(logs).permissions()), 0755);
}

TEST(PosixStandardStreams, OnlyTheGuaranteedFolderIsMade) {
  const TemporaryFolder folder;
  EXPECT_EQ(inChild([&] {
              PosixStandardStreams streams{Text(folder / "Logs")};
              return streams.reopen(StandardStreams::Stream::Error, folder / "Other/x.log") ? 1 : 0;
            }),
            0);
  EXPECT_FALSE(std::filesystem::exists(folder / "Other"));
}

TEST(PosixStandardStreams, AStreamThatCannotBeReopenedIsClosedAndItsNumberStaysTaken) {
  const TemporaryFolder folder;
  EXPECT_EQ(inChild([&] {
              sendStandardErrorTo(folder / "before");
              PosixStandardStreams streams;
              if (streams.reopen(StandardStreams::Stream::Error, folder.path().string())) return 1;
              if (::write(STDERR_FILENO, "x", 1) != -1) return 2;
              const int next = ::open("/dev/null", O_RDONLY);
              if (next == STDERR_FILENO) return 3;
              if (!streams.reopen(StandardStreams::Stream::Error, "/dev/null")) return 4;
              return ::write(STDERR_FILENO, "x", 1) == 1 ? 0 : 5;
            }),
            0);
  EXPECT_EQ(contentsOf(folder / "before"), "");
}

TEST(PosixStandardStreams, AStreamThatWasClosedBeforeIsReopened) {
  const TemporaryFolder folder;
  EXPECT_EQ(inChild([&] {
              ::close(STDOUT_FILENO);
              PosixStandardStreams streams;
              if (!streams.reopen(StandardStreams::Stream::Output, folder / "out")) return 1;
              if (::fcntl(STDOUT_FILENO, F_GETFD) != 0)
                return 2;  // open, and inherited by programs started here
              std::printf("word");
              std::fflush(stdout);
              return 0;
            }),
            0);
  EXPECT_EQ(contentsOf(folder / "out"), "word");
}

TEST(PosixStandardStreams, APipeOrAFolderInTheWayHoldsNothingUp) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  putFile(folder / "Library", "a file");
  EXPECT_EQ(inChild([&] {
              PosixStandardStreams streams{Text(folder / "Library/Logs")};
              (void)streams.reopen(StandardStreams::Stream::Error, folder / "pipe");
              return streams.reopen(StandardStreams::Stream::Error, folder / "Library/Logs/x.log") ? 1 : 0;
            }),
            0);
}

}  // namespace
}  // namespace halvorn
