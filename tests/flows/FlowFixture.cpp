#include "tests/flows/FlowFixture.h"
#include "tests/support/TestFiles.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string_view>

#include "tests/support/SharedApplications.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

std::string link(const fs::path& path) {
  std::error_code problem;
  const fs::path target = fs::read_symlink(path, problem);
  return problem ? std::string() : target.string();
}

}  // namespace

void FlowFixture::SetUp() {
  if (const auto problem = stayOutOfSharedApplications(KT_BINARY_DIR)) GTEST_SKIP() << *problem;
  bringDesktop();
}

void FlowFixture::bringDesktop() {
  if (const auto missing = Desktop::missing(parts())) GTEST_SKIP() << *missing;
  std::vector<const char*> hands;
  if (parts().compositor == Compositor::None) hands = {"xdotool", "import"};
  if (parts().compositor == Compositor::Sway) hands = {"swaymsg", "wtype", "grim"};
  for (const char* program : hands) {
    if (!programExists(program)) GTEST_SKIP() << program << " is not installed";
  }
  desktop_ = std::make_unique<Desktop>(parts());
  image_ = std::make_unique<TemporaryFolder>();
  fs::create_directories(applications());
  makeSampleProduct(image());
  if (const char* locale = std::getenv("KT_FLOW_LOCALE")) useLocale(locale);
}

void FlowFixture::useLocale(const std::string& name) {
  if (const auto missing = MadeLocale::missing(name)) GTEST_SKIP() << *missing;
  locale_ = std::make_unique<MadeLocale>(name);
  for (const std::string& entry : locale_->environment()) desktop_->setEnvironment(entry);
}

void FlowFixture::TearDown() {
  if (!desktop_) return;
  // What was installed and launched has no starter that would end it.
  static_cast<void>(endProgramsBelow(applications()));
}

std::string FlowFixture::report() const { return contentsOf(reportFile()); }

bool FlowFixture::startedVersion(const std::string& version) const {
  return eventually(
      [&] {
        // The launched product has a clean environment, so it is known by its program.
        if (report().find("started " + version + "\n") != std::string::npos) return true;
        for (const auto& entry : fs::directory_iterator("/proc")) {
          if (link(entry.path() / "exe") == destination() + "/Contents/Linux/Sample") {
            return versionOfBundle(destination()) == version;
          }
        }
        return false;
      },
      20);
}

std::string FlowFixture::startedWith(const std::string& variable) const {
  for (const auto& entry : fs::directory_iterator("/proc")) {
    if (link(entry.path() / "exe") != destination() + "/Contents/Linux/Sample") continue;
    std::istringstream variables(contentsOf((entry.path() / "environ").string()));
    for (std::string each; std::getline(variables, each, '\0');) {
      if (each.starts_with(variable + "=")) return each.substr(variable.size() + 1);
    }
  }
  return {};
}

std::vector<std::string> FlowFixture::installerLog() const {
  return logLines(contentsOf(desktop_->homeFolder() + "/Library/Logs/HalvornInstaller.log"));
}

std::size_t FlowFixture::rawLogLineCount() const {
  const std::string text = contentsOf(desktop_->homeFolder() + "/Library/Logs/HalvornInstaller.log");
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

bool FlowFixture::logHas(const std::string& line) const { return countOf(line) > 0; }

int FlowFixture::countOf(const std::string& line) const {
  const auto lines = installerLog();
  return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

Lines FlowFixture::whole(const Lines& lines) const {
  return withoutPlaces(
      lines, {{builtInstaller(), "<installer>"}, {image(), "<image>"}, {desktop_->homeFolder(), "<home>"}});
}

void FlowFixture::installFromTheReadMe(const std::function<void(InstallerDriver&)>& meanwhile) {
  const fs::path readMe = makeReadMe(image());
  const fs::path guide = makeGuide(image());
  InstallerDriver installer(desktop(),
                            {"-sourcePath", product(), "-readMePath", readMe, "-documentationPath", guide});
  ASSERT_TRUE(installer.click("Continue"));
  ASSERT_TRUE(installer.click("Install"));
  ASSERT_TRUE(installer.waitForText("Sample was successfully installed.", 60));
  EXPECT_TRUE(startedVersion("2.0")) << report();
  EXPECT_EQ(versionOfBundle(destination()), "2.0");
  EXPECT_EQ(wholeLog(), startLog({"-sourcePath", "<image>/Sample.app", "-readMePath", "<image>/Read Me.rtf",
                                  "-documentationPath", "<image>/Guide.html"},
                                 {{"readMePath", "\"<image>/Read Me.rtf\""},
                                  {"documentationPath", "\"<image>/Guide.html\""}}) +
                            linesOfDesktop() + kInstallClicked + installLog());
  meanwhile(installer);
}

namespace {

std::string windowClassIn(const fs::path& entry) {
  constexpr std::string_view kKey = "\nStartupWMClass=";
  const std::string text = contentsOf(entry);
  const std::size_t at = text.find(kKey);
  if (at == std::string::npos) return "";
  const std::size_t start = at + kKey.size();
  return text.substr(start, text.find('\n', start) - start);
}

}  // namespace

std::string FlowFixture::windowClassOfInstallersEntry() {
  return windowClassIn(KT_SOURCE_DIR "/packaging/linux/debian/example.halvorn.installer.desktop");
}

std::string FlowFixture::windowClassOfProductsEntry() const {
  std::error_code problem;
  for (const auto& entry :
       fs::directory_iterator(desktop_->homeFolder() + "/.local/share/applications", problem)) {
    if (entry.path().filename().string().starts_with("halvorn-app-")) return windowClassIn(entry.path());
  }
  return "";
}

std::vector<pid_t> FlowFixture::programsBelow(const fs::path& folder) {
  std::vector<pid_t> found;
  std::error_code problem;
  for (const auto& entry : fs::directory_iterator("/proc", problem)) {
    const std::string program = link(entry.path() / "exe");
    if (program.starts_with(folder.string() + "/")) found.push_back(std::stoi(entry.path().filename()));
  }
  return found;
}

bool FlowFixture::endProgramsBelow(const fs::path& folder) {
  const auto programs = programsBelow(folder);
  for (const pid_t program : programs) ::kill(program, SIGKILL);
  return !programs.empty();
}

bool FlowFixture::sameTree(const fs::path& a, const fs::path& b) {
  return runCommand({"diff", "-r", "--no-dereference", a, b}).status == 0;
}

FlowFixture::Respawner::Respawner(FlowFixture& fixture, const fs::path& program)
    : thread_([this, environment = fixture.desktop().environmentWith(fixture.reportEntry()), program] {
        while (!isOver_) {
          ChildProcess child({program}, {.environment = environment});
          while (!isOver_ && child.isRunning()) pauseBriefly();
        }
      }) {}

FlowFixture::Respawner::~Respawner() {
  isOver_ = true;
  thread_.join();
}

}  // namespace halvorn
