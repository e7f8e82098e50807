// Whose the windows of a compositor are, and what is left when it does not tell.
#include <algorithm>
#include <filesystem>

#include "tests/processes/adapter/LiveFixture.h"

namespace halvorn {
namespace {

class WaylandFixture : public LiveFixture {
 protected:
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

class RealToplevels : public WaylandFixture {
 protected:
  void SetUp() override { startDesktopAndWatch({.bus = false, .compositor = Compositor::Sway}); }
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

class RealGuests : public RealToplevels {
 protected:
  void SetUp() override {
    startDesktopAndWatch({.bus = false, .compositor = Compositor::Sway, .xClients = true});
  }
};

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

// Of those that tell of windows.
class EachCompositor : public WaylandFixture, public testing::WithParamInterface<Compositor> {
 protected:
  void SetUp() override { startDesktopAndWatch({.bus = false, .compositor = GetParam()}); }
};
std::string nameOf(const testing::TestParamInfo<Compositor>& parameters) {
  return parameters.param == Compositor::Sway ? "Sway" : "KWin";
}
INSTANTIATE_TEST_SUITE_P(Wayland, EachCompositor, testing::Values(Compositor::Sway, Compositor::KWin),
                         nameOf);

TEST_P(EachCompositor, WithADesktopThatTellsNothingWakesTheProgramUp) {
  ChildProcess& child = startShown("Editor", "EDIT");
  listen();
  ASSERT_TRUE(live->settles([&] { return owns(child); }));
  live->loop.runFor(0.5);
  const auto before = live->loop.rounds();
  live->loop.runFor(2.5);
  EXPECT_EQ(live->loop.rounds(), before);
}

TEST_P(EachCompositor, ABurstOfLaunchesAndEndsLosesNone) {
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

TEST_P(EachCompositor, AStoppedCompositorMakesThemUnknownUntilItGoesOn) {
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

TEST_P(EachCompositor, ACompositorThatIsKilledLeavesTheModelWorking) {
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

class GuestsOfEachCompositor : public EachCompositor {
 protected:
  void SetUp() override { startDesktopAndWatch({.bus = false, .compositor = GetParam(), .xClients = true}); }
};
INSTANTIATE_TEST_SUITE_P(Wayland, GuestsOfEachCompositor, testing::Values(Compositor::Sway, Compositor::KWin),
                         nameOf);

TEST_P(GuestsOfEachCompositor, StandBesideTheClientsAndTheActiveOneOfBothIsInFront) {
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

class RealKWin : public WaylandFixture {
 protected:
  void SetUp() override { startDesktopAndWatch({.compositor = Compositor::KWin}); }
  // Those that are loaded have an object on the bus, which is called by a number.
  [[nodiscard]] std::size_t scripts() const {
    const std::string objects =
        runCommand({"gdbus", "introspect", "--session", "-d", "org.kde.KWin", "-o", "/", "--recurse"},
                   {.environment = desktop->environment()})
            .output;
    std::size_t count = 0;
    const std::string script = "interface org.kde.kwin.Script {";
    for (std::size_t at = objects.find(script); at != std::string::npos; at = objects.find(script, at + 1))
      ++count;
    return count;
  }
};

TEST_F(RealKWin, WindowsBelongToTheirProcessesWhateverTheyAreCalled) {
  ChildProcess& first = startShown("Editor", "EDIT");
  ChildProcess& second = startShown("Editor", "EDIT", {"--app-id", "org.example.Other"});
  EXPECT_TRUE(owns(first));
  EXPECT_TRUE(owns(second));
  EXPECT_TRUE(live->windows.tellsAllWindows());
  EXPECT_TRUE(live->settles([&] { return process(second)->isFrontProcess(); }));
}

TEST_F(RealKWin, ItsScriptsGoWithWhoeverLoadedThem) {
  ASSERT_EQ(scripts(), 0u);
  ChildProcess& editor = startShown("Editor", "EDIT");
  listen();
  EXPECT_TRUE(owns(editor));
  EXPECT_EQ(scripts(), 2u) << "one for the questions and one for the changes";
  process(editor)->setFrontProcess();
  process(editor)->setHidden(true);
  EXPECT_TRUE(live->settles([&] { return process(editor)->isHidden() == true; }));
  EXPECT_EQ(scripts(), 2u) << "what was done at once is gone at once";
  live = nullptr;
  EXPECT_TRUE(eventually([&] { return scripts() == 0; })) << scripts();
  std::size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(desktop->runtimeFolder()))
    files += entry.path().filename().string().starts_with("halvorn-") ? 1 : 0;
  EXPECT_EQ(files, 0u);
}

// Somebody may run one inside the other, or have the bus of another session.
TEST_F(RealKWin, TheOneOfAnotherDesktopIsNotAsked) {
  ChildProcess& editor = startShown("Editor", "EDIT");
  ASSERT_TRUE(owns(editor));
  Desktop neighbour({.compositor = Compositor::KWin});
  watch({.waylandSocket = desktop->waylandSocket(), .bus = neighbour.busAddress()});
  EXPECT_FALSE(live->windows.tellsActiveWindow());
  EXPECT_FALSE(live->windows.tellsAllWindows());
  EXPECT_TRUE(live->windows.owners().empty());
  EXPECT_TRUE(isListed(editor)) << "it is in a bundle";
}

TEST_F(RealKWin, WhatOthersOnTheBusSayCountsForNothing) {
  ChildProcess& editor = startShown("Editor", "EDIT");
  ASSERT_TRUE(live->settles([&] { return process(editor)->isFrontProcess(); }));
  const std::string names = runCommand({"gdbus", "call", "--session", "-d", "org.freedesktop.DBus", "-o", "/",
                                        "-m", "org.freedesktop.DBus.ListNames"},
                                       {.environment = desktop->environment()})
                                .output;
  int told = 0;
  for (std::size_t at = names.find("':"); at != std::string::npos; at = names.find("':", at + 1)) {
    const std::string name = names.substr(at + 1, names.find('\'', at + 1) - at - 1);
    const auto sent = runCommand({"dbus-send", "--session", "--type=method_call", "--dest=" + name,
                                  "/Windows", "example.halvorn.Windows.Told", "string:{liar} 1 1 0 0 0 liar"},
                                 {.environment = desktop->environment()});
    told += sent.status == 0 ? 1 : 0;
  }
  EXPECT_GE(told, 2) << "us and the compositor";
  EXPECT_TRUE(process(editor)->isFrontProcess());
  EXPECT_TRUE(owns(editor));
}

class SilentDesktop : public WaylandFixture {
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

TEST_F(SilentDesktop, TheLogSaysOnceWhatIsNotToldOf) {
  const auto lines = [this] {
    const auto all = live->log.lines();
    return std::count_if(all.begin(), all.end(), [](const std::string& line) {
      return line.starts_with("This desktop tells nothing of its windows: ");
    });
  };
  EXPECT_EQ(lines(), 0) << "nobody has asked yet";
  EXPECT_FALSE(live->windows.tellsAllWindows());
  EXPECT_FALSE(live->windows.tellsActiveWindow());
  EXPECT_EQ(lines(), 1);
}

TEST_F(RealToplevels, NothingIsWithheldAndTheLogHasNoSuchLine) {
  EXPECT_TRUE(live->windows.tellsAllWindows());
  EXPECT_EQ(live->log.lines(), std::vector<std::string>{});
}

}  // namespace
}  // namespace halvorn
