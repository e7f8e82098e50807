#include "Sources/ProductQuitter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "tests/fakes/FakeProcesses.h"

namespace halvorn {
namespace {

using Strings = std::vector<std::string>;
using Quitting = FakeApplication::Quitting;

class ProductQuitterTest : public testing::Test {
 protected:
  FakeApplication& start(const char* name, const char (&code)[5], Quitting quitting = Quitting::WhenAsked) {
    return fake.applications.start(
        {.name = name, .signature = fourCharCode(code), .quitting = quitting, .secondsToQuit = 0.5});
  }
  void quitList(std::vector<Text> codes) { arguments.set(KTInstallerKeyQuitCode, std::move(codes)); }
  bool isRunning(const FakeApplication& application) { return fake.applications.isRunning(application); }

  FakeProcesses fake;
  ArgumentDictionary arguments;
  Cancellation cancellation;
  ProductQuitter quitter{fake.processes, arguments, cancellation, fake.clock, fake.log};
};

const MacRomanCodes macRoman;

TEST(SignatureIsInArray, TakesTheFirstEqualCode) {
  const std::vector<Text> codes = {"ABCD", "EDIT"};
  EXPECT_TRUE(signatureIsInArray(fourCharCode("EDIT"), &codes, macRoman));
  EXPECT_TRUE(signatureIsInArray(fourCharCode("ABCD"), &codes, macRoman));
  EXPECT_FALSE(signatureIsInArray(fourCharCode("edit"), &codes, macRoman));
}

TEST(SignatureIsInArray, SaysNoWithoutAListAndForAnEmptyOne) {
  const std::vector<Text> none;
  EXPECT_FALSE(signatureIsInArray(fourCharCode("EDIT"), nullptr, macRoman));
  EXPECT_FALSE(signatureIsInArray(0, nullptr, macRoman));
  EXPECT_FALSE(signatureIsInArray(0, &none, macRoman));
}

TEST(SignatureIsInArray, NoListNamesWhatEveryProgramHasThatDeclaresNoCode) {
  const std::vector<Text> codes = {"????", "EDIT"};
  EXPECT_FALSE(signatureIsInArray(kUndeclaredSignature, &codes, macRoman));
  EXPECT_TRUE(signatureIsInArray(fourCharCode("EDIT"), &codes, macRoman));
}

TEST(SignatureIsInArray, AnEntryThatIsNoCodeMatchesSignatureZero) {
  for (const Text& entry : {Text(""), Text("ABC"), Text("ABCDE"), Text("日本語版"), Text("AB\nD")}) {
    const std::vector<Text> codes = {entry};
    EXPECT_TRUE(signatureIsInArray(0, &codes, macRoman)) << entry.bytes();
    EXPECT_FALSE(signatureIsInArray(fourCharCode("ABCD"), &codes, macRoman)) << entry.bytes();
  }
}

TEST_F(ProductQuitterTest, OnlyWhatIsInTheListIsQuit) {
  const FakeApplication& editor = start("Editor", "EDIT");
  const FakeApplication& bystander = start("Bystander", "BYST");
  quitList({"EDIT", "NONE"});
  quitter.quitProcesses();
  EXPECT_FALSE(isRunning(editor));
  EXPECT_TRUE(isRunning(bystander));
  EXPECT_TRUE(bystander.requests.empty());
  EXPECT_EQ(fake.log.lines().front(), "Quitting 'EDIT': Editor");
}

TEST_F(ProductQuitterTest, ThoseThatWouldBeAskedAreNamedAndNotAsked) {
  quitList({"EDIT", "PLAY"});
  const auto& editor = start("Editor", "EDIT");
  start("Bystander", "OTHR");
  const auto& player = start("Player", "PLAY");
  const auto targets = quitter.targets();
  ASSERT_EQ(targets.size(), 2U);
  EXPECT_EQ(targets[0]->name(), Text("Editor"));
  EXPECT_EQ(targets[1]->name(), Text("Player"));
  EXPECT_TRUE(isRunning(editor) && isRunning(player));
  EXPECT_EQ(fake.log.lines(), Strings{});
}

TEST_F(ProductQuitterTest, TwoCopiesWithOneSignatureAreQuitATenthOfASecondApart) {
  FakeApplication& first = start("Editor", "EDIT");
  FakeApplication& second = start("Editor 2", "EDIT");
  first.secondsToQuit = second.secondsToQuit = 0;
  quitList({"EDIT"});
  quitter.quitProcesses();
  EXPECT_FALSE(isRunning(first));
  EXPECT_FALSE(isRunning(second));
  EXPECT_EQ(fake.log.lines(),
            (Strings{"Quitting 'EDIT': Editor", "quit Editor: terminated after 0.001s (1 attempts)",
                     "Quitting 'EDIT': Editor 2", "quit Editor 2: terminated after 0.001s (1 attempts)"}));
  EXPECT_EQ(fake.clock.slept, (std::vector<double>{0.001, 0.1, 0.001, 0.1}));
}

TEST_F(ProductQuitterTest, OnlyTheFirstThatRemainsIsReported) {
  start("Bystander", "BYST");
  start("Editor", "EDIT");
  start("Editor 2", "EDIT");
  quitList({"EDIT"});
  EXPECT_EQ(quitter.processToQuitStillRunning(), Text("Editor"));
  EXPECT_EQ(fake.log.lines(), Strings{"Still running 'EDIT': Editor"});
}

TEST_F(ProductQuitterTest, NothingLeftIsNotLogged) {
  FakeApplication& editor = start("Editor", "EDIT");
  fake.applications.end(editor);
  quitList({"EDIT"});
  EXPECT_EQ(quitter.processToQuitStillRunning(), std::nullopt);
  EXPECT_TRUE(fake.log.lines().empty());
}

TEST_F(ProductQuitterTest, TheInstallerWithItsOwnSignatureInTheListDoesNotQuitItself) {
  quitList({"InSt"});
  quitter.quitProcesses();
  EXPECT_EQ(quitter.processToQuitStillRunning(), std::nullopt);
  EXPECT_TRUE(fake.processes.currentProcess()->isStillRunning());
  EXPECT_TRUE(fake.log.lines().empty());
}

TEST_F(ProductQuitterTest, WithoutAListNobodyIsAskedAnything) {
  const FakeApplication& editor = start("Editor", "EDIT");
  quitter.quitProcesses();
  EXPECT_EQ(quitter.processToQuitStillRunning(), std::nullopt);
  quitList({});
  quitter.quitProcesses();
  EXPECT_EQ(quitter.processToQuitStillRunning(), std::nullopt);
  EXPECT_TRUE(editor.requests.empty());
  EXPECT_TRUE(fake.log.lines().empty());
}

TEST_F(ProductQuitterTest, AProcessThatRefusesIsNoErrorAndFoundByTheNextLook) {
  start("Editor", "EDIT", Quitting::Never);
  quitList({"EDIT"});
  quitter.quitProcesses();
  EXPECT_EQ(quitter.processToQuitStillRunning(), Text("Editor"));
}

TEST_F(ProductQuitterTest, AWalkSurvivesApplicationsThatComeAndGo) {
  std::vector<FakeApplication*> copies;
  for (int i = 0; i < 3; ++i) copies.push_back(&start("Editor", "EDIT"));
  quitList({"EDIT"});
  fake.clock.onAdvance = [&](double) {
    fake.clock.onAdvance = nullptr;
    fake.applications.launch({.name = "New", .signature = fourCharCode("EDIT")});
    fake.applications.endAndTell(*copies[2]);
  };
  quitter.quitProcesses();
  for (const FakeApplication* copy : copies) EXPECT_FALSE(isRunning(*copy));
  EXPECT_EQ(quitter.processToQuitStillRunning(), Text("New"));
}

TEST_F(ProductQuitterTest, OnceCanceledNobodyElseIsAsked) {
  const FakeApplication& first = start("Editor", "EDIT");
  const FakeApplication& second = start("Editor 2", "EDIT");
  quitList({"EDIT"});
  fake.clock.onAdvance = [&](double seconds) {
    if (seconds > 0.2) cancellation.request();
  };
  quitter.quitProcesses();
  EXPECT_FALSE(first.requests.empty());
  EXPECT_TRUE(second.requests.empty());
  EXPECT_EQ(fake.log.lines().size(), 2u) << "one process was begun with";
  quitter.quitProcesses();
  EXPECT_EQ(fake.log.lines().size(), 2u);
}

// Codes nobody declared, texts that are no codes, and the code that stands for "none declared".
TEST_F(ProductQuitterTest, HostileListsTouchNoApplicationThatHasASignature) {
  std::vector<FakeApplication*> bystanders;
  // As the platform answers for programs that declare nothing: a control character in the code.
  for (const FourCharCode code : {0x01424344u, 0x1F202020u, 0x03000000u, 0x41424344u}) {
    bystanders.push_back(&fake.applications.start({.name = "Bystander", .signature = code}));
  }
  std::vector<std::vector<Text>> lists = {{""},
                                          {"????"},
                                          {"ABC"},
                                          {"", "????", "ABC", "ABCDE"},
                                          {"\x01"
                                           "BCD"}};
  lists.emplace_back();
  for (int i = 0; i < 10'000; ++i) lists.back().push_back(Text("X") + Text(std::to_string(i)));
  for (const auto& list : lists) {
    quitList(list);
    quitter.quitProcesses();
    EXPECT_EQ(quitter.processToQuitStillRunning(), std::nullopt);
  }
  for (const FakeApplication* bystander : bystanders) {
    EXPECT_TRUE(isRunning(*bystander));
    EXPECT_TRUE(bystander->requests.empty());
  }
}

// KEEP: see signatureIsInArray. Only a process that has ended answers so, and the quit finds nobody.
TEST_F(ProductQuitterTest, AnEntryThatIsNoCodeNamesAProcessWithoutInformation) {
  FakeApplication& gone = start("Gone", "GONE");
  gone.informationFails = true;
  quitList({"ABC"});
  quitter.quitProcesses();
  EXPECT_EQ(fake.log.lines().front(), "Quitting '': (null)");
}

}  // namespace
}  // namespace halvorn
