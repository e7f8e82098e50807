#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <regex>

#include "Platform/running/posix/StandardErrorLog.h"
#include "tests/fakes/FakeClock.h"
#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/WaitingWorkers.h"

namespace halvorn {
namespace {

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

}  // namespace
}  // namespace halvorn
