// Process ids that come back, in a small namespace of process ids where the test can choose the next one.
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <utility>

#include "tests/processes/adapter/LiveFixture.h"

namespace halvorn {
namespace {

constexpr char kInside[] = "KT_TEST_INSIDE_PID_NAMESPACE";
constexpr int kRounds = 25;

class PidReuse : public LiveFixture {
 protected:
  // True when the caller is to do the work; otherwise it was done in a namespace.
  bool isInside(const std::string& test) {
    if (std::getenv(kInside) != nullptr) return true;
    if (!programExists("unshare")) {
      ADD_FAILURE() << "unshare is part of every system";
      return false;
    }
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    Strings command = {"unshare", "--pid", "--fork", "--mount-proc", "--kill-child"};
    if (::geteuid() != 0) command.insert(command.end(), {"--user", "--map-root-user"});
    Strings probe = command;
    probe.emplace_back("true");
    const CommandResult possible = runCommand(probe);
    if (possible.status != 0) {
      skipReason = "no namespace of process ids to be had: " + possible.output;
      return false;
    }
    command.insert(command.end(),
                   {"env", std::string(kInside) + "=1", self, "--gtest_filter=PidReuse." + test});
    const CommandResult result = runCommand(command, {}, 50);
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_NE(result.output.find("worked inside"), std::string::npos) << result.output;
    return false;
  }
  // The next process gets that id.
  static void chooseNextPid(pid_t pid) {
    std::ofstream("/proc/sys/kernel/ns_last_pid") << pid - 1 << std::flush;
  }
  // Ends the program and starts another one under its id.
  ChildProcess& replace(ChildProcess& ended, const std::string& program) {
    ended.end(SIGKILL);
    chooseNextPid(ended.pid());
    return start(program);
  }
  std::string skipReason;
};

TEST_F(PidReuse, NeverYieldsTheOldObject) {
  if (!isInside("NeverYieldsTheOldObject")) {
    if (!skipReason.empty()) GTEST_SKIP() << skipReason;
    return;
  }
  watch({});
  const std::string product = bundleProgram("Product", "PROD");
  const std::string bystander = bundleProgram("Bystander", "BYST");
  int reused = 0;
  for (int round = 0; round < kRounds; ++round) {
    ChildProcess& first = start(product);
    const KTProcessPointer before = process(first);
    EXPECT_EQ(before->signature(), fourCharCode("PROD"));
    const auto application = live->control.runningApplication(before->serialNumber());
    ChildProcess& second = replace(first, bystander);
    if (second.pid() != first.pid()) continue;
    ++reused;

    EXPECT_FALSE(before->isStillRunning());
    EXPECT_EQ(before->unixPID(), 0);
    const KTProcessPointer after = live->processes.processWithPID(second.pid());
    ASSERT_NE(after, nullptr);
    EXPECT_NE(after, before);
    EXPECT_FALSE(after->isEqual(before));
    EXPECT_EQ(after->signature(), fourCharCode("BYST"));

    // The old object and what was got through it reach nobody.
    before->quit();
    before->wakeUp();
    EXPECT_TRUE(application->isTerminated());
    EXPECT_FALSE(application->terminate());
    EXPECT_FALSE(application->forceTerminate());
    giveItAMoment(second);
    EXPECT_TRUE(second.isRunning());
    EXPECT_EQ(second.output(), "ready\n");
    second.end(SIGKILL);
  }
  EXPECT_GT(reused, kRounds / 2);
  std::puts("worked inside");
}

// A process table whose answers are out of date as soon as they are given: what was asked for ends right
// after its id was told, and a bystander gets the id.
class OutrunSource : public LinuxProcessSource {
 public:
  using LinuxProcessSource::LinuxProcessSource;
  std::optional<std::int32_t> pid(ProcessSerialNumber number) override {
    const auto answer = LinuxProcessSource::pid(number);
    if (afterwards) std::exchange(afterwards, nullptr)();
    return answer;
  }
  std::function<void()> afterwards;
};

TEST_F(PidReuse, BetweenAQuestionAndARequestReachesNobodyElse) {
  if (!isInside("BetweenAQuestionAndARequestReachesNobodyElse")) {
    if (!skipReason.empty()) GTEST_SKIP() << skipReason;
    return;
  }
  watch({});
  OutrunSource source(live->running, live->procFiles, live->windows, live->workspace);
  const KTProcessServices s = live->processes.services();
  KTProcessClass processes({source, s.events, s.control, s.appleEvents, s.accessibility, s.notifications,
                            s.bundles, s.items, s.files, s.images, s.tasks, s.unicode, s.digests, s.codes,
                            s.clock, s.log});
  const std::string product = bundleProgram("Product", "PROD");
  const std::string bystander = bundleProgram("Bystander", "BYST");
  int reused = 0;
  for (int round = 0; round < kRounds; ++round) {
    ChildProcess& first = start(product);
    const KTProcessPointer process = processes.processWithPID(first.pid());
    ASSERT_NE(process, nullptr);
    ASSERT_EQ(process->name(), Text("Product"));
    ChildProcess* second = nullptr;
    source.afterwards = [&] { second = &replace(first, bystander); };
    EXPECT_FALSE(process->quitRunningApplicationWithTimeout(0.2F));
    ASSERT_NE(second, nullptr);
    if (second->pid() == first.pid()) ++reused;
    giveItAMoment(*second);
    EXPECT_TRUE(second->isRunning());
    EXPECT_EQ(second->output(), "ready\n");
    second->end(SIGKILL);
  }
  EXPECT_GT(reused, kRounds / 2);
  std::puts("worked inside");
}

TEST_F(PidReuse, SerialNumbersDifferEvenWithinOneTickOfTheClock) {
  if (!isInside("SerialNumbersDifferEvenWithinOneTickOfTheClock")) {
    if (!skipReason.empty()) GTEST_SKIP() << skipReason;
    return;
  }
  watch({});
  const std::string program = bundleProgram("Product", "PROD");
  std::vector<ProcessSerialNumber> numbers;
  ChildProcess* current = &start(program);
  for (int round = 0; round < kRounds * 4; ++round) {
    const auto number = live->source.processForPID(current->pid());
    ASSERT_TRUE(number);
    EXPECT_EQ(std::count(numbers.begin(), numbers.end(), *number), 0);
    numbers.push_back(*number);
    current = &replace(*current, program);
  }
  std::puts("worked inside");
}

}  // namespace
}  // namespace halvorn
