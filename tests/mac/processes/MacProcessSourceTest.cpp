// What only the Process Manager has: its constants, its names of bytes, its kernel's start times.
#include "Platform/processes/mac/MacProcessSource.h"

#include "Platform/processes/mac/MacApplicationControl.h"
#include "Platform/processes/mac/MacLaunchContext.h"
#include "tests/mac/MacTest.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class MacProcesses : public MacTest {
 protected:
  static ProcessSerialNumber numberOf(const fakemac::Application& application) {
    return {application.number.high, application.number.low};
  }
  MacProcessSource source;
  MacApplicationControl control;
};

TEST_F(MacProcesses, AreListedInTheSystemsOrderWithThisProgramFirst) {
  const auto& editor = fakemac::start({.name = "Editor"});
  auto& gone = fakemac::start({.name = "Gone"});
  const auto& mail = fakemac::start({.name = "Mail"});
  fakemac::end(gone);
  EXPECT_EQ(source.runningProcesses(),
            (std::vector<ProcessSerialNumber>{*source.currentProcess(), numberOf(editor), numberOf(mail)}));
}

TEST_F(MacProcesses, TheConstantForThisProgramNamesTheSameProcess) {
  constexpr ProcessSerialNumber kThisProgram = {0, 2};
  EXPECT_TRUE(source.sameProcess(kThisProgram, *source.currentProcess()));
  EXPECT_FALSE(source.sameProcess(kThisProgram, numberOf(fakemac::start({.name = "Editor"}))));
  EXPECT_EQ(source.pid(kThisProgram), 100);
}

TEST_F(MacProcesses, NamesAreBytesOfMacRomanWithALengthInFront) {
  const struct {
    std::string given;
    std::string told;
    const char* reason;
  } cases[] = {{"Editor", "Editor", "plain"},
               {"\x8A\x9F", "\x8A\x9F", "two umlauts"},
               {"", "", "nothing"},
               {std::string("a\0b", 3), std::string("a\0b", 3), "a zero byte ends no name"},
               {std::string(255, 'x'), std::string(255, 'x'), "as long as a name may be"},
               {std::string(300, 'x'), std::string(255, 'x'), "longer"}};
  for (const auto& [given, told, reason] : cases) {
    const auto information = source.information(numberOf(fakemac::start({.name = given})));
    ASSERT_TRUE(information) << reason;
    ASSERT_TRUE(std::holds_alternative<MacRomanName>(information->name)) << reason;
    EXPECT_EQ(std::get<MacRomanName>(information->name).bytes, told) << reason;
  }
}

TEST_F(MacProcesses, AProgramThatDeclaresNoCodeHasTheSystemsOwn) {
  EXPECT_EQ(source.information(numberOf(fakemac::start({.name = "Plain"})))->signature, kUndeclaredSignature);
  EXPECT_EQ(
      source.information(numberOf(fakemac::start({.name = "Coded", .signature = fourCharCode("EDIT")})))
          ->signature,
      fourCharCode("EDIT"));
}

TEST_F(MacProcesses, ADisplayNameIsTextAndMayBeMissing) {
  EXPECT_EQ(source.displayName(numberOf(fakemac::start({.name = "E", .displayName = "Éditeur 日本"}))),
            Text("Éditeur 日本"));
  EXPECT_EQ(source.displayName(numberOf(fakemac::start({.name = "E"}))), std::nullopt);
}

TEST_F(MacProcesses, TheInformationDictionaryIsCopiedAndReleased) {
  const auto& editor =
      fakemac::start({.name = "Editor",
                      .information = {{"CFBundleIdentifier", "org.example.Editor"}, {"LSUIElement", "1"}}});
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(source.informationDictionary(numberOf(editor)),
              (PropertyDictionary{{"CFBundleIdentifier", "org.example.Editor"}, {"LSUIElement", "1"}}));
  }
}

