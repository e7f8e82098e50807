#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include "Platform/running/posix/PosixStandardStreams.h"
#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

void write(int descriptor, const std::string& bytes) {
  (void)!::write(descriptor, bytes.data(), bytes.size());
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
