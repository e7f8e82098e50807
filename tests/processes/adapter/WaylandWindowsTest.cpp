// Whose the windows of a compositor are, and what is left when it does not tell.
#include <algorithm>

#include "tests/processes/adapter/LiveFixture.h"

namespace halvorn {
namespace {

class RealToplevels : public LiveFixture {
 protected:
  void SetUp() override { startDesktopAndWatch({.bus = false, .compositor = Compositor::Sway}); }
  void listen() {
    live->processes.installNotifications();
    live->loop.runFor(0.02);
  }
  bool owns(const ChildProcess& child) {
    const auto owners = live->windows.owners();
    return std::find(owners.begin(), owners.end(), child.pid()) != owners.end();
  }
  ChildProcess& startShown(const std::string& name, const std::string& code, Strings habits = {}) {
    habits.insert(habits.begin(), {"--windows", "1"});
    ChildProcess& child = startBundle(name, code, habits);
    EXPECT_TRUE(child.waitForOutput("shown", kTestPatience)) << child.output();
    return child;
  }
};

TEST_F(RealToplevels, BelongToTheOneClientThatIsCalledLikeThem) {
  ChildProcess& editor = startShown("Editor", "EDIT");
  // By the identifier of its bundle, as many programs are.
  ChildProcess& mail = startShown("Mail", "MAIL", {"--app-id", "org.example.Mail"});
  EXPECT_TRUE(live->settles([&] { return owns(editor) && owns(mail); }));
  EXPECT_TRUE(live->windows.tellsAllWindows());
}

TEST_F(RealToplevels, OfTwoClientsWithOneNameAreNobodys) {
  ChildProcess& first = startShown("Editor", "EDIT");
  ChildProcess& second = startShown("Editor", "EDIT");
  EXPECT_FALSE(owns(first));
  EXPECT_FALSE(owns(second));
  EXPECT_FALSE(live->windows.tellsAllWindows());
  EXPECT_TRUE(isListed(first)) << "they are in a bundle";
  EXPECT_TRUE(isListed(second));
  EXPECT_EQ(live->processes.frontProcess(), nullptr);
  first.end(SIGKILL);
  EXPECT_TRUE(live->settles([&] { return owns(second); }));
  EXPECT_TRUE(live->settles([&] { return process(second)->isFrontProcess(); }));
}

TEST_F(RealToplevels, WithANameThatNoClientHasAreNobodys) {
  ChildProcess& honest = startShown("Editor", "EDIT");
  ASSERT_TRUE(live->settles([&] { return process(honest)->isFrontProcess(); }));
  ChildProcess& victim = startBundle("Victim", "VICT");
  ChildProcess& liar = startShown("Liar", "LIAR", {"--app-id", "Victim"});
  EXPECT_TRUE(live->settles([&] { return live->processes.frontProcess() == nullptr; }));
  EXPECT_FALSE(owns(victim)) << "it is no client";
  EXPECT_FALSE(owns(liar));
  EXPECT_TRUE(owns(honest));
}

TEST_F(RealToplevels, AProgramThatSharesItsConnectionSharesItsWindowsWithNobody) {
  ChildProcess& editor = startShown("Editor", "EDIT", {"--copy-stays"});
  ASSERT_TRUE(editor.waitForOutput("forked ", kTestPatience));
  own.add(std::stoi(editor.output().substr(editor.output().find("forked ") + 7)));
  EXPECT_FALSE(owns(editor));
}

TEST_F(RealToplevels, WithADesktopThatTellsNothingWakesTheProgramUp) {
  ChildProcess& child = startShown("Editor", "EDIT");
  listen();
  ASSERT_TRUE(live->settles([&] { return owns(child); }));
  live->loop.runFor(0.5);
  const auto before = live->loop.rounds();
  live->loop.runFor(2.5);
  EXPECT_EQ(live->loop.rounds(), before);
}

TEST_F(RealToplevels, ABurstOfLaunchesAndEndsLosesNone) {
  listen();
  for (int i = 0; i < 40; ++i) {
    launch({bundleProgram("Editor" + std::to_string(i), "EDIT"), "--windows", "1"});
  }
  EXPECT_TRUE(live->settles([&] { return count("started") >= 40; })) << count("started");
  for (ChildProcess& child : children) child.sendSignal(SIGKILL);
  EXPECT_TRUE(live->settles([&] { return count("ended") >= 40; })) << count("ended");
  EXPECT_EQ(count("started"), 40);
  EXPECT_EQ(count("ended"), 40);
}

TEST_F(RealToplevels, AStoppedCompositorMakesThemUnknownUntilItGoesOn) {
  ChildProcess& child = startShown("Editor", "EDIT");
  ASSERT_TRUE(live->settles([&] { return process(child)->isFrontProcess(); }));
  desktop->compositor()->sendSignal(SIGSTOP);
  double start = testSeconds();
  EXPECT_EQ(live->processes.frontProcess(), nullptr);
  EXPECT_GE(testSeconds() - start, 0.9) << "it is given a second";
  start = testSeconds();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(live->processes.frontProcess(), nullptr);
  EXPECT_FALSE(owns(child));
  EXPECT_TRUE(isListed(child));
  EXPECT_LT(testSeconds() - start, 10.0) << "and that once";
  desktop->compositor()->sendSignal(SIGCONT);
  EXPECT_TRUE(live->settles([&] { return process(child)->isFrontProcess(); }));
}

TEST_F(RealToplevels, ACompositorThatIsKilledLeavesTheModelWorking) {
  ChildProcess& bystander = startBundle("Mail", "MAIL");
  listen();
  desktop->compositor()->end(SIGKILL);
  EXPECT_TRUE(live->settles([&] { return !live->windows.tellsAllWindows(); }));
  EXPECT_EQ(live->processes.frontProcess(), nullptr);
  live->loop.runFor(0.2);
  const auto before = live->loop.rounds();
  live->loop.runFor(0.5);
  EXPECT_LE(live->loop.rounds() - before, 2u) << "the look once a second, and no spinning on what is gone";
  startBundle("Editor", "EDIT");
  EXPECT_TRUE(live->settles([&] { return count("started") == 1; }));
  EXPECT_TRUE(process(bystander)->quitRunningApplicationWithTimeout(4.0F));
}

class RealGuests : public RealToplevels {
 protected:
  void SetUp() override {
    startDesktopAndWatch({.bus = false, .compositor = Compositor::Sway, .xClients = true});
  }
};

TEST_F(RealGuests, StandBesideTheClientsAndTheActiveOneOfBothIsInFront) {
  ChildProcess& client = startShown("Editor", "EDIT");
  ChildProcess& guest = startShown("Mail", "MAIL", {"--x-windows"});
  ASSERT_TRUE(live->settles([&] { return owns(client) && owns(guest); }));
  EXPECT_TRUE(live->settles([&] { return live->windows.tellsAllWindows(); }));
  for (ChildProcess* child : {&client, &guest, &client}) {
    process(*child)->setFrontProcess();
    EXPECT_TRUE(live->settles([&] { return process(*child)->isFrontProcess(); }));
  }
  EXPECT_TRUE(process(guest)->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_EQ(guest.waitForEnd(5), 0);
  EXPECT_EQ(client.output().find("close\n"), std::string::npos);
  EXPECT_TRUE(client.isRunning());
}

TEST_F(RealGuests, WithTheNameOfAClientAreAsLittleAnybodysAsTheClients) {
  ChildProcess& client = startShown("Editor", "EDIT");
  ChildProcess& guest = startShown("Editor", "EDIT", {"--x-windows"});
  EXPECT_TRUE(live->settles([&] { return owns(guest); })) << "the X server knows its own";
  EXPECT_FALSE(owns(client));
  EXPECT_FALSE(live->windows.tellsAllWindows());
}

// It may still name one of its own when a window that it does not know is active.
TEST_F(RealGuests, WhatTheXServerCallsActiveCountsForNothingWhereTheCompositorTells) {
  ChildProcess& guest = startShown("Mail", "MAIL", {"--x-windows"});
  ASSERT_TRUE(live->settles([&] { return process(guest)->isFrontProcess(); }));
  startShown("Nobody", "NOBO", {"--app-id", "nobodys"});
  EXPECT_TRUE(live->settles([&] { return live->processes.frontProcess() == nullptr; }));
}

class SilentDesktop : public RealToplevels {
 protected:
  void SetUp() override { startDesktopAndWatch({.bus = false, .compositor = Compositor::Weston}); }
};

TEST_F(SilentDesktop, LaunchesComeFromALookAtTheTableAndTheFrontIsUnknown) {
  listen();
  ChildProcess& child = startShown("Editor", "EDIT");
  EXPECT_TRUE(live->settles([&] { return count("started") == 1; }));
  EXPECT_FALSE(live->windows.tellsAllWindows());
  EXPECT_EQ(live->processes.frontProcess(), nullptr);
  const KTProcessPointer editor = process(child);
  editor->setFrontProcess();
  editor->setHidden(true);
  EXPECT_TRUE(editor->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_TRUE(live->settles([&] { return count("ended") == 1; }));
  EXPECT_EQ(count("front"), 0);
}

}  // namespace
}  // namespace halvorn
