// halvorn install where only the administrator may write: a real policy daemon, a person without rights, and root.
#include <sys/stat.h>

#include <memory>

#include "tests/maker/adapter/HalvornFixture.h"
#include "tests/support/PolkitWorld.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class AdministratorRoad : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = PolkitWorld::missing()) GTEST_SKIP() << *missing;
    if (fs::exists("/Applications")) GTEST_SKIP() << "this machine has a folder /Applications";
  }
  // The world, and in it what the person needs, where the person can read it.
  void make(const PolkitWorldParts& parts = {}) {
    world_ = std::make_unique<PolkitWorld>(parts);
    fs::copy(KT_BUNDLE_DIR, at("HalvornInstaller.app"), fs::copy_options::recursive);
    for (const char* program : {KT_HALVORN, KT_BINARY_DIR "/tests/kt_polkit_agent"})
      fs::copy_file(program, at(fs::path(program).filename().string()));
    const std::string program =
        putFile(at("program"), "#!/bin/sh\ntouch \"$HOME/launched\"\n", Executable::Yes);
    (void)makeSampleProduct(at("NAS"), {.program = program});
  }
  [[nodiscard]] std::string at(const std::string& name) const { return world_->scratchFolder() + "/" + name; }
  [[nodiscard]] std::string home() const { return world_->homeFolder(); }
  [[nodiscard]] std::vector<std::string> words(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> all = {at("halvorn"),        "--json", "install", "-sourcePath",
                                    at("NAS/Sample.app"), "--yes"};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }
  // As the person, an agent of that mode answering the question.
  struct End {
    std::optional<int> status;
    std::string output;
  };
  [[nodiscard]] End installedWithAgent(const std::string& mode) const {
    std::vector<std::string> waiting = {"sh", "-c", "read -r go; exec \"$@\"", "sh"};
    const auto all = words();
    waiting.insert(waiting.end(), all.begin(), all.end());
    ChildProcess installing(world_->asPerson(waiting), {.environment = world_->personsEnvironment()});
    ChildProcess agent(world_->asPerson({at("kt_polkit_agent"), std::to_string(installing.pid()), mode}),
                       {.environment = world_->personsEnvironment()});
    EXPECT_TRUE(agent.waitForOutput("registered", kTestPatience)) << agent.output();
    installing.writeInput("go\n");
    EXPECT_TRUE(installing.waitForOutput("\"event\": \"ended\"", kTestPatience)) << installing.output();
    const auto status = installing.waitForEnd(kTestPatience);
    return {status, installing.output()};
  }
  [[nodiscard]] CommandResult audited() const {
    return runCommand({at("halvorn"), "audit", at("NAS/Sample.app"), kDestination});
  }

  static constexpr char kDestination[] = "/opt/Sample.app";
  std::unique_ptr<PolkitWorld> world_;
};

TEST_F(AdministratorRoad, TheRightPasswordInstallsAndTheAuditKnowsTheRoad) {
  make();
  const End end = installedWithAgent("right");
  EXPECT_EQ(end.status, 0) << end.output;
  EXPECT_TRUE(has(end.output, "\"outcome\": \"installed\"")) << end.output;
  struct stat facts {};
  ASSERT_EQ(::lstat(kDestination, &facts), 0);
  EXPECT_EQ(facts.st_uid, 0U);
  EXPECT_TRUE(eventually([&] { return fs::exists(home() + "/launched"); }));
  const CommandResult audit = audited();
  EXPECT_EQ(audit.status, 0) << audit.output;
}

TEST_F(AdministratorRoad, ADismissedQuestionHasItsOwnStatus) {
  make();
  const End end = installedWithAgent("cancel");
  EXPECT_EQ(end.status, 8) << end.output;
  EXPECT_TRUE(has(end.output, "\"outcome\": \"canceled\"")) << end.output;
  EXPECT_FALSE(fs::exists(kDestination));
}

TEST_F(AdministratorRoad, RightsThatCannotBeHadSayWhy) {
  make({.rules = PolkitWorld::ruleAnswering("NO")});
  const CommandResult refused =
      runCommand(world_->asPerson(words()), {.environment = world_->personsEnvironment()});
  EXPECT_EQ(refused.status, 7) << refused.output;
  EXPECT_TRUE(has(refused.output, "\"No administrator rights: the policy of this system refuses them\""))
      << refused.output;
  EXPECT_FALSE(fs::exists(kDestination));
}

