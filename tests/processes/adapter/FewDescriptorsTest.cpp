// More running copies than this program may have files open.
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <set>
#include <sstream>

#include "tests/processes/adapter/LiveFixture.h"

namespace halvorn {
namespace {

constexpr char kInside[] = "KT_TEST_INSIDE_FEW_DESCRIPTORS";
constexpr int kDescriptors = 64;
constexpr int kCopies = 100;

// The copies run in one program that holds their input and output; the other one,
// with few descriptors, looks at them.
class FewDescriptors : public LiveFixture {
 protected:
  // The ids of the copies, for the program with few descriptors; otherwise it was run, and there are none.
  std::vector<pid_t> copies(const std::string& test, const Strings& habits = {}) {
    if (const char* ids = std::getenv(kInside)) return idsIn(ids);
    const std::string program = bundleProgram("Product", "PROD");
    std::string ids;
    for (int i = 0; i < kCopies; ++i) ids += std::to_string(start(program, habits).pid()) + " ";
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    const std::string limit = "--nofile=" + std::to_string(kDescriptors) + ":" + std::to_string(kDescriptors);
    const CommandResult result = runCommand({"prlimit", limit, "env", std::string(kInside) + "=" + ids, self,
                                             "--gtest_filter=FewDescriptors." + test},
                                            {}, 50);
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_NE(result.output.find("worked inside"), std::string::npos) << result.output;
    return {};
  }
  static std::vector<pid_t> idsIn(const std::string& text) {
    std::vector<pid_t> ids;
    std::istringstream stream(text);
    for (pid_t id = 0; stream >> id;) ids.push_back(id);
    return ids;
  }
  void watchThem(const std::vector<pid_t>& ids) {
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    ASSERT_EQ(limit.rlim_max, static_cast<rlim_t>(kDescriptors));
    for (const pid_t id : ids) own.add(id);
    watch({});
  }
  // Of those processes, the ones that are listed.
  std::vector<KTProcessPointer> listed(const std::vector<pid_t>& ids) {
    const std::set<pid_t> wanted(ids.begin(), ids.end());
    std::vector<KTProcessPointer> result;
    for (const KTProcessPointer& process : live->processes.allProcesses()) {
      if (wanted.contains(process->unixPID())) result.push_back(process);
    }
    return result;
  }
};

TEST_F(FewDescriptors, EveryRunningCopyIsListedAndCountsAsRunning) {
  const auto ids = copies("EveryRunningCopyIsListedAndCountsAsRunning");
  if (ids.empty()) return;
  watchThem(ids);
  for (int round = 0; round < 2; ++round) {
    const auto processes = listed(ids);
    EXPECT_EQ(processes.size(), static_cast<std::size_t>(kCopies));
    for (const KTProcessPointer& process : processes) {
      EXPECT_TRUE(process->isStillRunning());
      EXPECT_EQ(process->signature(), fourCharCode("PROD"));
    }
  }
  std::puts("worked inside");
}

TEST_F(FewDescriptors, EveryRunningCopyIsQuitAndItsEndIsSeen) {
  const auto ids = copies("EveryRunningCopyIsQuitAndItsEndIsSeen");
  if (ids.empty()) return;
  watchThem(ids);
  const auto processes = listed(ids);
  ASSERT_EQ(processes.size(), static_cast<std::size_t>(kCopies));
  for (const KTProcessPointer& process : processes)
    EXPECT_TRUE(process->quitRunningApplicationWithTimeout(4.0F));
  for (const KTProcessPointer& process : processes) EXPECT_FALSE(process->isStillRunning());
  EXPECT_TRUE(listed(ids).empty());
  for (const std::string& line : live->log.lines()) EXPECT_TRUE(line.starts_with("quit Product: ")) << line;
  std::puts("worked inside");
}

TEST_F(FewDescriptors, CopiesThatIgnoreRequestsAreForced) {
  const auto ids = copies("CopiesThatIgnoreRequestsAreForced", {"--ignores-term"});
  if (ids.empty()) return;
  watchThem(ids);
  const auto processes = listed(ids);
  ASSERT_EQ(processes.size(), static_cast<std::size_t>(kCopies));
  // The last ones in the list, which are held by no descriptor.
  constexpr int kForced = 5;
  for (std::size_t i = processes.size() - kForced; i < processes.size(); ++i) {
    EXPECT_TRUE(processes[i]->quitRunningApplicationWithTimeout(0.5F));
    EXPECT_FALSE(processes[i]->isStillRunning());
  }
  EXPECT_EQ(listed(ids).size(), static_cast<std::size_t>(kCopies - kForced));
  std::puts("worked inside");
}

TEST_F(FewDescriptors, LeaveSomeForEverythingElse) {
  const auto ids = copies("LeaveSomeForEverythingElse");
  if (ids.empty()) return;
  watchThem(ids);
  EXPECT_EQ(listed(ids).size(), static_cast<std::size_t>(kCopies));
  // A program can be run, with pipes to and from it.
  EXPECT_EQ(live->tasks.standardOutputOf("/bin/echo", {"free"}).value_or("could not be run"), "free\n");
  std::puts("worked inside");
}

}  // namespace
}  // namespace halvorn
