// Every call of the file system that a small installation makes is made to fail once with every error that is
// plausible for it, and the tool is killed before every one that changes something. Result, log and what is
// on the disk are held against what the install function promises.
#include <algorithm>
#include <cerrno>
#include <iostream>
#include <system_error>

#include "tests/files/adapter/SweepScene.h"

namespace halvorn {
namespace {

struct Fault {
  const char* call;
  std::vector<const char*> errors;
};

using Faults = std::vector<Fault>;

std::string wordsFor(const std::string& error) {
  static const std::map<std::string, int> numbers = {
      {"EACCES", EACCES}, {"EDQUOT", EDQUOT}, {"EIO", EIO},     {"EMFILE", EMFILE}, {"EINVAL", EINVAL},
      {"ENOSPC", ENOSPC}, {"ENOSYS", ENOSYS}, {"EPERM", EPERM}, {"EROFS", EROFS},   {"EXDEV", EXDEV}};
  return std::generic_category().message(numbers.at(error));
}

// Where the log gives another reason than the one that was injected.
struct OtherReason {
  const char* call;
  const char* reason;
  const char* why;
};
constexpr OtherReason kOtherReasons[] = {
    {"newfstatat", "File exists",
     "asking whether something is there answers yes or no; what was not seen is then in the way"},
    {"renameat2", "its file system cannot move it, for it lies in a layer that is only read",
     "within one mount, nothing else answers that it would be a move to elsewhere"},
};

class FaultSweep : public SweepScene {
 protected:
  static bool isToldReason(const std::string& call, const std::string& error, const std::string& reason) {
    if (reason == wordsFor(error)) return true;
    return std::any_of(std::begin(kOtherReasons), std::end(kOtherReasons), [&](const OtherReason& other) {
      return call == other.call && reason == other.reason;
    });
  }
  void sweep(const Faults& faults) {
    const auto calls = callsOfTheTool();
    std::map<std::string, int> table;
    int runs = 0;
    for (const auto& [call, errors] : faults) {
      const auto found = calls.find(call);
      ASSERT_NE(found, calls.end()) << "the tool never calls " << call;
      for (int number = found->second.first; number <= found->second.last; ++number) {
        for (const char* error : errors) {
          const std::string injection =
              std::string(call) + ":error=" + error + ":when=" + std::to_string(number);
          const Outcome outcome = install(injection);
          EXPECT_TRUE(outcome.wasInjected) << injection;
          EXPECT_EQ(harm(outcome), "") << injection << ": " << name(outcome);
          if (outcome.status != 0) {
            EXPECT_TRUE(isToldReason(call, error, reason(outcome)))
                << injection << ": " << outcome.lines.front();
          }
          ++table[std::string(call) + " " + error + ": " + name(outcome)];
          ++runs;
        }
      }
    }
    for (const auto& [line, count] : table) std::cout << "  " << count << " x " << line << "\n";
    std::cout << "  " << runs << " runs\n";
    EXPECT_GT(runs, 0);
  }
  // Interrupted calls are made again; the user notices nothing.
  void sweepHarmless(const char* call, const char* error) {
    const Calls calls = callsOfTheTool()[call];
    for (int number = calls.first; number <= calls.last; ++number) {
      const std::string injection = std::string(call) + ":error=" + error + ":when=" + std::to_string(number);
      const Outcome outcome = install(injection);
      EXPECT_EQ(outcome.status, 0) << injection << ": " << name(outcome);
      EXPECT_EQ(harm(outcome), "") << injection;
    }
  }
};

TEST_F(FaultSweep, WithoutAFaultTheInstallationIsWhole) {
  const Outcome outcome = install("");
  EXPECT_EQ(name(outcome), "status 0, old in Trash, new whole");
  EXPECT_EQ(harm(outcome), "");
}

TEST_F(FaultSweep, OpeningAndMakingFails) {
  sweep({{"openat", {"EACCES", "EMFILE", "EIO", "ENOSPC", "EROFS"}},
         {"mkdirat", {"ENOSPC", "EROFS", "EACCES", "EIO"}},
         {"mkdir", {"ENOSPC", "EROFS", "EACCES"}},
         {"symlinkat", {"ENOSPC", "EIO"}},
         {"linkat", {"ENOSPC", "EIO"}}});
}

TEST_F(FaultSweep, LookingFails) {
  sweep({{"newfstatat", {"EIO", "EACCES"}},
         {"getdents64", {"EIO"}},
         {"readlink", {"EACCES"}},
         {"readlinkat", {"EIO"}},
         {"statx", {"EIO", "ENOSYS"}},
         {"openat2", {"EACCES", "ENOSYS"}},
         {"flistxattr", {"EIO"}}});
}

TEST_F(FaultSweep, ReadingAndWritingFails) {
  sweep({{"pwrite64", {"ENOSPC", "EIO", "EDQUOT"}},
         {"preadv2", {"EIO", "EAGAIN", "EOPNOTSUPP"}},
         {"fallocate", {"ENOSPC", "EDQUOT", "EIO", "EOPNOTSUPP"}},
         {"copy_file_range", {"ENOSPC", "EIO", "EDQUOT", "EXDEV", "ENOSYS"}},
         {"write", {"ENOSPC", "EIO"}},
         {"close", {"EIO"}},
         {"fcntl", {"EMFILE"}}});
}

TEST_F(FaultSweep, FinishingAndTrashingFails) {
  sweep({{"utimensat", {"EIO", "EROFS", "EACCES"}},
         {"fchmod", {"EPERM", "EROFS"}},
         {"renameat2", {"EACCES", "EIO", "EXDEV", "EINVAL", "EROFS", "ENOSPC"}},
         {"fremovexattr", {"EIO", "EOPNOTSUPP"}}});
}

TEST_F(FaultSweep, WhereAFileCanHaveNoMoreNamesItIsCopiedAgain) {
  for (const char* error : {"EMLINK", "EPERM", "EOPNOTSUPP"}) {
    const Outcome outcome = install(std::string("linkat:error=") + error + ":when=1");
    EXPECT_TRUE(outcome.wasInjected);
    EXPECT_EQ(outcome.status, 0) << error;
    EXPECT_EQ(outcome.old, Old::InTrash) << error;
    EXPECT_EQ(facts("disk/apps/Nas.app/hard").st_nlink, 1u);
    EXPECT_EQ(contents("disk/apps/Nas.app/hard"), std::string(9'000, 'p'));
    EXPECT_EQ(contents("disk/apps/Nas.app/Contents/program"), std::string(9'000, 'p'));
  }
}

TEST_F(FaultSweep, InterruptedCallsAreMadeAgain) {
  for (const char* call : {"openat", "preadv2", "pwrite64", "copy_file_range", "fallocate", "write"})
    sweepHarmless(call, "EINTR");
}

TEST_F(FaultSweep, KilledBeforeAnyCallTheOldCopyIsNeverLost) {
  const auto calls = callsOfTheTool();
  std::map<std::string, int> table;
  for (const char* call :
       {"openat", "mkdir", "mkdirat", "write", "pwrite64", "renameat2", "linkat", "symlinkat", "fchmod",
        "utimensat", "close", "getdents64", "copy_file_range", "fallocate", "exit_group"}) {
    const auto found = calls.find(call);
    ASSERT_NE(found, calls.end()) << call;
    for (int number = found->second.first; number <= found->second.last; ++number) {
      const Outcome outcome = install(std::string(call) + ":signal=KILL:when=" + std::to_string(number));
      EXPECT_EQ(outcome.status, -9) << call << " " << number;
      EXPECT_EQ(harm(outcome), "") << call << " " << number << ": " << name(outcome);
      ++table[name(outcome)];
    }
  }
  for (const auto& [line, count] : table) std::cout << "  " << count << " x " << line << "\n";
  EXPECT_EQ(table.size(), 4u) << "old in place; then in the Trash with no, a partial and a whole new copy";
}

}  // namespace
}  // namespace halvorn