// The plan knows it, too.
TEST_F(AdministratorRoad, ANameThatTheQuestionWouldShowAsAnotherIsNotAskedFor) {
  make({.rules = PolkitWorld::ruleAnswering("YES")});
  const std::string disguised = at("NAS/Sam\u202Eelp.app");
  fs::rename(at("NAS/Sample.app"), disguised);
  for (const char* verb : {"plan", "install"}) {
    std::vector<std::string> all = {at("halvorn"), "--json", verb, "-sourcePath", disguised};
    if (verb == std::string("install")) all.emplace_back("--yes");
    const CommandResult end =
        runCommand(world_->asPerson(all), {.environment = world_->personsEnvironment()});
    EXPECT_EQ(end.status, 7) << end.output;
    EXPECT_TRUE(has(end.output, "The administrator's tool is not asked for: '" + at("NAS/Sam")))
        << end.output;
  }
  EXPECT_FALSE(fs::exists("/opt/Sam\u202Eelp.app"));
}

TEST_F(AdministratorRoad, WithoutAnAgentThatIsSaid) {
  make();
  const CommandResult none =
      runCommand(world_->asPerson(words()), {.environment = world_->personsEnvironment()});
  EXPECT_EQ(none.status, 7) << none.output;
  EXPECT_TRUE(has(none.output, "\"No administrator rights: no authentication agent runs in this session"))
      << none.output;
}

// What the manual page says of rights: each with an answer as the schema has it.
TEST_F(AdministratorRoad, EachStatusOfRightsIsReached) {
  make({.rules = PolkitWorld::ruleAnswering("AUTH_ADMIN")});
  StatusTable reached;
  const auto note = [&](const std::string& verb, const std::string& schema, int status,
                        const std::string& answers) {
    EXPECT_EQ(problemsInAnswers(answers, schema, at("answers")), "") << answers;
    EXPECT_TRUE(has(answers, "\"status\": " + std::to_string(status))) << answers;
    reached[verb].insert(status);
  };
  const auto asPerson = [&](std::vector<std::string> more) {
    more.insert(more.begin(), {"sh", "-c", "exec \"$@\" 2>/dev/null", "sh", at("halvorn"), "--json"});
    return runCommand(world_->asPerson(more), {.environment = world_->personsEnvironment()});
  };
  const End dismissed = installedWithAgent("cancel");
  EXPECT_EQ(dismissed.status, 8);
  reached["install"].insert(*dismissed.status);
  const CommandResult noAgent = asPerson({"install", "-sourcePath", at("NAS/Sample.app"), "--yes"});
  EXPECT_EQ(noAgent.status, 7);
  note("install", "installEvent", 7, noAgent.output);
  (void)makeSampleProduct("/opt", {});
  const CommandResult kept = asPerson({"remove", kDestination, "--yes"});
  EXPECT_EQ(kept.status, 7);
  note("remove", "remove", 7, kept.output);
  fs::remove_all(kDestination);
  fs::rename(at("NAS/Sample.app"), at("NAS/Sam\u202Eelp.app"));
  const CommandResult planned = asPerson({"plan", "-sourcePath", at("NAS/Sam\u202Eelp.app")});
  EXPECT_EQ(planned.status, 7);
  note("plan", "plan", 7, planned.output);
  EXPECT_EQ(reached, statusesOfRights());
  for (const auto& [verb, statuses] : reached) {
    for (const int status : statuses) EXPECT_TRUE(isDocumented({verb}, status)) << verb << " " << status;
  }
}

// Nobody is asked, the tool does the copy, and nothing is launched as root.
TEST_F(AdministratorRoad, RootTakesTheSameRoadWithoutAQuestion) {
  make({.bus = false});
  const std::string rootsHome = at("root");
  fs::create_directories(rootsHome);
  const std::vector<std::string> environment = {"HOME=" + rootsHome, "PATH=/usr/bin:/bin", "LANG=C.UTF-8"};
  for (const auto& entry : fs::recursive_directory_iterator(at("NAS")))
    ASSERT_EQ(::lchown(entry.path().c_str(), PolkitWorld::personId, PolkitWorld::personId), 0);
  const CommandResult result = runCommand(words(), {.environment = environment});
  EXPECT_EQ(result.status, 0) << result.output;
  EXPECT_TRUE(has(result.output, "\"enforcing authorization\"")) << result.output;
  EXPECT_TRUE(has(result.output, "\"not launched: nobody wants it\"")) << result.output;
  EXPECT_FALSE(fs::exists(rootsHome + "/launched"));
  const CommandResult audit = audited();
  EXPECT_EQ(audit.status, 0) << audit.output;
  EXPECT_TRUE(has(audit.output, "installed with administrator rights")) << audit.output;
}

}  // namespace
}  // namespace halvorn
