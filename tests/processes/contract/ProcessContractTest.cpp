// The same cases against made-up applications and against real ones, on every system whose adapters this is built with.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "tests/processes/contract/ProcessWorlds.h"
#include "tests/support/QuitLines.h"

namespace halvorn {
namespace {

class ProcessContract : public testing::TestWithParam<NamedProcessWorld> {
 protected:
  void SetUp() override {
    if (const auto missing = GetParam().missing()) GTEST_SKIP() << *missing;
    world = GetParam().make();
  }
  KTProcessPointer listed(std::int32_t pid) {
    for (const auto& process : world->processes().allProcesses()) {
      if (process->unixPID() == pid) return process;
    }
    return nullptr;
  }
  std::unique_ptr<ProcessWorld> world;
};
const auto nameOfWorld = [](const auto& parameters) { return parameters.param.name; };
INSTANTIATE_TEST_SUITE_P(Worlds, ProcessContract, testing::ValuesIn(processWorlds()), nameOfWorld);

std::vector<NamedProcessWorld> worldsThat(ToldOfWindows told) {
  std::vector<NamedProcessWorld> worlds = processWorlds();
  std::erase_if(worlds, [told](const NamedProcessWorld& world) { return world.told != told; });
  return worlds;
}

class ProcessContractWithWindows : public ProcessContract {};
INSTANTIATE_TEST_SUITE_P(Worlds, ProcessContractWithWindows,
                         testing::ValuesIn(worldsThat(ToldOfWindows::Everything)), nameOfWorld);

// Not every system has such worlds.
class ProcessContractWithoutWindows : public ProcessContract {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ProcessContractWithoutWindows);
INSTANTIATE_TEST_SUITE_P(Worlds, ProcessContractWithoutWindows,
                         testing::ValuesIn(worldsThat(ToldOfWindows::Nothing)), nameOfWorld);

TEST_P(ProcessContract, AnApplicationIsListedWithWhatItsBundleSays) {
  const std::int32_t pid = world->start({"Editor", "EDIT"});
  const KTProcessPointer process = listed(pid);
  ASSERT_NE(process, nullptr);
  EXPECT_EQ(process->name(), Text("Editor"));
  EXPECT_EQ(process->signature(), fourCharCode("EDIT"));
  EXPECT_EQ(process->signatureString(), Text("EDIT"));
  EXPECT_EQ(process->path(), Text(world->pathOf("Editor")));
  EXPECT_EQ(process->identifier(), Text("org.example.Editor"));
  EXPECT_EQ(process->hashStringSource(), Text("id:org.example.Editor"));
  EXPECT_TRUE(process->isStillRunning());
  EXPECT_GT(process->launchDate().secondsSince1970, 1.5e9);
}

TEST_P(ProcessContract, EveryWayLeadsToTheSameObject) {
  const std::int32_t pid = world->start({"Editor", "Zz01"});
  const KTProcessPointer process = listed(pid);
  ASSERT_NE(process, nullptr);
  KTProcessClass& processes = world->processes();
  EXPECT_EQ(processes.processWithPID(pid), process);
  EXPECT_EQ(processes.processWithSerialNumber(process->serialNumber()), process);
  EXPECT_EQ(processes.processWithSignature(fourCharCode("Zz01")), process);
  EXPECT_EQ(processes.processWithIdentifier("org.example.Editor"), process);
  EXPECT_EQ(processes.cachedProcessWithSerialNumber(process->serialNumber()), process);
}

TEST_P(ProcessContract, ASignatureThatIsNotDeclaredIsTheUndeclaredOneOrCannotBeWrittenAsText) {
  const KTProcessPointer process = listed(world->start({"Plain"}));
  ASSERT_NE(process, nullptr);
  EXPECT_NE(process->signature(), 0u);
  const FourCharCode written = fourCharCodeFromText(process->signatureString());
  EXPECT_TRUE(written == 0 || written == kUndeclaredSignature) << written;
}

TEST_P(ProcessContract, ThisProgramIsTheCurrentProcessAndRuns) {
  const KTProcessPointer current = world->processes().currentProcess();
  ASSERT_NE(current, nullptr);
  EXPECT_TRUE(current->isStillRunning());
  EXPECT_NE(current->name(), std::nullopt);
  EXPECT_EQ(world->processes().processWithPID(current->unixPID()), current);
}

TEST_P(ProcessContract, AnEndedApplicationIsNeitherListedNorFound) {
  const std::int32_t pid = world->start({"Editor", "EDIT"});
  const KTProcessPointer process = listed(pid);
  ASSERT_NE(process, nullptr);
  const ProcessSerialNumber number = process->serialNumber();
  world->end(pid);
  EXPECT_EQ(listed(pid), nullptr);
  EXPECT_FALSE(process->isStillRunning());
  EXPECT_EQ(process->unixPID(), 0);
  EXPECT_EQ(world->source().information(number), std::nullopt);
  EXPECT_EQ(world->source().bundleLocation(number), std::nullopt);
  EXPECT_TRUE(world->source().sameProcess(number, number));
  EXPECT_TRUE(world->settles([&] { return world->changes.size() >= 2; }));
  EXPECT_EQ(world->processes().cachedProcessWithSerialNumber(number), nullptr);
}

TEST_P(ProcessContract, ManyAreAskedAboutAtOnceAsEachAlone) {
  std::vector<ProcessSerialNumber> numbers;
  std::vector<std::int32_t> pids;
  for (const char* const name : {"Editor", "Mail", "Player"}) {
    pids.push_back(world->start({name}));
    numbers.push_back(world->source().processForPID(pids.back()).value());
  }
  numbers.push_back({1, 999'999'999});
  numbers.push_back({numbers[0].high + 1, numbers[0].low});
  EXPECT_EQ(world->source().areRunning(numbers), (std::vector<bool>{true, true, true, false, false}));
  const auto endsBefore = world->source().endsSeen();
  world->end(pids[1]);
  ASSERT_TRUE(world->settles([&] { return !world->source().pid(numbers[1]); }));
  EXPECT_EQ(world->source().areRunning(numbers), (std::vector<bool>{true, false, true, false, false}));
  EXPECT_EQ(world->source().areRunning({}), std::vector<bool>{});
  if (endsBefore) {
    EXPECT_EQ(world->source().endsSeen(), *endsBefore + 1);
  }
}

TEST_P(ProcessContract, NobodyIsFoundUnderAProcessIdThatNobodyHas) {
  for (const std::int32_t pid : {0, 1, -1, 2'000'000'000}) {
    EXPECT_EQ(world->source().processForPID(pid), std::nullopt) << pid;
    EXPECT_EQ(world->control().runningApplication({1, static_cast<std::uint32_t>(pid)}), nullptr) << pid;
    EXPECT_EQ(world->processes().processWithPID(pid), nullptr) << pid;
  }
}

TEST_P(ProcessContractWithWindows, LaunchFrontSwitchAndEndArePostedInOrder) {
  const auto count = [&](const char* change) {
    return std::count(world->changes.begin(), world->changes.end(), change);
  };
  const std::int32_t first = world->start({"Editor", "EDIT"});
  world->processes().processWithPID(first)->setFrontProcess();
  ASSERT_TRUE(world->settles([&] { return count("front") == 1; }));
  const std::int32_t second = world->start({"Mail", "MAIL"});
  world->processes().processWithPID(second)->setFrontProcess();
  ASSERT_TRUE(world->settles([&] { return count("front") == 2; }));
  world->end(second);
  ASSERT_TRUE(world->settles([&] { return count("ended") == 1; }));
  Strings seen = world->changes;
  seen.resize(5);
  EXPECT_EQ(seen, (Strings{"started", "front", "started", "front", "ended"}));
  EXPECT_EQ(world->processes().applicationLaunchEndCount(), 3u);
}

TEST_P(ProcessContractWithoutWindows, LaunchAndEndArePostedAllTheSame) {
  const std::int32_t first = world->start({"Editor", "EDIT"});
  world->processes().processWithPID(first)->setFrontProcess();
  const std::int32_t second = world->start({"Mail", "MAIL"});
  world->end(second);
  ASSERT_TRUE(world->settles([&] { return world->changes.size() == 3; }));
  EXPECT_EQ(world->changes, (Strings{"started", "started", "ended"})) << "and nobody comes to the front";
  EXPECT_EQ(world->processes().applicationLaunchEndCount(), 3u);
}

TEST_P(ProcessContractWithoutWindows, NobodyIsKnownToBeInFrontOrHidden) {
  const KTProcessPointer editor = listed(world->start({"Editor", "EDIT"}));
  ASSERT_NE(editor, nullptr);
  editor->setFrontProcess();
  editor->setHidden(true);
  editor->temporarilySwitchOut();
  EXPECT_EQ(world->processes().frontProcess(), nullptr);
  EXPECT_FALSE(editor->isFrontProcess());
  EXPECT_EQ(editor->isHidden(), std::nullopt);
  EXPECT_TRUE(editor->isStillRunning());
}

TEST_P(ProcessContractWithWindows, TheActivatedApplicationIsInFront) {
  const std::int32_t editor = world->start({"Editor", "EDIT"});
  const std::int32_t mail = world->start({"Mail", "MAIL"});
  for (const std::int32_t pid : {editor, mail, editor}) {
    const KTProcessPointer process = world->processes().processWithPID(pid);
    process->setFrontProcessFrontWindowOnly();
    EXPECT_TRUE(world->settles([&] { return process->isFrontProcess(); })) << pid;
  }
}

TEST_P(ProcessContractWithWindows, SwitchedOutForAMomentAnApplicationIsInFrontAgain) {
  const KTProcessPointer editor = listed(world->start({"Editor", "EDIT"}));
  const KTProcessPointer mail = listed(world->start({"Mail", "MAIL"}));
  for (const KTProcessPointer& process : {editor, mail, mail}) {
    process->temporarilySwitchOut();
    EXPECT_TRUE(world->settles([&] { return process->isFrontProcess(); }));
  }
  EXPECT_TRUE(editor->isStillRunning());
  EXPECT_TRUE(world->logLines().empty());
}

TEST_P(ProcessContract, AnApplicationThatFollowsEndsOnThePoliteRequest) {
  const KTProcessPointer process = listed(world->start({"Editor", "EDIT"}));
  ASSERT_NE(process, nullptr);
  EXPECT_TRUE(process->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_FALSE(process->isStillRunning());
  ASSERT_EQ(world->logLines().size(), 1u);
  EXPECT_TRUE(saysItQuit(world->logLines()[0], "Editor")) << world->logLines()[0];
  EXPECT_TRUE(world->settles([&] { return !world->changes.empty() && world->changes.back() == "ended"; }));
}

TEST_P(ProcessContract, AnApplicationThatDoesNotIsEndedByForceAfterTheTimeout) {
  const KTProcessPointer process =
      listed(world->start({.name = "Editor", .code = "EDIT", .ignoresRequests = true}));
  ASSERT_NE(process, nullptr);
  EXPECT_TRUE(process->quitRunningApplicationWithTimeout(0.3F));
  EXPECT_FALSE(process->isStillRunning());
  ASSERT_EQ(world->logLines().size(), 1u);
  EXPECT_TRUE(saysItWasForced(world->logLines()[0], "Editor")) << world->logLines()[0];
}

TEST_P(ProcessContract, AnApplicationThatIsGoneRefusesRequestsAndSaysSo) {
  const std::int32_t pid = world->start({"Editor", "EDIT"});
  const auto application = world->control().runningApplication(listed(pid)->serialNumber());
  ASSERT_NE(application, nullptr);
  EXPECT_FALSE(application->isTerminated());
  world->end(pid);
  EXPECT_TRUE(application->isTerminated());
  EXPECT_FALSE(application->terminate());
  EXPECT_FALSE(application->forceTerminate());
}

TEST_P(ProcessContract, QuitOfAProcessThatIsGoneIsLogged) {
  const std::int32_t pid = world->start({"Editor", "EDIT"});
  const KTProcessPointer process = listed(pid);
  ASSERT_NE(process, nullptr);
  EXPECT_EQ(process->name(), Text("Editor"));
  world->end(pid);
  EXPECT_FALSE(process->quitRunningApplicationWithTimeout(1.0F));
  EXPECT_EQ(world->logLines(), Strings{"cannot quit Editor: no pid"});
}

TEST_P(ProcessContractWithWindows, AProgramIsHiddenUntilItIsShown) {
  const std::int32_t pid = world->start({"Editor", "EDIT"});
  const KTProcessPointer process = listed(pid);
  EXPECT_TRUE(world->settles([&] { return process->isHidden() == std::optional(false); }));
  process->setHidden(true);
  EXPECT_TRUE(world->settles([&] { return process->isHidden() == world->hidesWindows(); }));
  process->setHidden(false);
  EXPECT_TRUE(world->settles([&] { return process->isHidden() == std::optional(false); }));
  world->end(pid);
  EXPECT_EQ(process->isHidden(), std::nullopt);
}

TEST_P(ProcessContractWithWindows, ActingOnWhatIsGoneDoesNothing) {
  const KTProcessPointer mail = listed(world->start({"Mail", "MAIL"}));
  const std::int32_t pid = world->start({"Editor", "EDIT"});
  const KTProcessPointer process = listed(pid);
  mail->setFrontProcess();
  ASSERT_TRUE(world->settles([&] { return mail->isFrontProcess(); }));
  world->end(pid);
  process->setFrontProcess();
  process->setHidden(true);
  process->wakeUp();
  EXPECT_FALSE(process->isFrontProcess());
  EXPECT_TRUE(mail->isFrontProcess());
  EXPECT_EQ(world->logLines(), Strings{});
}

}  // namespace
}  // namespace halvorn
