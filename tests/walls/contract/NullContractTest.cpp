// What every null keeps: it refuses, whatever would let something happen is denied, and nothing waits.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "Platform/bundles/null/NullBundles.h"
#include "Platform/color/null/NullColor.h"
#include "Platform/files/null/NullFiles.h"
#include "Platform/processes/null/NullProcesses.h"
#include "Platform/rights/null/NullRights.h"
#include "Platform/running/null/NullRunning.h"
#include "Platform/session/null/NullSession.h"
#include "Platform/sound/null/NullSound.h"
#include "Platform/text/null/NullText.h"
#include "Platform/window/null/NullWindow.h"

namespace halvorn {
namespace {

// An item that is there, and may be written, for every real adapter on every system of the tests.
const Text here = "/tmp";
constexpr ProcessSerialNumber kSomeone{1, 2};

class NullContract : public testing::Test {
 protected:
  void TearDown() override {
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start_;
    EXPECT_LT(spent.count(), 5.0) << "nothing may wait";
  }

 private:
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

using NullFiles = NullContract;

TEST_F(NullFiles, FileManagerFindsNothingAndChangesNothing) {
  NullFileManager files;
  EXPECT_FALSE(files.fileExists(here));
  EXPECT_FALSE(files.isDirectory(here));
  EXPECT_FALSE(files.isWritable(here));
  EXPECT_FALSE(files.isInside(here, here));
  EXPECT_EQ(files.contentsOfDirectory(here), std::nullopt);
  EXPECT_EQ(files.readFile(here, 10), std::nullopt);
  EXPECT_FALSE(files.opensForReadingAndWriting(here));
  EXPECT_TRUE(files.copyItem(here, "/nonexistent/copy").has_value()) << "a failure, with its reason";
  EXPECT_TRUE(files.removeItem("/nonexistent").has_value());
  EXPECT_FALSE(files.createEmptyFile("/nonexistent/file"));
}

TEST_F(NullFiles, NothingIsOpenedMadeOrTrashed) {
  EXPECT_EQ(NullFileHandles().openForWriting(here), nullptr);
  NullTemporaryFiles temporary;
  EXPECT_EQ(temporary.create(), std::nullopt);
  EXPECT_EQ(temporary.contents(here), std::nullopt);
  temporary.remove("/nonexistent");
  EXPECT_EQ(NullItemSizes().bytesIn(here, kNeverCanceled), std::nullopt);
  EXPECT_EQ(NullItemClaims().claim(here, [] {}), ItemClaims::Claim::Unknown);
  EXPECT_TRUE(NullTrash().recycle(here, {"item"}).has_value())
      << "what is not in the Trash stays where it was";
  NullFileChangeNotices().noteFileSystemChanged(here);
}

TEST_F(NullFiles, SearchPathsKnowTheHomeFolderAlone) {
  const NullSearchPaths paths;
  EXPECT_TRUE(paths.homeFolder().hasPrefix("/"));
  EXPECT_TRUE(paths.localApplicationsFolders().empty());
  EXPECT_TRUE(paths.userApplicationsFolders().empty());
  EXPECT_TRUE(paths.volumeFolders().empty());
  EXPECT_TRUE(paths.soundFolders().empty());
}

using NullBundlesContract = NullContract;

TEST_F(NullBundlesContract, BundlesHaveNothingInThem) {
  const NullBundles bundles;
  EXPECT_TRUE(bundles.mainBundlePath().hasPrefix("/"));
  EXPECT_EQ(bundles.infoDictionary(here), std::nullopt);
  EXPECT_EQ(bundles.pathForResource(here, "name", "type"), std::nullopt);
  EXPECT_TRUE(bundles.resourcePaths(here).empty());
  EXPECT_EQ(bundles.executablePath(here), std::nullopt);
  EXPECT_EQ(bundles.dictionaryAtPath(here), std::nullopt);
}

TEST_F(NullBundlesContract, SettingsAndTranslationsAreMissing) {
  const NullDefaults defaults;
  EXPECT_EQ(defaults.objectForKey("key"), std::nullopt);
  EXPECT_EQ(defaults.objectForKey("key", "com.example.other"), std::nullopt);
  EXPECT_FALSE(defaults.boolForKey("key"));
  const Text key = "Install";
  EXPECT_TRUE(NullLocalizedStrings().localized(key).isSameObject(key));
}

TEST_F(NullBundlesContract, ItemsAreUnknown) {
  const NullItemFacts items;
  EXPECT_EQ(items.flags(here), std::nullopt);
  EXPECT_EQ(items.resource(here, fourCharCode("vers"), 1), std::nullopt);
  EXPECT_EQ(items.aliasTarget(here), std::nullopt);
}

TEST_F(NullBundlesContract, WorkspaceOpensAndRegistersNothing) {
  NullWorkspace workspace;
  EXPECT_FALSE(workspace.openFile(here));
  EXPECT_FALSE(workspace.openUrl("https://www.example.com/"));
  EXPECT_LT(workspace.registerBundle(here), 0);
  EXPECT_FALSE(workspace.hasIcon(here));
  EXPECT_EQ(workspace.displayName("/a/Foo.txt"), Text("Foo.txt"));
  EXPECT_EQ(workspace.loginItems(), std::nullopt);
}

using NullProcesses = NullContract;

TEST_F(NullProcesses, NoProcessIsKnown) {
  NullProcessSource source;
  EXPECT_TRUE(source.runningProcesses().empty());
  EXPECT_EQ(source.processForPID(1), std::nullopt);
  EXPECT_EQ(source.currentProcess(), std::nullopt);
  EXPECT_EQ(source.frontProcess(), std::nullopt);
  EXPECT_TRUE(source.sameProcess(kSomeone, kSomeone));
  EXPECT_FALSE(source.sameProcess(kSomeone, {}));
  EXPECT_EQ(source.pid(kSomeone), std::nullopt);
  EXPECT_FALSE(source.information(kSomeone));
  EXPECT_EQ(source.displayName(kSomeone), std::nullopt);
  EXPECT_FALSE(source.informationDictionary(kSomeone));
  EXPECT_EQ(source.bundleLocation(kSomeone), std::nullopt);
  EXPECT_EQ(source.startTime({}), std::nullopt);
  EXPECT_FALSE(source.processorTimeCommand().isEmpty());
}

TEST_F(NullProcesses, NoApplicationIsEndedOrMoved) {
  NullApplicationControl control;
  EXPECT_FALSE(control.hasRunningApplications());
  EXPECT_EQ(control.runningApplication({}), nullptr);
  control.setFront(kSomeone, BringForward::AllWindows);
  control.setVisible(kSomeone, Visible::No);
  EXPECT_EQ(control.isHidden(kSomeone), std::nullopt);
  control.wakeUp(kSomeone);
}

TEST_F(NullProcesses, NothingIsHeardOfThemAndNothingReachesThem) {
  NullApplicationEvents().installHandler([](int) { FAIL() << "nothing ever happens"; });
  NullAppleEvents events;
  EXPECT_LT(std::get<int>(events.addressOf(kSomeone)), 0);
  class Nobody : public EventAddress {
  } nobody;
  EXPECT_LT(std::get<int>(events.createEvent(kCoreEventClass, kQuitApplicationEvent, nobody)), 0);
  NullAccessibility accessibility;
  EXPECT_EQ(accessibility.createApplicationElement({}), nullptr);
  EXPECT_EQ(accessibility.createObserver({}, nullptr), nullptr);
  EXPECT_FALSE(NullLaunchContext().launcherInformation());
}

using NullRights = NullContract;

TEST_F(NullRights, AdministratorRightsAreRefusedToEverybody) {
  const auto result = NullAuthorizer().requestAdministratorRights(here, {"argument"});
  EXPECT_EQ(result.answer, AuthorizationAnswer::Refused);
  EXPECT_EQ(result.authorization, nullptr);
}

using NullSession = NullContract;

TEST_F(NullSession, DesktopAndSystemTellNothing) {
  NullDesktopFacts desktop;
  EXPECT_EQ(desktop.nanosecondsSinceLastInput(), std::nullopt);
  EXPECT_EQ(desktop.clipboardChangeCount(), std::nullopt);
  EXPECT_FALSE(desktop.installMenuBarHandler([](const MenuBarEvent&) { return EventAnswer::Handled; }));
  EXPECT_EQ(desktop.controlTint(), std::nullopt);
  const NullSystemFacts system;
  EXPECT_EQ(system.majorVersion(), std::nullopt);
  EXPECT_EQ(system.minorVersion(), std::nullopt);
  EXPECT_EQ(system.bugfixVersion(), std::nullopt);
  EXPECT_EQ(system.packedVersion(), std::nullopt);
  EXPECT_EQ(system.frameworkVersion(), 0.0);
  EXPECT_FALSE(system.isDebuggerAttached());
  EXPECT_LT(system.fileSystemOf(here).status, 0);
  EXPECT_TRUE(system.fileSystemOf(here).typeName.isEmpty());
}

using NullSound = NullContract;

TEST_F(NullSound, NoSoundIsMadeAndTheReasonIsTold) {
  NullSounds sounds;
  const Sounds::Result result = sounds.soundWithData("Done.wav", "RIFF");
  EXPECT_EQ(result.sound, nullptr);
  EXPECT_FALSE(result.problem.isEmpty());
  sounds.endAll();
  const NullAudioDevices devices;
  EXPECT_EQ(devices.defaultSystemOutputDevice(), std::nullopt);
  EXPECT_EQ(devices.devices(), std::nullopt);
  EXPECT_EQ(devices.name(1), std::nullopt);
  EXPECT_EQ(devices.manufacturer(1), std::nullopt);
  EXPECT_EQ(devices.uid(1, AudioScope::Output), std::nullopt);
}

using NullColor = NullContract;

TEST_F(NullColor, NoAppearanceAndNoStyleAreInForce) {
  const NullAppearances appearances;
  EXPECT_EQ(appearances.currentAppearance(), nullptr);
  EXPECT_EQ(appearances.effectiveAppearance(), nullptr);
  NullInterfaceStyleSetting style;
  EXPECT_EQ(style.current(), std::nullopt);
  style.installChangeHandler([] { FAIL() << "the style never changes"; });
  NullGraphicsContext context;
  context.setFillColor({});
  context.setStrokeColor({});
}

using NullText = NullContract;

TEST_F(NullText, AsciiIsKnownAndNothingElse) {
  const NullUnicode unicode;
  for (char32_t scalar = 0; scalar < 0x80; ++scalar) {
    const bool isLetter = (scalar >= U'a' && scalar <= U'z') || (scalar >= U'A' && scalar <= U'Z');
    EXPECT_EQ(unicode.isLetter(scalar), isLetter) << static_cast<int>(scalar);
    EXPECT_EQ(unicode.isAlphanumeric(scalar), isLetter || (scalar >= U'0' && scalar <= U'9'));
    EXPECT_EQ(unicode.isControl(scalar), scalar < 0x20 || scalar == 0x7F);
    EXPECT_EQ(unicode.isWhiteSpace(scalar), scalar == U' ' || (scalar >= 9 && scalar <= 13));
  }
  EXPECT_FALSE(unicode.isLetter(U'ä'));
  EXPECT_FALSE(unicode.isUnassigned(0x10FFFF));
  EXPECT_EQ(unicode.caseFolded("Foo-BÄR"), Text("foo-bÄr"));
  EXPECT_EQ(unicode.decomposed("é"), Text("é"));
  EXPECT_EQ(unicode.compareCaseInsensitive("FOO", "foo"), Ordering::Same);
  EXPECT_EQ(unicode.compareCaseInsensitive("bar", "FOO"), Ordering::Ascending);
  EXPECT_EQ(unicode.compareCaseInsensitive("FOO", "bar"), Ordering::Descending);
}

TEST_F(NullText, NothingIsConvertedSearchedReadOrTyped) {
  const NullTextCodecs codecs;
  EXPECT_EQ(codecs.decode("text", TextEncodings::utf8), std::nullopt);
  EXPECT_EQ(codecs.encode("text", TextEncodings::utf8), std::nullopt);
  EXPECT_EQ(codecs.encodingForIanaName("utf-8"), std::nullopt);
  EXPECT_TRUE(codecs.detectEncodings("text").empty());
  const RegexCompilation compilation = NullRegex().compile("a+", 0);
  EXPECT_EQ(compilation.expression, nullptr);
  EXPECT_TRUE(compilation.error);
  class Nobody : public HtmlVisitor {
    void startElement(std::string_view) override { ADD_FAILURE(); }
    void endElement(std::string_view) override { ADD_FAILURE(); }
    void characters(const Text&) override { ADD_FAILURE(); }
  } nobody;
  EXPECT_EQ(NullHtmlText().read("<p>text", nobody), HtmlAnswer::Failed);
  EXPECT_EQ(NullHtmlText().importedText("<p>text"), std::nullopt);
  EXPECT_EQ(NullFourCharCodes().codeOf("ABCD"), 0U);
  EXPECT_EQ(NullFourCharCodes().textOf(fourCharCode("ABCD")), Text());
  EXPECT_EQ(NullDigests().md5("text"), std::nullopt);
  EXPECT_EQ(NullKeyboard().type(), KeyboardTypes::ansi);
  EXPECT_EQ(NullKeyboard().translate(0, 0, 0), std::nullopt);
  EXPECT_EQ(NullLocalizedSizes().partOf(1, 2).whole, Text("2"));
  EXPECT_EQ(NullLocalizedDates().shortDate({}), std::nullopt);
}

using NullRunning = NullContract;

TEST_F(NullRunning, NoProgramIsStartedAndNoStreamMoved) {
  NullTasks tasks;
  const TaskLaunch launch = tasks.launch("/bin/true", {}, here, "/dev/null");
  EXPECT_EQ(launch.task, nullptr);
  EXPECT_FALSE(launch.failure.isEmpty());
  tasks.launchAndForget("/bin/true", {});
  EXPECT_EQ(tasks.standardOutputOf("/bin/true", {}), std::nullopt);
  EXPECT_FALSE(NullStandardStreams().reopen(StandardStreams::Stream::Output, "/dev/null"));
}

TEST_F(NullRunning, TheClockOfTheStandardLibraryGoesOn) {
  StandardClock clock;
  const double start = clock.monotonicSeconds();
  EXPECT_GT(clock.now().secondsSince1970, 1e9);
  clock.sleep(0.02);
  EXPECT_GE(clock.monotonicSeconds() - start, 0.02);
  clock.sleep(0);
  clock.sleep(-1);
}

TEST_F(NullRunning, WorkersRunEachTaskOnAnotherThreadAndAreWaitedFor) {
  StandardWorkers workers;
  std::atomic<int> done = 0;
  std::atomic<bool> isElsewhere = false;
  workers.detach([&, here = std::this_thread::get_id()] {
    isElsewhere = std::this_thread::get_id() != here;
    ++done;
    workers.detach([&] { ++done; });
  });
  workers.finish();
  EXPECT_EQ(done, 2);
  EXPECT_TRUE(isElsewhere);
}

TEST_F(NullRunning, TheLoopRunsWhatWasPostedInOrderAndThenEnds) {
  StandardMainThread loop;
  std::vector<std::string> order;
  const auto noting = [&](const char* word) { return [&order, word] { order.emplace_back(word); }; };
  loop.performWhenIdle(noting("idle 1"));
  loop.performWhenIdle(noting("idle 2"));
  loop.performAfter(0.02, noting("later"));
  loop.performAfter(0.01, noting("soon"));
  loop.perform([&] {
    order.emplace_back("posted 1");
    loop.perform(noting("posted 3"));
  });
  loop.perform(noting("posted 2"));
  EXPECT_TRUE(order.empty()) << "never inside the call";
  loop.run([] { return false; }, 10);
  EXPECT_EQ(order, (std::vector<std::string>{"posted 1", "posted 2", "posted 3", "idle 1", "idle 2", "soon",
                                             "later"}));
  EXPECT_FALSE(loop.hasTasks());
}

TEST_F(NullRunning, TheLoopWaitsForNothingThatComesTooLate) {
  StandardMainThread loop;
  loop.performAfter(1000, [] { ADD_FAILURE() << "nobody waits that long"; });
  loop.run([] { return false; }, 0.05);
  EXPECT_FALSE(loop.hasTasks()) << "it is dropped";
}

TEST_F(NullRunning, TheLoopEndsInTimeWhateverPostsItselfAgain) {
  StandardMainThread loop;
  const std::function<void()> again = [&] { loop.perform(again); };
  loop.perform(again);
  loop.run([] { return false; }, 0.05);
  EXPECT_FALSE(loop.hasTasks());
}

TEST_F(NullRunning, TheLoopEndsWhenItIsOver) {
  StandardMainThread loop;
  int calls = 0;
  for (int i = 0; i < 3; ++i) loop.perform([&] { ++calls; });
  loop.run([&] { return calls == 2; }, 10);
  EXPECT_EQ(calls, 2);
}

TEST_F(NullRunning, TheLogWritesEachLineWhole) {
  testing::internal::CaptureStderr();
  const StandardErrorStreamLog log("Program");
  log("a line with %@", Text("a\nbreak"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Program: a line with a\\nbreak\n");
}

using NullWindowContract = NullContract;

TEST_F(NullWindowContract, AlertsEndAsTheirDefaultButtonSaysAndNeverInsideTheCall) {
  StandardMainThread loop;
  NullAlerts alerts(loop);
  std::vector<int> answers;
  alerts.beginSheet({}, [&](int answer) { answers.push_back(answer); });
  alerts.beginSheet({}, nullptr);
  EXPECT_TRUE(answers.empty());
  loop.run([] { return false; }, 10);
  EXPECT_EQ(answers, std::vector<int>{kAlertFirstButtonReturn});
}

TEST_F(NullWindowContract, TheApplicationCanBeToldToEndAndWaitsForNoWindow) {
  StandardMainThread loop;
  NullApplication application(loop);
  int calls = 0;
  application.performWhenShown([&] { ++calls; });
  EXPECT_EQ(calls, 0) << "never inside the call";
  loop.run([] { return false; }, 10);
  EXPECT_EQ(calls, 1);
  application.setApplicationIcon(nullptr);
  application.beep();
  EXPECT_FALSE(application.currentEventHasOptionKey());
  EXPECT_FALSE(application.isTerminated());
  application.terminate();
  EXPECT_TRUE(application.isTerminated());
}

TEST_F(NullWindowContract, NoPictureIsShownAndNobodyListens) {
  NullImages images;
  EXPECT_EQ(images.imageFromFile(here), nullptr);
  EXPECT_EQ(images.imageNamed("AlertStopIcon"), nullptr);
  EXPECT_EQ(images.iconForFile(here), nullptr);
  NullScreenReader().announce("text");
}

TEST_F(NullWindowContract, ViewsShowNothingAndCannotBePressed) {
  NullInstallerWindow window;
  const InstallerOutlets outlets = window.outlets();
  outlets.introField.setStringValue("text");
  EXPECT_EQ(outlets.introField.stringValue(), Text());
  outlets.introField.setTextColor(nullptr);
  outlets.installButton.setEnabled(Enabled::Yes);
  outlets.installButton.setTitle("Install");
  EXPECT_EQ(outlets.installButton.isEnabled(), Enabled::No);
  EXPECT_EQ(outlets.installButton.title(), Text());
  outlets.tabView.showWithoutTabsAndBorder();
  outlets.tabView.selectItem(1);
  EXPECT_EQ(outlets.tabView.selectedItem(), 0);
  EXPECT_FALSE(outlets.readMeTextView.setDocumentFromFile(here));
  outlets.readMeTextView.setBackgroundColor(nullptr);
  outlets.readMeTextView.setTextColor(nullptr);
  outlets.iconField.setImage(nullptr);
  outlets.progressIndicator.startAnimation();
  outlets.progressIndicator.stopAnimation();
  outlets.window.setTitle("title");
  EXPECT_EQ(outlets.window.title(), Text());
  outlets.window.center();
  outlets.window.makeKeyAndOrderFront();
  outlets.window.orderFrontRegardless();
  outlets.window.makeMain();
  EXPECT_FALSE(outlets.window.isMiniaturizeEnabled());
}

TEST_F(NullWindowContract, ViewsAreHiddenAndHeldByNobody) {
  NullInstallerWindow window;
  View& view = window.outlets().cancelButton;
  view.setHidden(Hidden::No);
  EXPECT_EQ(view.isHidden(), Hidden::Yes);
  view.setAppearance(AppearanceName::DarkAqua);
  EXPECT_EQ(view.appearance(), AppearanceName::Inherited);
  EXPECT_EQ(view.superview(), nullptr);
  view.removeFromSuperviewWithoutNeedingDisplay();
  view.addSubview(view, ViewPosition::Above, nullptr);
  EXPECT_EQ(view.enclosingScrollView(), nullptr);
  EXPECT_EQ(view.visibleRect(), Rect{});
  EXPECT_FALSE(view.scrollRectToVisible({}));
}

}  // namespace
}  // namespace halvorn
