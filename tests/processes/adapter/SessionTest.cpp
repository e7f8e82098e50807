// Who counts as an application, by which name and signature, and who is never touched.
#include <signal.h>
#include <unistd.h>

#include <fstream>

#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "Sources/ProductQuitter.h"
#include "tests/processes/adapter/LiveFixture.h"

namespace halvorn {
namespace {

class RealSession : public LiveFixture {
 protected:
  void SetUp() override { startDesktopAndWatch(); }
  // A program outside any bundle.
  std::string plainProgram(const std::string& name) {
    const auto path = folder.path() / "bin" / name;
    placeZooProgram(path);
    return path.string();
  }
  void quitEverythingOf(const std::vector<Text>& codes) {
    ArgumentDictionary arguments;
    arguments.set(KTInstallerKeyQuitCode, codes);
    const ProductQuitter quitter(live->processes, arguments, kNeverCanceled, live->clock, live->log);
    quitter.quitProcesses();
    EXPECT_EQ(quitter.processToQuitStillRunning(), std::nullopt);
  }
};

TEST_F(RealSession, ProgramsInBundlesAndOwnersOfWindowsAreListedAndNobodyElse) {
  watch({.display = desktop->displayName()}, Table::Whole);
  ChildProcess& inBundle = startBundle("Editor", "EDIT");
  ChildProcess& withWindow = start(plainProgram("windowed"), {"--windows", "1"});
  ChildProcess& neither = start(plainProgram("plain"));
  EXPECT_EQ(process(inBundle)->path(), Text(folder / "Editor.app"));
  EXPECT_EQ(process(withWindow)->path(), Text(folder / "bin/windowed"));
  EXPECT_EQ(process(withWindow)->identifier(), Text());
  EXPECT_FALSE(isListed(neither));
  EXPECT_EQ(live->processes.processWithPID(neither.pid()), nullptr);
}

TEST_F(RealSession, NamesMayHoldAnything) {
  const std::string names[] = {"two words", "line\nfeed", "a) R (b", "\xFF\xE4 bytes"};
  for (const std::string& name : names) {
    ChildProcess& child = start(plainProgram(name), {"--windows", "1"});
    EXPECT_EQ(process(child)->name()->bytes(), name);
    EXPECT_EQ(process(child)->path()->bytes(), folder / "bin/" + name);
    EXPECT_GT(process(child)->launchDate().secondsSince1970, 1.5e9);
  }
}

TEST_F(RealSession, AProgramThatRenamesItselfHasThatNameAndALongOneItsWholeName) {
  ChildProcess& renamed = start(plainProgram("before"), {"--windows", "1", "--rename", "x) y\nz"});
  EXPECT_EQ(process(renamed)->name(), Text("x) y\nz"));
  ChildProcess& longName = start(plainProgram("a-rather-long-name-of-a-program"), {"--windows", "1"});
  EXPECT_EQ(process(longName)->name(), Text("a-rather-long-name-of-a-program"));
}

TEST_F(RealSession, ABundleNamesItsProcessByCFBundleName) {
  const std::string program =
      makeBundle(folder.path(),
                 {.name = "Prog", .info = {{"CFBundleName", "Bearbeiter"}, {"CFBundleSignature", "EDIT"}}});
  EXPECT_EQ(process(start(program, {"--rename", "other"}))->name(), Text("Bearbeiter"));
}

TEST_F(RealSession, TheInnermostBundleCountsAndHelpersShareIt) {
  makeBundle(folder.path(), {.name = "Outer", .info = {{"CFBundleSignature", "OUTR"}}});
  const auto inside = folder.path() / "Outer.app/Contents/Resources";
  const std::string inner = makeBundle(inside, {.name = "Inner", .info = {{"CFBundleSignature", "INNR"}}});
  const auto helper = folder.path() / "Outer.app/Contents/Resources/helper";
  placeZooProgram(helper);
  EXPECT_EQ(process(start(inner))->signature(), fourCharCode("INNR"));
  EXPECT_EQ(process(start(helper.string()))->signature(), fourCharCode("OUTR"));
}

TEST_F(RealSession, FlatBundlesAreBundles) {
  const std::string program =
      makeBundle(folder.path(), {.name = "Flat", .info = {{"CFBundleSignature", "FLAT"}}, .isFlat = true});
  const KTProcessPointer flat = process(start(program));
  EXPECT_EQ(flat->signature(), fourCharCode("FLAT"));
  EXPECT_EQ(flat->path(), Text(folder / "Flat.app"));
}

TEST_F(RealSession, AFolderThatOnlyLooksLikeABundleIsNone) {
  const auto program = folder.path() / "Fake.app/Contents/Linux/Fake";
  placeZooProgram(program);
  EXPECT_FALSE(isListed(start(program.string())));
}

TEST_F(RealSession, TheScriptOfABundleIsItsProgramAndAnEditorThatShowsItIsNot) {
  const std::string script = makeBundle(folder.path(), {.name = "Script",
                                                        .info = {{"CFBundleSignature", "SCRI"}},
                                                        .script = "#!/bin/sh\necho ready\nread line\n"});
  ChildProcess& running = start(script);
  EXPECT_EQ(process(running)->signature(), fourCharCode("SCRI"));
  // A program that was given the script's path, and a shell that reads another one with it as an argument.
  const std::string other = folder / "other.sh";
  std::ofstream(other) << "echo ready\nread line\n";
  ChildProcess& editor = start(plainProgram("editor"), {script});
  ChildProcess& shell = start("/bin/sh", {other, script});
  EXPECT_FALSE(isListed(editor));
  EXPECT_FALSE(isListed(shell));
}

TEST_F(RealSession, ARunningProgramKeepsItsBundleWhenThatIsMovedOrRemoved) {
  const std::string program = bundleProgram("Editor", "EDIT");
  ChildProcess& child = start(program);
  std::filesystem::rename(folder / "Editor.app", folder / "Moved.app");
  EXPECT_EQ(process(child)->path(), Text(folder / "Moved.app"));
  ChildProcess& second = startBundle("Second", "SECO");
  const KTProcessPointer known = process(second);
  std::filesystem::remove_all(folder / "Second.app");
  EXPECT_EQ(known->signature(), fourCharCode("SECO"));
  EXPECT_TRUE(known->isStillRunning());
}

TEST_F(RealSession, AnotherSessionsProgramsAreNotListed) {
  const std::string program = bundleProgram("Editor", "EDIT");
  ChildProcess& elsewhere = launch({program}, {.environment = desktop->environmentWith({"DISPLAY=:4711"})});
  ASSERT_EQ(elsewhere.readLine(kTestPatience), "ready");
  EXPECT_FALSE(isListed(elsewhere));
  EXPECT_EQ(live->processes.processWithSignature(fourCharCode("EDIT")), nullptr);
}

TEST_F(RealSession, AWindowThatClaimsAnotherProcessBelongsToNobody) {
  ChildProcess& victim = start(plainProgram("victim"));
  ChildProcess& liar =
      start(plainProgram("liar"), {"--windows", "1", "--claim-pid", std::to_string(victim.pid())});
  ChildProcess& foreign = start(plainProgram("foreign"), {"--windows", "1", "--claim-machine", "elsewhere"});
  ChildProcess& honest = start(plainProgram("honest"), {"--windows", "1", "--no-pid"});
  EXPECT_NE(process(honest), nullptr);
  EXPECT_FALSE(isListed(victim));
  EXPECT_FALSE(isListed(liar));
  EXPECT_FALSE(isListed(foreign));
}

TEST_F(RealSession, AProgramThatHidesFromOthersIsListedByItsWindow) {
  ChildProcess& hidden = start(plainProgram("hidden"), {"--windows", "1", "--not-dumpable"});
  const KTProcessPointer found = process(hidden);
  EXPECT_EQ(found->name(), Text("hidden"));
  EXPECT_EQ(fourCharCodeFromText(found->signatureString()), 0u);
}

TEST_F(RealSession, NoProcessOfAnotherUserIsEverListed) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs the rights to start a program as another user";
  const std::string program = bundleProgram("Editor", "EDIT");
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  launch({"setpriv", "--reuid=65534", "--clear-groups", "--regid=65534", program});
  ASSERT_EQ(children.back().readLine(kTestPatience), "ready") << children.back().output();
  EXPECT_FALSE(isListed(children.back()));
  EXPECT_EQ(live->processes.processWithPID(children.back().pid()), nullptr);
  const auto stat = live->procFiles.stat(children.back().pid());
  ASSERT_TRUE(stat);
  EXPECT_EQ(live->control.runningApplication({static_cast<std::uint32_t>(stat->startTicks),
                                              static_cast<std::uint32_t>(children.back().pid())}),
            nullptr);
}

TEST_F(RealSession, TwoCopiesWithOneSignatureAreBothQuitAndAHelperWithoutAWindowToo) {
  ChildProcess& first = startBundle("Editor", "EDIT", {"--windows", "1"});
  ChildProcess& second = start(folder / "Editor.app/Contents/Linux/Editor", {"--windows", "1"});
  const auto helperPath = folder.path() / "Editor.app/Contents/Resources/helper";
  placeZooProgram(helperPath);
  ChildProcess& helper = start(helperPath.string());
  quitEverythingOf({"EDIT"});
  for (ChildProcess* child : {&first, &second, &helper}) EXPECT_EQ(child->waitForEnd(5), 0);
}

// Bystanders of every kind, and every kind of list.
TEST_F(RealSession, HostileQuitListsLeaveEveryBystanderAlive) {
  const auto withInfo = [&](const std::string& name, std::map<std::string, std::string> info) {
    return makeBundle(folder.path(), {.name = name, .info = std::move(info)});
  };
  std::vector<ChildProcess*> bystanders = {
      &start(plainProgram("plain"), {"--windows", "1"}),
      &start(plainProgram("ABCD"), {"--windows", "1"}),
      &start(plainProgram("hidden"), {"--windows", "1", "--not-dumpable"}),
      &start(withInfo("None", {})),
      &start(withInfo("Empty", {{"CFBundleSignature", ""}})),
      &start(withInfo("Marks", {{"CFBundleSignature", "????"}})),
      &start(withInfo("Short", {{"CFBundleSignature", "ABC"}})),
      &start(withInfo("Long", {{"CFBundleSignature", "ABCDE"}})),
      &start(withInfo("Foreign", {{"CFBundleSignature", "日本語版"}})),
      &start(withInfo("Other", {{"CFBundleSignature", "OTHR"}, {"CFBundleIdentifier", "ABCD"}})),
      &start("/bin/sh", {"-c", "echo ready; read line", "ABCD"}),
  };
  for (const char* name : {"None", "Marks", "Short", "Foreign"}) {
    // One more with a window, which asks for trouble twice.
    bystanders.push_back(
        &start(folder / (std::string(name) + ".app/Contents/Linux/" + name), {"--windows", "1"}));
  }
  ChildProcess& product = startBundle("Product", "ABCD", {"--windows", "1"});
  EXPECT_GE(live->processes.allProcesses().size(), 14u);

  std::vector<Text> many;
  for (int i = 0; i < 10'000; ++i) many.push_back(Text("x" + std::to_string(i % 997)));
  const std::vector<std::vector<Text>> lists = {{""},
                                                {"????"},
                                                {"ABC"},
                                                {"ABCDE"},
                                                {"日本語版"},
                                                {Text(std::string(4, '\0'))},
                                                {"", "????", "ABC", "ABCDE"},
                                                many,
                                                {"ABCD"}};
  for (const auto& list : lists) quitEverythingOf(list);

  EXPECT_EQ(product.waitForEnd(5), 0);
  for (ChildProcess* bystander : bystanders) {
    EXPECT_TRUE(bystander->isRunning());
    EXPECT_EQ(bystander->output().find("term"), std::string::npos);
    EXPECT_EQ(bystander->output().find("close"), std::string::npos);
  }
}

}  // namespace
}  // namespace halvorn
