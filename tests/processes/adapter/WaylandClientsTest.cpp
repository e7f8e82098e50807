// Who is connected to the compositor of this session, with two of them that bear the same name.
#include "Platform/processes/linux/wayland/ClientSockets.h"
#include "tests/processes/adapter/LiveFixture.h"

namespace halvorn {
namespace {

class RealClients : public LiveFixture {
 protected:
  static constexpr DesktopParts kParts{.bus = false, .compositor = Compositor::Sway};
  void SetUp() override {
    startDesktop(kParts);
    if (!desktop) return;
    neighbour = std::make_unique<Desktop>(kParts);
    ASSERT_EQ(desktop->waylandDisplay(), neighbour->waylandDisplay()) << "else this shows nothing";
    watch({.waylandSocket = desktop->waylandSocket()});
  }
  ChildProcess& startThere(const std::string& program, const Strings& habits = {}) {
    Strings arguments = {program};
    arguments.insert(arguments.end(), habits.begin(), habits.end());
    ChildProcess& started = launch(arguments, {.environment = neighbour->environment()});
    EXPECT_EQ(started.readLine(kTestPatience), "ready") << started.output();
    return started;
  }
  Membership membership(const ChildProcess& child) {
    return ClientSockets(desktop->waylandSocket(), live->procFiles).look().of(child.pid());
  }
  std::unique_ptr<Desktop> neighbour;
};

TEST_F(RealClients, AreToldApartByTheSocketAndNotByItsName) {
  ChildProcess& here = startBundle("Editor", "EDIT", {"--windows", "1"});
  ChildProcess& there = startThere(bundleProgram("Editor", "EDIT"), {"--windows", "1"});
  ChildProcess& nowhere = startBundle("Editor", "EDIT");
  EXPECT_EQ(membership(here), Membership::Here);
  EXPECT_EQ(membership(there), Membership::Elsewhere);
  EXPECT_EQ(membership(nowhere), Membership::Untold);
  EXPECT_EQ(ClientSockets("", live->procFiles).look().of(here.pid()), Membership::Untold);
}

TEST_F(RealClients, AWayThroughALinkLeadsToTheSameSocket) {
  const auto link = folder.path() / "run";
  std::filesystem::create_directory_symlink(desktop->runtimeFolder(), link);
  ChildProcess& here =
      launch({bundleProgram("Editor", "EDIT"), "--windows", "1"},
             {.environment = desktop->environmentWith({"XDG_RUNTIME_DIR=" + link.string()})});
  ASSERT_EQ(here.readLine(kTestPatience), "ready");
  EXPECT_EQ(membership(here), Membership::Here);
  EXPECT_TRUE(isListed(here));
}

TEST_F(RealClients, WhatRunsOnTheOtherDesktopIsNeitherListedNorQuit) {
  ChildProcess& here = startBundle("Editor", "EDIT", {"--windows", "1"});
  ChildProcess& there = startThere(bundleProgram("Editor", "EDIT"), {"--windows", "1"});
  ChildProcess& thereWithoutWindow = startThere(bundleProgram("Editor", "EDIT"));
  for (const auto& each : live->processes.allProcesses()) {
    if (each->signature() == fourCharCode("EDIT")) each->quit();
  }
  EXPECT_EQ(here.waitForEnd(5), 0);
  EXPECT_TRUE(there.isRunning());
  EXPECT_TRUE(thereWithoutWindow.isRunning());
  EXPECT_EQ(there.output().find("close"), std::string::npos);
  EXPECT_EQ(there.output().find("term"), std::string::npos);
}

TEST_F(RealClients, AConnectionWeighsMoreThanWhatTheEnvironmentSays) {
  const std::string program = bundleProgram("Editor", "EDIT");
  ChildProcess& outward = start(program, {"--windows", "1", "--socket", neighbour->waylandSocket()});
  ChildProcess& inward = startThere(program, {"--windows", "1", "--socket", desktop->waylandSocket()});
  EXPECT_TRUE(isListed(inward));
  EXPECT_FALSE(isListed(outward));
}

}  // namespace
}  // namespace halvorn
