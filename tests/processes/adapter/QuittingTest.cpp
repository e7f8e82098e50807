// Quitting real programs, well and badly behaved.
#include <signal.h>

#include <regex>

#include "tests/fakes/ChangedServices.h"
#include "tests/processes/adapter/LiveFixture.h"
#include "tests/support/QuitLines.h"
#include "tests/support/WaitingWorkers.h"

namespace halvorn {
namespace {

class RealQuitting : public LiveFixture {
 protected:
  void SetUp() override { startDesktopAndWatch(); }
  std::string onlyLogLine() {
    const auto lines = live->log.lines();
    EXPECT_EQ(lines.size(), 1u);
    return lines.empty() ? "" : lines[0];
  }
  static bool matches(const std::string& line, const std::string& pattern) {
    return std::regex_match(line, std::regex(pattern));
  }
  static int occurrences(const std::string& text, const std::string& part) {
    int result = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++result;
    return result;
  }
};

TEST_F(RealQuitting, AProgramThatQuitsAtOnceIsAskedOnce) {
  ChildProcess& child = startBundle("Editor", "EDIT");
  EXPECT_TRUE(process(child)->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_TRUE(saysItQuit(onlyLogLine(), "Editor")) << onlyLogLine();
  EXPECT_EQ(child.waitForEnd(5), 0);
  EXPECT_EQ(occurrences(child.output(), "term"), 1);
}

TEST_F(RealQuitting, WindowsAreClosedAndOneSignalIsSentHoweverOftenItIsAsked) {
  ChildProcess& child =
      startBundle("Editor", "EDIT", {"--windows", "2", "--ignores-close", "--ignores-term"});
  awaitWindows(child, 2);
  const ProcessSerialNumber number = process(child)->serialNumber();
  const auto application = live->control.runningApplication(number);
  const auto again = live->control.runningApplication(number);
  for (int i = 0; i < 50; ++i) {
    EXPECT_TRUE(application->terminate());
    EXPECT_TRUE(again->terminate());
  }
  giveItAMoment(child);
  EXPECT_EQ(occurrences(child.output(), "close"), 2);
  EXPECT_EQ(occurrences(child.output(), "term"), 0) << "a moment to answer";
  EXPECT_TRUE(eventually([&] {
    EXPECT_TRUE(application->terminate());
    EXPECT_TRUE(again->terminate());
    giveItAMoment(child);
    return occurrences(child.output(), "term") > 0;
  }));
  for (int i = 0; i < 50; ++i) EXPECT_TRUE(application->terminate());
  giveItAMoment(child);
  EXPECT_EQ(occurrences(child.output(), "close"), 2);
  EXPECT_EQ(occurrences(child.output(), "term"), 1);
}

TEST_F(RealQuitting, AProgramThatTakesItsTimeIsGivenIt) {
  ChildProcess& child = startBundle("Editor", "EDIT", {"--seconds", "0.6"});
  EXPECT_TRUE(process(child)->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_TRUE(saysItQuit(onlyLogLine(), "Editor")) << onlyLogLine();
  EXPECT_TRUE(matches(onlyLogLine(), R"(.* after [0-3]\.\d{3}s \(\d{2,4} attempts\))")) << onlyLogLine();
  EXPECT_EQ(child.waitForEnd(5), 0);
}

TEST_F(RealQuitting, AProgramThatIgnoresTheSignalIsKilledAfterTheTimeout) {
  ChildProcess& child = startBundle("Editor", "EDIT", {"--ignores-term"});
  const double start = testSeconds();
  EXPECT_TRUE(process(child)->quitRunningApplicationWithTimeout(0.4F));
  EXPECT_GE(testSeconds() - start, 0.4);
  EXPECT_TRUE(saysItWasForced(onlyLogLine(), "Editor")) << onlyLogLine();
  EXPECT_EQ(child.waitForEnd(5), -SIGKILL);
}

TEST_F(RealQuitting, AStoppedProgramIsKilled) {
  ChildProcess& child = startBundle("Editor", "EDIT", {"--stops"});
  EXPECT_TRUE(process(child)->quitRunningApplicationWithTimeout(0.3F));
  EXPECT_TRUE(saysItWasForced(onlyLogLine(), "Editor")) << onlyLogLine();
  EXPECT_EQ(child.waitForEnd(5), -SIGKILL);
}

TEST_F(RealQuitting, AZombieHasEnded) {
  const std::string program = bundleProgram("Editor", "EDIT");
  ChildProcess& child = start(program);
  const KTProcessPointer editor = process(child);
  EXPECT_EQ(editor->name(), Text("Editor"));
  ::kill(child.pid(), SIGKILL);  // this test has not collected it
  EXPECT_TRUE(live->settles([&] { return !editor->isStillRunning(); }));
  EXPECT_FALSE(isListed(child));
  EXPECT_FALSE(editor->quitRunningApplicationWithTimeout(1.0F));
  EXPECT_EQ(onlyLogLine(), "cannot quit Editor: no pid");
}

TEST_F(RealQuitting, AProgramWhoseFirstThreadHasLeftStillRunsAndIsQuit) {
  ChildProcess& child = startBundle("Editor", "EDIT", {"--leader-leaves"});
  const KTProcessPointer editor = process(child);
  child.writeInput("leave\n");
  EXPECT_TRUE(eventually([&] { return live->procFiles.stat(child.pid())->state == 'Z'; }));
  EXPECT_TRUE(editor->isStillRunning());
  EXPECT_TRUE(editor->quitRunningApplicationWithTimeout(4.0F));
  EXPECT_EQ(child.waitForEnd(5), 0);
}

TEST_F(RealQuitting, ACopyThatIsLeftBehindIsAProcessOfItsOwn) {
  ChildProcess& child = startBundle("Editor", "EDIT", {"--forks"});
  EXPECT_TRUE(process(child)->quitRunningApplicationWithTimeout(4.0F));
  ASSERT_TRUE(child.waitForOutput("forked ", kTestPatience));
  const pid_t copy = std::stoi(child.output().substr(child.output().find("forked ") + 7));
  own.add(copy);
  const KTProcessPointer left = live->processes.processWithSignature(fourCharCode("EDIT"));
  ASSERT_NE(left, nullptr);
  EXPECT_EQ(left->unixPID(), copy);
  EXPECT_TRUE(left->quitRunningApplicationWithTimeout(1.0F));
  EXPECT_EQ(live->processes.processWithSignature(fourCharCode("EDIT")), nullptr);
}

TEST_F(RealQuitting, TheWorstCaseTakesTwiceTheTimeout) {
  // An application that takes every request and never ends.
  class Deaf : public RunningApplication {
    bool terminate() override { return true; }
    bool forceTerminate() override { return true; }
    bool isTerminated() override { return false; }
  };
  class DeafControl : public LinuxApplicationControl {
   public:
    using LinuxApplicationControl::LinuxApplicationControl;
    std::unique_ptr<RunningApplication> runningApplication(ProcessSerialNumber) override {
      return std::make_unique<Deaf>();
    }
  } control(live->running, live->windows, live->clock);
  KTProcessClass processes(changedServices(live->processes.services(), {.control = &control}));
  ChildProcess& child = startBundle("Editor", "EDIT");
  const double start = testSeconds();
  EXPECT_FALSE(processes.processWithPID(child.pid())->quitRunningApplicationWithTimeout(0.5F));
  EXPECT_GE(testSeconds() - start, 1.0);
  EXPECT_LT(testSeconds() - start, 8.0) << "less than the usual timeout once";
  EXPECT_EQ(onlyLogLine(), "quitting Editor failed");
}

// An application that ends by itself at the worst moment.
TEST_F(RealQuitting, AnApplicationThatEndsJustBeforeItIsAskedHasStopped) {
  class EndsFirst : public RunningApplication {
   public:
    EndsFirst(std::unique_ptr<RunningApplication> application, ChildProcess& child, bool isPolite)
        : application_(std::move(application)), child_(child), isPolite_(isPolite) {}
    bool terminate() override {
      if (isPolite_) child_.end(SIGKILL);
      return isPolite_ ? application_->terminate() : true;
    }
    bool forceTerminate() override {
      child_.end(SIGKILL);
      return application_->forceTerminate();
    }
    bool isTerminated() override { return application_->isTerminated(); }

   private:
    std::unique_ptr<RunningApplication> application_;
    ChildProcess& child_;
    const bool isPolite_;
  };
  class Control : public LinuxApplicationControl {
   public:
    using LinuxApplicationControl::LinuxApplicationControl;
    std::unique_ptr<RunningApplication> runningApplication(ProcessSerialNumber number) override {
      auto application = LinuxApplicationControl::runningApplication(number);
      return std::make_unique<EndsFirst>(std::move(application), *child, isPolite);
    }
    ChildProcess* child = nullptr;
    bool isPolite = true;
  } control(live->running, live->windows, live->clock);
  KTProcessClass processes(changedServices(live->processes.services(), {.control = &control}));
  control.child = &startBundle("Editor", "EDIT");
  EXPECT_TRUE(processes.processWithPID(control.child->pid())->quitRunningApplicationWithTimeout(4.0F));
  control.child = &startBundle("Mail", "MAIL");
  control.isPolite = false;
  EXPECT_TRUE(processes.processWithPID(control.child->pid())->quitRunningApplicationWithTimeout(0.1F));
  const auto lines = live->log.lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(matches(lines[0], R"(quit Editor: process stopped after 0\.\d{3}s \(1 attempts\))"))
      << lines[0];
  EXPECT_TRUE(matches(lines[1], R"(foce-quit Mail: process stopped after 0\.\d{3}s \(1 attempts\))"))
      << lines[1];
}

TEST_F(RealQuitting, AllWindowsComeForwardOrTheFrontOneAlone) {
  ChildProcess& editor = startBundle("Editor", "EDIT", {"--windows", "2"});
  ChildProcess& mail = startBundle("Mail", "MAIL", {"--windows", "1"});
  live->processes.installNotifications();
  // The processes by their lowest windows.
  const auto settlesTo = [&](const std::vector<pid_t>& owners) {
    return live->settles([&] { return live->windows.owners() == owners; });
  };
  ASSERT_TRUE(settlesTo({editor.pid(), mail.pid()}));
  const KTProcessPointer process = this->process(editor);
  process->setFrontProcessFrontWindowOnly();
  EXPECT_TRUE(live->settles([&] { return process->isFrontProcess(); }));
  EXPECT_TRUE(settlesTo({editor.pid(), mail.pid()})) << "its other window has stayed below";
  this->process(mail)->setFrontProcess();
  EXPECT_TRUE(live->settles([&] { return this->process(mail)->isFrontProcess(); }));
  process->setFrontProcess();
  EXPECT_TRUE(settlesTo({mail.pid(), editor.pid()}));
  EXPECT_TRUE(live->settles([&] { return process->isFrontProcess(); }));
}

// The install worker does this while the main thread only animates.
TEST_F(RealQuitting, QuittingOnAWorkerWhileTheMainThreadGetsTheEvents) {
  std::vector<ChildProcess*> copies;
  for (int i = 0; i < 4; ++i) copies.push_back(&startBundle("Editor" + std::to_string(i), "EDIT"));
  live->processes.installNotifications();
  live->loop.runFor(0.01);
  bool isDone = false;
  {
    WaitingWorkers workers;
    workers.detach([&] {
      for (const auto& candidate : live->processes.allProcesses()) {
        if (candidate->signature() == fourCharCode("EDIT")) candidate->quit();
      }
      // In the loop, which looks at the condition then.
      live->loop.perform([&] { isDone = true; });
    });
    EXPECT_TRUE(live->settles([&] {
      for (const auto& any : live->processes.allProcesses()) std::ignore = any->description();
      return isDone && count("ended") == 4;
    }));
  }
  for (ChildProcess* copy : copies) EXPECT_EQ(copy->waitForEnd(5), 0);
}

TEST_F(RealQuitting, HidingShowingAndWakingReachTheWindows) {
  ChildProcess& child = startBundle("Editor", "EDIT", {"--windows", "1"});
  ASSERT_TRUE(child.waitForOutput("shown", kTestPatience));
  awaitWindows(child, 1);
  const KTProcessPointer editor = process(child);
  editor->setHidden(true);
  EXPECT_TRUE(child.waitForOutput("iconified", kTestPatience));
  editor->setHidden(false);
  EXPECT_TRUE(child.waitForOutput("iconified\nshown", kTestPatience)) << child.output();
  editor->wakeUp();
  EXPECT_TRUE(child.waitForOutput("continued", kTestPatience));
  EXPECT_TRUE(child.waitForOutput("message", kTestPatience));
}

TEST_F(RealQuitting, AStoppedProgramIsWokenUp) {
  ChildProcess& child = startBundle("Editor", "EDIT", {"--stops"});
  const KTProcessPointer editor = process(child);
  EXPECT_TRUE(eventually([&] { return live->procFiles.stat(child.pid())->state == 'T'; }));
  editor->wakeUp();
  EXPECT_TRUE(eventually([&] { return live->procFiles.stat(child.pid())->state == 'S'; }));
}

}  // namespace
}  // namespace halvorn
