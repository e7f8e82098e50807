// What a screen reader says of a whole installation, in three languages, against transcripts that were read and found
// good. The words for roles ("frame", "push button") are the reader's own.
//
// With KT_STORE_SPOKEN in the environment the transcripts are stored instead.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "tests/flows/FlowFixture.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

constexpr char kVersion[] = "43.";  // of the reader; another one says the same in other words

// No voice is started, each line can be read at once, and keys are not repeated to who presses them.
constexpr char kReaderSettings[] =
    "import orca.debug\n"
    "import orca.speech\n"
    "orca.debug.debugFile.reconfigure(line_buffering=True)\n"
    "orca.speech.init = lambda: None\n"
    "orca.speech.speakKeyEvent = lambda *arguments, **more: None\n";

// The reader takes every other one of the same account for one that was left behind: it sees none.
std::vector<std::string> amongItsOwn(std::vector<std::string> command) {
  std::vector<std::string> words{"unshare", "--pid", "--fork", "--kill-child", "--mount-proc"};
  if (::geteuid() != 0) {
    words.insert(words.begin() + 1, {"--user", "--map-user=" + std::to_string(::geteuid()),
                                     "--map-group=" + std::to_string(::getegid())});
  }
  words.insert(words.end(), command.begin(), command.end());
  return words;
}

bool isStoring() { return std::getenv("KT_STORE_SPOKEN") != nullptr; }

class SpokenFlow : public FlowFixture, public testing::WithParamInterface<std::string> {
 protected:
  void SetUp() override {
    if (!programExists("orca")) GTEST_SKIP() << "orca is not installed";
    const std::string version = runCommand({"orca", "--version"}).output;
    if (!version.starts_with(kVersion)) GTEST_SKIP() << "the transcripts are not of orca " << version;
    const CommandResult alone = runCommand(amongItsOwn({"true"}));
    if (alone.status != 0) GTEST_SKIP() << "no namespace of process ids to be had: " << alone.output;
    FlowFixture::SetUp();
    if (IsSkipped()) return;
    desktop().setEnvironment("GSETTINGS_BACKEND=memory");
    const fs::path settings = fs::path(desktop().homeFolder()) / ".local/share/orca";
    fs::create_directories(settings);
    std::ofstream(settings / "orca-customizations.py") << kReaderSettings;
    reader_ = std::make_unique<ChildProcess>(amongItsOwn({"orca", "--debug-file=" + debugFile()}),
                                             ChildOptions{.environment = desktop().environment()});
    ASSERT_TRUE(eventually([&] { return spoken() == "Screen reader on.\n"; }, 60)) << reader_->output();
    transcript_ = spoken();
    desktop().setEnvironment("LANGUAGE=" + GetParam());
    if (!isStoring()) stored_ = contentsOf(storedFile());
  }
  void TearDown() override {
    if (isStoring() && desktopIsThere()) std::ofstream(storedFile()) << transcript_;
    reader_.reset();
    FlowFixture::TearDown();
  }

  [[nodiscard]] bool desktopIsThere() const { return reader_ != nullptr; }
  [[nodiscard]] std::string debugFile() { return desktop().folder() + "/orca-debug"; }
  [[nodiscard]] static fs::path storedFile() {
    const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
    return KT_SOURCE_DIR "/tests/data/window/spoken/" + test.substr(0, test.find('/')) + "-" + GetParam() +
           ".txt";
  }

  // What comes when it comes: how far the copy is at a moment, and the window of the product that was launched.
  static bool isOfTheMoment(const std::string& said) {
    return said.ends_with(" percent.") || said == "Sample 2.0.";
  }

  // A line for each thing said.
  [[nodiscard]] std::string spoken() {
    constexpr std::string_view kMark = "SPEECH OUTPUT: '";
    const std::string all = contentsOf(debugFile());
    std::string found;
    for (auto at = all.find(kMark); at != std::string::npos; at = all.find(kMark, at)) {
      at += kMark.size();
      const auto end = all.find("{'", at);
      if (end == std::string::npos) break;
      std::string said = all.substr(at, all.rfind('\'', end - 1) - at);
      for (char& character : said) {
        if (character == '\n') character = ' ';
      }
      if (!isOfTheMoment(said)) found += said + "\n";
    }
    return found;
  }

  // Does that, and waits until what is stored of it has been said.
  void say(const std::string& title, const std::function<void()>& deed) {
    const std::size_t before = spoken().size();
    deed();
    transcript_ += "\n" + title + ":\n";
    if (isStoring()) return takeWhatIsSaid(before);
    const auto now = [&] { return transcript_ + spoken().substr(before); };
    const auto nextTitle = stored_.find("\n\n", transcript_.size());
    const std::string expected = nextTitle == std::string::npos ? stored_ : stored_.substr(0, nextTitle + 1);
    EXPECT_TRUE(eventually([&] { return now() == expected; }, kTestPatience)) << now() << "and not\n"
                                                                              << expected;
    transcript_ = expected;
  }

  std::unique_ptr<ChildProcess> reader_;
  std::string transcript_;

 private:
  // Until nothing has been added for a while.
  void takeWhatIsSaid(std::size_t before) {
    constexpr double kQuiet = 3;
    std::string last;
    while (eventually([&] { return spoken() != last; }, kQuiet)) last = spoken();
    transcript_ += last.substr(before);
  }
  std::string stored_;
};

TEST_P(SpokenFlow, AnInstallationIsToldFromTheReadMeToTheEnd) {
  const std::string readMe = makeReadMe(image());
  const std::string guide = makeGuide(image());
  std::unique_ptr<InstallerDriver> installer;
  say("It comes up", [&] {
    installer = std::make_unique<InstallerDriver>(
        desktop(), std::vector<std::string>{"-sourcePath", product(), "-readMePath", readMe,
                                            "-documentationPath", guide, "-productName", "Sample"});
  });
  say("Return", [&] { installer->key("Return"); });
  say("Tab", [&] { installer->key("Tab"); });
  say("Tab again", [&] { installer->key("Tab"); });
  say("Tab once more", [&] { installer->key("Tab"); });
  say("Return on the button that installs", [&] { installer->key("Return"); });
}

TEST_P(SpokenFlow, AnAlertIsTold) {
  fs::remove_all(product());
  makeSampleProduct(image(), {.minSystemVersion = "99.1"});
  std::unique_ptr<InstallerDriver> installer;
  say("It comes up", [&] {
    installer = std::make_unique<InstallerDriver>(
        desktop(), std::vector<std::string>{"-sourcePath", product(), "-productName", "Sample"});
  });
  say("Tab", [&] { installer->key("Tab"); });
}

INSTANTIATE_TEST_SUITE_P(Languages, SpokenFlow, testing::Values("en", "de", "ar"),
                         [](const auto& language) { return language.param; });

}  // namespace
}  // namespace halvorn