TEST_F(MacProcesses, ALocationIsThePathByItsBytes) {
  EXPECT_EQ(source.bundleLocation(numberOf(fakemac::start({.name = "E", .path = "/A/Ü\xFF.app"}))),
            Text("/A/Ü\xFF.app"));
  EXPECT_EQ(source.bundleLocation(numberOf(fakemac::start({.name = "E"}))), std::nullopt);
  const std::string deep = "/" + std::string(20'000, 'd');
  EXPECT_EQ(source.bundleLocation(numberOf(fakemac::start({.name = "E", .path = deep}))), std::nullopt)
      << "a path that is too long is none, not a part of one";
}

TEST_F(MacProcesses, TheStartTimeIsTheKernelsWithFractions) {
  const auto& editor = fakemac::start({.name = "E", .startSeconds = 1'500'000'000.5});
  EXPECT_EQ(source.startTime(numberOf(editor)), Date{1'500'000'000.5});
}

TEST_F(MacProcesses, OfWhatIsGoneNothingIsKnown) {
  auto& editor = fakemac::start({.name = "E", .path = "/E.app", .displayName = "E"});
  const ProcessSerialNumber number = numberOf(editor);
  fakemac::end(editor);
  EXPECT_EQ(source.pid(number), std::nullopt);
  EXPECT_FALSE(source.information(number));
  EXPECT_EQ(source.displayName(number), std::nullopt);
  EXPECT_EQ(source.informationDictionary(number), std::nullopt);
  EXPECT_EQ(source.bundleLocation(number), std::nullopt);
  EXPECT_EQ(source.startTime(number), std::nullopt);
}

TEST_F(MacProcesses, NobodyIsInFrontWhenTheSystemDoesNotTell) {
  EXPECT_EQ(source.frontProcess(), std::nullopt);
  const auto& editor = fakemac::start({.name = "E"});
  control.setFront(numberOf(editor), BringForward::AllWindows);
  EXPECT_EQ(source.frontProcess(), numberOf(editor));
}

TEST_F(MacProcesses, ProcessorTimeIsAskedOfTheSystemsOwnTool) {
  EXPECT_EQ(source.processorTimeCommand(), Text("ps -o utime= -p %1$d > %2$@"));
}

TEST_F(MacProcesses, ControlAsksTheProcessManagerForEachOfTheThings) {
  auto& editor = fakemac::start({.name = "E"});
  control.setFront(numberOf(editor), BringForward::FrontWindowOnly);
  control.setFront(numberOf(editor), BringForward::AllWindows);
  control.setVisible(numberOf(editor), Visible::No);
  EXPECT_EQ(control.isHidden(numberOf(editor)), true);
  control.setVisible(numberOf(editor), Visible::Yes);
  control.wakeUp(numberOf(editor));
  EXPECT_EQ(editor.requests, (std::vector<std::string>{"front window", "front", "hide", "show", "wake"}));
}

TEST_F(MacProcesses, ControlIsAvailableBecauseTheClassIs) { EXPECT_TRUE(control.hasRunningApplications()); }

TEST_F(MacProcesses, ARunningApplicationIsAskedAndForced) {
  auto& editor = fakemac::start({.name = "E", .quitting = fakemac::Application::Quitting::OnlyByForce});
  const auto running = control.runningApplication(numberOf(editor));
  ASSERT_NE(running, nullptr);
  EXPECT_TRUE(running->terminate());
  EXPECT_TRUE(running->terminate()) << "asked as often as the core asks";
  EXPECT_FALSE(running->isTerminated());
  EXPECT_TRUE(running->forceTerminate());
  EXPECT_TRUE(running->isTerminated());
  EXPECT_EQ(editor.requests, (std::vector<std::string>{"terminate", "terminate", "forceTerminate"}));
}

TEST_F(MacProcesses, ARunningApplicationIsHeldAsLongAsItsObject) {
  auto running = control.runningApplication(numberOf(fakemac::start({.name = "E"})));
  EXPECT_EQ(fakemac::state().liveRunningApplications, 1);
  running.reset();
  EXPECT_EQ(fakemac::state().liveRunningApplications, 0);
}

TEST_F(MacProcesses, AnExceptionOfTheSystemIsAnAnswer) {
  const auto& editor = fakemac::start({.name = "E"});
  const auto running = control.runningApplication(numberOf(editor));
  ASSERT_NE(running, nullptr);
  fakemac::state().raisesExceptions = true;
  EXPECT_FALSE(running->terminate());
  EXPECT_FALSE(running->forceTerminate());
  EXPECT_FALSE(running->isTerminated());
  EXPECT_EQ(control.runningApplication(numberOf(editor)), nullptr);
}

TEST_F(MacProcesses, TheLauncherIsTheOneTheRecordNames) {
  const MacLaunchContext context;
  EXPECT_EQ(context.launcherInformation(), std::nullopt);
  const auto& login = fakemac::start({.name = "loginwindow", .information = {{"FileCreator", "lgnw"}}});
  fakemac::state().applications.front().launcher = login.number;
  EXPECT_EQ(context.launcherInformation(), (PropertyDictionary{{"FileCreator", "lgnw"}}));
}

}  // namespace
}  // namespace halvorn
