// What a process says of itself.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "KTStuff/KTClasses/KTProcess.h"
#include "tests/fakes/ChangedServices.h"
#include "tests/fakes/FakeProcesses.h"

namespace halvorn {
namespace {

using Strings = std::vector<std::string>;

class KTProcessAttributes : public testing::Test {
 protected:
  KTProcessPointer start(FakeApplication application) {
    started = &fake.applications.start(std::move(application));
    return fake.processes.processWithSerialNumber(started->number);
  }
  // A process with a bundle of that information dictionary.
  KTProcessPointer startBundle(const PropertyDictionary& info) {
    fake.files.addFolder(kBundle);
    fake.bundles.setInfo(kBundle, info);
    return start({.name = "Editor", .path = kBundle});
  }
  // A process without a bundle whose file carries the classic version record with these bytes.
  KTProcessPointer startClassic(const std::string& record) {
    fake.files.addFile("/Applications/Classic");
    fake.items.resources[{"/Applications/Classic", fourCharCode("vers"), 1}] = record;
    return start({.name = "Classic", .path = "/Applications/Classic"});
  }
  void end() { fake.applications.end(*started); }

  static constexpr char kBundle[] = "/Applications/Editor.app";
  FakeProcesses fake;
  FakeApplication* started = nullptr;
};

TEST_F(KTProcessAttributes, NamesMadeOfMacRomanBytesAreReadAsSuch) {
  EXPECT_EQ(start({.macRomanName = "\x8A"
                                   "rger \xA5"})
                ->name(),
            Text("ärger •"));
}

TEST_F(KTProcessAttributes, AMacRomanNameEndsAfter255Bytes) {
  EXPECT_EQ(start({.macRomanName = std::string(300, 'x')})->name(), Text(std::string(255, 'x')));
}

TEST_F(KTProcessAttributes, NamesThatAreTextsComeUnchanged) {
  const std::string odd = "a b\n(c) \xFF\xE6\x97\xA5";
  EXPECT_EQ(start({.name = odd})->name()->bytes(), odd);
}

TEST_F(KTProcessAttributes, NameAndSignatureAreReadOnceAndKept) {
  const KTProcessPointer process = start({.name = "Editor", .signature = fourCharCode("EDIT")});
  EXPECT_TRUE(process->getProcessInfo());
  started->name = "Renamed";
  started->signature = fourCharCode("XXXX");
  EXPECT_EQ(process->name(), Text("Editor"));
  EXPECT_EQ(process->signature(), fourCharCode("EDIT"));
  end();
  EXPECT_TRUE(process->getProcessInfo());
  EXPECT_EQ(process->signatureString(), Text("EDIT"));
}

TEST_F(KTProcessAttributes, AnEndedProcessAnswersEmptyValuesEverywhere) {
  const KTProcessPointer process = start({.name = "Editor", .path = kBundle});
  end();
  EXPECT_FALSE(process->getProcessInfo());
  EXPECT_EQ(process->name(), std::nullopt);
  EXPECT_EQ(process->displayName(), std::nullopt);
  EXPECT_EQ(process->signature(), 0u);
  EXPECT_EQ(process->signatureString(), Text());
  EXPECT_EQ(process->signatureHexString(), Text("00000000"));
  EXPECT_EQ(process->unixPID(), 0);
  EXPECT_EQ(process->infoDictionary(), std::nullopt);
  EXPECT_EQ(process->identifier(), Text());
  EXPECT_EQ(process->path(), std::nullopt);
  EXPECT_EQ(process->bundle(), std::nullopt);
  EXPECT_EQ(process->icon(), nullptr);
  EXPECT_FALSE(process->isStillRunning());
  EXPECT_FALSE(process->isBackgroundOnly());
  EXPECT_FALSE(process->isCocoa());
  EXPECT_EQ(process->version(), Text("1.0"));
  EXPECT_EQ(process->carbonVersion(), std::nullopt);
  EXPECT_EQ(process->cpuTime(), 0.0);
  EXPECT_EQ(process->hashStringSource(), Text("name:"));
  EXPECT_TRUE(fake.log.lines().empty());
}

TEST_F(KTProcessAttributes, AFailureIsNotKeptButAskedAgain) {
  const KTProcessPointer process = start({.name = "Editor"});
  started->informationFails = true;
  EXPECT_EQ(process->name(), std::nullopt);
  EXPECT_EQ(process->path(), std::nullopt);
  EXPECT_EQ(process->displayName(), std::nullopt);
  started->informationFails = false;
  started->path = kBundle;
  EXPECT_EQ(process->name(), Text("Editor"));
  EXPECT_EQ(process->path(), Text(kBundle));
  EXPECT_EQ(process->displayName(), Text("Editor"));
}

TEST_F(KTProcessAttributes, TheDisplayNameFallsBackToTheNameAndIsKept) {
  const KTProcessPointer named = start({.name = "Editor", .displayName = "Bearbeiter"});
  EXPECT_EQ(named->displayName(), Text("Bearbeiter"));
  started->displayName = "Other";
  EXPECT_EQ(named->displayName(), Text("Bearbeiter"));
  EXPECT_EQ(start({.name = "Plain"})->displayName(), Text("Plain"));
}

TEST_F(KTProcessAttributes, TheSignatureAsHexadecimalHasItsMostSignificantByteFirst) {
  EXPECT_EQ(start({.signature = 0x0142E9FF})->signatureHexString(), Text("0142E9FF"));
}

TEST_F(KTProcessAttributes, SerialNumberAndProcessIdAreThoseOfThePlatform) {
  const KTProcessPointer process = start({.pid = 4711});
  EXPECT_EQ(process->serialNumber(), started->number);
  EXPECT_EQ(process->unixPID(), 4711);
  EXPECT_TRUE(process->isStillRunning());
}

TEST_F(KTProcessAttributes, TheInformationDictionaryIsKept) {
  const KTProcessPointer process = start({.identifier = "org.example.editor"});
  EXPECT_EQ(process->identifier(), Text("org.example.editor"));
  started->identifier = "org.example.other";
  EXPECT_EQ(process->identifier(), Text("org.example.editor"));
}

TEST_F(KTProcessAttributes, TheBundleIsThePathWhenAFolderIsThere) {
  const KTProcessPointer process = start({.path = kBundle});
  EXPECT_EQ(process->bundle(), std::nullopt);
  fake.files.addFolder(kBundle);
  EXPECT_EQ(process->bundle(), Text(kBundle));
}

// The desktop's icons, and what was asked of them.
class RecordingImages : public NullImages {
 public:
  struct Icon : Image {};
  ImagePointer iconForFile(const Text& path) override {
    asked.push_back(path.bytes());
    return hasIcons ? std::make_shared<Icon>() : nullptr;
  }
  Strings asked;
  bool hasIcons = true;
};

TEST_F(KTProcessAttributes, TheIconIsThatOfThePathAndIsKept) {
  RecordingImages images;
  KTProcessClass processes(changedServices(fake.processes.services(), {.images = &images}));
  start({.name = "Editor", .path = kBundle});
  const KTProcessPointer process = processes.processWithSerialNumber(started->number);
  images.hasIcons = false;
  EXPECT_EQ(process->icon(), nullptr);
  images.hasIcons = true;
  const ImagePointer icon = process->icon();
  EXPECT_NE(icon, nullptr);
  EXPECT_EQ(process->icon(), icon);
  EXPECT_EQ(images.asked, (Strings{kBundle, kBundle}));
  start({.name = "Nowhere", .path = std::nullopt});
  EXPECT_EQ(processes.processWithSerialNumber(started->number)->icon(), nullptr);
  EXPECT_EQ(images.asked.size(), 2u) << "without a path nothing is asked";
}

TEST_F(KTProcessAttributes, TheFrontProcessIsTheOneThatIsEqualToIt) {
  const KTProcessPointer process = start({});
  EXPECT_FALSE(process->isFrontProcess());
  fake.applications.front = started->number;
  EXPECT_TRUE(process->isFrontProcess());
  EXPECT_TRUE(KTProcess::create(fake.processes, started->number)->isFrontProcess());
}

TEST_F(KTProcessAttributes, BackgroundOnlyIsReadFromEitherKey) {
  const struct {
    PropertyDictionary info;
    bool expected;
    const char* why;
  } rows[] = {
      {{}, false, "neither key"},
      {{{"LSBackgroundOnly", true}}, true, "a true value"},
      {{{"LSBackgroundOnly", "1"}}, true, "text that means true"},
      {{{"LSBackgroundOnly", false}}, false, "a false value"},
      {{{"LSUIElement", 1}}, true, "the other key"},
      {{{"LSBackgroundOnly", false}, {"LSUIElement", "YES"}}, true, "false in the first leaves the second"},
      {{{"LSUIElement", "NO"}}, false, "text that means false"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(start({.info = row.info})->isBackgroundOnly(), row.expected) << row.why;
  }
}

TEST_F(KTProcessAttributes, CocoaIsANativeApplicationPackageThatNamesItsPrincipalClass) {
  const PropertyDictionary cocoa = {{"NSPrincipalClass", "NSApplication"}};
  const struct {
    OptionalText path;
    std::optional<ApplicationItemFlags> flags;
    std::optional<PropertyDictionary> info;
    bool expected;
    const char* why;
  } rows[] = {
      {kBundle, {{true, true}}, cocoa, true, "all of it"},
      {std::nullopt, {{true, true}}, cocoa, false, "no location"},
      {kBundle, std::nullopt, cocoa, false, "no flags"},
      {kBundle, {{true, false}}, cocoa, false, "not native"},
      {kBundle, {{false, true}}, cocoa, false, "no package"},
      {kBundle, {{true, true}}, std::nullopt, false, "no dictionary"},
      {kBundle, {{true, true}}, PropertyDictionary{}, false, "no principal class"},
      {kBundle,
       {{true, true}},
       PropertyDictionary{{"NSPrincipalClass", 7}},
       false,
       "a class that is no text"},
  };
  for (const auto& row : rows) {
    fake.items.items.clear();
    if (row.flags) fake.items.items[kBundle] = *row.flags;
    fake.bundles.bundles[kBundle].info = row.info;
    EXPECT_EQ(start({.path = row.path})->isCocoa(), row.expected) << row.why;
  }
}

TEST_F(KTProcessAttributes, WhetherItIsCocoaIsAskedOnceEitherWay) {
  const KTProcessPointer process = start({.path = kBundle});
  EXPECT_FALSE(process->isCocoa());
  fake.items.items[kBundle] = {true, true};
  fake.bundles.setInfo(kBundle, {{"NSPrincipalClass", "NSApplication"}});
  EXPECT_FALSE(process->isCocoa());
  EXPECT_TRUE(start({.path = kBundle})->isCocoa());
}

TEST_F(KTProcessAttributes, ThePlatformIsCocoaElseJavaByItsIdentifierElseCarbon) {
  fake.items.items[kBundle] = {true, true};
  fake.bundles.setInfo(kBundle, {{"NSPrincipalClass", "NSApplication"}});
  EXPECT_EQ(start({.path = kBundle, .identifier = "org.java.x"})->platform(), Text(KTPlatformCocoa));
  EXPECT_EQ(start({.identifier = "org.javanese"})->platform(), Text(KTPlatformJava));
  EXPECT_EQ(start({.identifier = "org.Java.x"})->platform(), Text(KTPlatformCarbon));
  EXPECT_EQ(start({.identifier = "java"})->platform(), Text(KTPlatformCarbon));
  EXPECT_EQ(Text(KTPlatformCocoa), Text("Cocoa"));
  EXPECT_EQ(Text(KTPlatformJava), Text("Java"));
  EXPECT_EQ(Text(KTPlatformCarbon), Text("Carbon"));
}

TEST_F(KTProcessAttributes, VersionsOfBundles) {
  const struct {
    PropertyDictionary info;
    const char* expected;
    const char* why;
  } rows[] = {
      {{{"CFBundleShortVersionString", "2.1b3"}, {"CFBundleVersion", "417"}}, "2.1b3", "the short version"},
      {{{"CFBundleShortVersionString", "5"}, {"CFBundleVersion", "417"}}, "417", "a short one without a dot"},
      {{{"CFBundleShortVersionString", 5.5}, {"CFBundleVersion", "417"}},
       "417",
       "a short one that is no text"},
      {{{"CFBundleVersion", "417"}}, "417", "the build version alone"},
      {{{"CFBundleShortVersionString", "5"}}, "1.0", "nothing but a short one without a dot"},
      {{{"CFBundleVersion", 417}}, "1.0", "a build version that is no text"},
      {{}, "1.0", "nothing"},
  };
  for (const auto& row : rows) EXPECT_EQ(startBundle(row.info)->version(), Text(row.expected)) << row.why;
}

TEST_F(KTProcessAttributes, ABundleWithoutInformationHasVersionOneAndIsNotAskedForItsClassicRecord) {
  fake.files.addFolder(kBundle);
  fake.items.resources[{kBundle, fourCharCode("vers"), 1}] = std::string("\x00\x80\x20\x03", 4);
  EXPECT_EQ(start({.path = kBundle})->version(), Text("1.0"));
}

TEST_F(KTProcessAttributes, VersionOneIsFinal) {
  const KTProcessPointer process = start({.path = kBundle});
  EXPECT_EQ(process->version(), Text("1.0"));
  fake.files.addFolder(kBundle);
  fake.bundles.setInfo(kBundle, {{"CFBundleShortVersionString", "3.0"}});
  EXPECT_EQ(process->version(), Text("1.0"));
}

TEST_F(KTProcessAttributes, ClassicVersionRecordsAreReadInLittleEndianFieldOrder) {
  const struct {
    std::string record;
    const char* expected;
    const char* why;
  } rows[] = {
      {{"\x00\x80\x50\x02", 4}, "2.5", "a release"},
      {{"\x00\x80\x51\x12", 4}, "12.5.1", "two binary-coded digits of major, a bugfix"},
      {{"\x03\x20\x10\x01", 4}, "1.1d3", "development"},
      {{"\x03\x40\x10\x01", 4}, "1.1a3", "alpha"},
      {{"\x0C\x60\x12\x01", 4}, "1.1.2b12", "beta; the revision is a plain number"},
      {{"\x07\x80\x10\x01", 4}, "1.17", "KEEP: a revision of a release stands without a letter"},
      {{"\x00\x60\x10\x01", 4}, "1.1", "revision 0 hides the stage"},
      {{"\x00\x80\x50\x02\xFF\xFFmore", 10}, "2.5", "only the first four bytes count"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(startClassic(row.record)->carbonVersion(), Text(row.expected)) << row.why;
    EXPECT_EQ(startClassic(row.record)->version(), Text(row.expected)) << row.why;
  }
}

TEST_F(KTProcessAttributes, ATruncatedOrMissingClassicRecordIsNoVersion) {
  EXPECT_EQ(startClassic("abc")->carbonVersion(), std::nullopt);
  EXPECT_EQ(startClassic("abc")->version(), Text("1.0"));
  EXPECT_EQ(start({.path = "/Applications/Plain"})->carbonVersion(), std::nullopt);
  EXPECT_EQ(start({})->carbonVersion(), std::nullopt);
}

TEST_F(KTProcessAttributes, TheMajorVersionIsTheLeadingNumber) {
  EXPECT_EQ(startBundle({{"CFBundleShortVersionString", "12.5b3"}})->majorVersionNumber(), 12);
  EXPECT_EQ(startBundle({{"CFBundleShortVersionString", "x.1"}})->majorVersionNumber(), 0);
}

TEST_F(KTProcessAttributes, VersionsAreComparedNumberByNumber) {
  const struct {
    const char* own;
    const char* given;
    bool expected;
  } rows[] = {
      {"2.0", "2", true},     {"2.1", "2.0.5", true},   {"2.0.5", "2.1", false}, {"2.1", "2.1", true},
      {"2.1", "2.1.0", true}, {"2.1", "2.1.1", false},  {"10.0", "9.9", true},   {"1.0", "", true},
      {"1.2b3", "1.2", true}, {"1.2b3", "1.2b9", true}, {"0.9", "1", false},     {"2.x", "2.0", true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(startBundle({{"CFBundleShortVersionString", row.own}})->isAtLeastVersion(row.given),
              row.expected)
        << row.own << " at least " << row.given;
  }
}

TEST_F(KTProcessAttributes, TheLaunchDateIsTheStartTimeOfTheProcess) {
  const KTProcessPointer process = start({.startTime = Date{1'600'000'000.25}});
  EXPECT_EQ(process->launchDate(), Date{1'600'000'000.25});
  started->startTime = Date{1.0};
  EXPECT_EQ(process->launchDate(), Date{1'600'000'000.25});
}

TEST_F(KTProcessAttributes, ALaunchDateTheKernelDoesNotTellIsTheStartOf1970) {
  const KTProcessPointer process = start({});
  started->startTime = std::nullopt;
  EXPECT_EQ(process->launchDate(), Date{0.0});
}

TEST_F(KTProcessAttributes, TheLaunchDateOfAnEndedProcessIsLoggedOnceAndKeptAsTheTimeOfThatCall) {
  const KTProcessPointer process = start({.name = "Editor"});
  EXPECT_EQ(process->name(), Text("Editor"));
  end();
  const Date now = fake.clock.now();
  EXPECT_EQ(process->launchDate(), now);
  fake.clock.advance(100);
  EXPECT_EQ(process->launchDate(), now);
  EXPECT_EQ(fake.log.lines(), Strings{"*** Cannot get launch date for Editor"});
}

TEST_F(KTProcessAttributes, SecondsRunningCountFromTheLaunchDate) {
  const Date now = fake.clock.now();
  const KTProcessPointer process = start({.startTime = Date{now.secondsSince1970 - 2.5}});
  EXPECT_FLOAT_EQ(process->secondsRunning(), 2.5F);
  fake.clock.advance(10);
  EXPECT_FLOAT_EQ(process->secondsRunning(), 12.5F);
}

TEST_F(KTProcessAttributes, ProcessorTimeIsReadFromTheFixedFileOfTheShellCommand) {
  fake.tasks.programs["/bin/sh"] = {};
  fake.files.addFile("/tmp/proc_cpu_time.txt", "  1:02.50\n");
  EXPECT_EQ(start({.pid = 4711})->cpuTime(), 62.5);
  ASSERT_EQ(fake.tasks.launched.size(), 1u);
  EXPECT_EQ(fake.tasks.launched[0]->arguments,
            (std::vector<Text>{"-c", "ps -o utime= -p 4711 > /tmp/proc_cpu_time.txt"}));
  EXPECT_NE(fake.files.node("/tmp/proc_cpu_time.txt"), nullptr);
}

TEST_F(KTProcessAttributes, ProcessorTimesInTheFile) {
  const struct {
    const char* content;
    double expected;
    const char* why;
  } rows[] = {
      {"0:00.01", 0.01F, "hundredths"},
      {"123:45.67", 123 * 60 + static_cast<double>(45.67F), "hours come as minutes"},
      {"", 0.0, "an empty file: the process was gone"},
      {"62.50", 0.0, "no colon"},
      {"\xFF:10", 0.0, "not UTF-8"},
      {"1:02:03", 62.0, "only the first colon counts"},
  };
  for (const auto& row : rows) {
    fake.files.addFile("/tmp/proc_cpu_time.txt", row.content);
    EXPECT_DOUBLE_EQ(start({})->cpuTime(), row.expected) << row.why;
  }
}

TEST_F(KTProcessAttributes, ProcessorTimeWithoutTheFileIsZeroAndOfAnEndedProcessAsksNothing) {
  EXPECT_EQ(start({})->cpuTime(), 0.0);
  fake.files.addFile("/tmp/proc_cpu_time.txt", "1:00.00");
  fake.tasks.programs["/bin/sh"] = {};
  const KTProcessPointer ended = start({});
  end();
  EXPECT_EQ(ended->cpuTime(), 0.0);
  EXPECT_TRUE(fake.tasks.launched.empty());
}

TEST_F(KTProcessAttributes, TheHashSourceIsTheIdentifierElseTheSignatureElseTheName) {
  EXPECT_EQ(
      start({.name = "N", .signature = fourCharCode("EDIT"), .identifier = "org.x"})->hashStringSource(),
      Text("id:org.x"));
  EXPECT_EQ(start({.name = "N", .signature = fourCharCode("EDIT")})->hashStringSource(), Text("sig:EDIT"));
}

TEST_F(KTProcessAttributes, TheHashSourceOfSignatureQuestionMarksIsTheName) {
  EXPECT_EQ(start({.name = "N", .signature = fourCharCode("????")})->hashStringSource(), Text("name:N"));
}

TEST_F(KTProcessAttributes, TheHashIsTheDigestOfItsSource) {
  fake.digests.known["sig:EDIT"] = {0x00, 0x01, 0x0F, 0xFF};
  EXPECT_EQ(start({.signature = fourCharCode("EDIT")})->hashString(),
            Text("00010fff000000000000000000000000"));
}

TEST_F(KTProcessAttributes, CallersAttachValuesByKey) {
  const KTProcessPointer process = start({});
  EXPECT_FALSE(process->infoForKey("a").has_value());
  process->setInfo(std::string("one"), "a");
  process->setInfo(2, "b");
  process->setInfo(std::string("plain"));
  EXPECT_EQ(std::any_cast<std::string>(process->infoForKey("a")), "one");
  EXPECT_EQ(std::any_cast<int>(process->infoForKey("b")), 2);
  EXPECT_EQ(std::any_cast<std::string>(process->info()), "plain");
  EXPECT_EQ(std::any_cast<std::string>(process->infoForKey("")), "plain");
  process->setInfo(std::any(), "a");
  process->setInfo(std::any(), "never there");
  EXPECT_FALSE(process->infoForKey("a").has_value());
  EXPECT_TRUE(process->infoForKey("b").has_value());
}

}  // namespace
}  // namespace halvorn
