// The colors of an open window on a desktop whose portal changes its color-scheme, read from the X server's
// screen. The pictures stay in screenshots/ of the build folder to be looked at.
#include <QImage>
#include <fstream>
#include <sstream>

#include "tests/support/TestFiles.h"
#include "tests/window/adapter/LiveWindow.h"

namespace halvorn {
namespace {

constexpr QRgb kPaper = qRgb(255, 253, 247);
constexpr QRgb kDarkPaper = qRgb(33, 32, 29);
constexpr QRgb kRed = qRgb(191, 0, 0);
constexpr QRgb kDarkRed = qRgb(255, 51, 0);
constexpr char kReadMe[] = KT_SOURCE_DIR "/README.md";

class ColorsOnADesktop : public LiveWindow {
 protected:
  void SetUp() override {
    for (const char* tool : {"xdotool", "import"}) {
      if (!programExists(tool)) GTEST_SKIP() << tool << " is not installed";
    }
    if (!startDesktop({})) GTEST_SKIP() << reason_;
    portal_ = std::make_unique<ChildProcess>(std::vector<std::string>{KT_PORTAL_PROBE},
                                             ChildOptions{.environment = desktop_->environment()});
    ASSERT_EQ(portal_->readLine(kTestPatience), "ready");
  }
  void setScheme(const std::string& scheme) {
    portal_->writeInput(scheme + "\n");
    ASSERT_EQ(portal_->readLine(kTestPatience), "done");
  }

  QImage screen() {
    const std::string file = desktop_->folder() + "/screen.png";
    run({"import", "-window", "root", "png24:" + file});
    return QImage(QString::fromStdString(file));
  }
  // How many pixels have the color, in the view or, without one, on the whole screen.
  int pixels(QRgb color, const std::string& view = "") {
    QImage image = screen().convertToFormat(QImage::Format_RGB32);
    if (!view.empty()) {
      std::istringstream place(ask("where " + view).substr(3));
      int x = 0, y = 0, width = 0, height = 0;
      place >> x >> y >> width >> height;
      image = image.copy(x, y, width, height);
    }
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == color ? 1 : 0;
    }
    return count;
  }
  // Whether the screen comes to show the one color in the view and none of the other.
  bool comesToShow(QRgb color, QRgb notThat, const std::string& view = "") {
    return eventually([&] { return pixels(color, view) > 0 && pixels(notThat, view) == 0; });
  }
  void keepPicture(const std::string& name) {
    const std::filesystem::path folder = KT_BINARY_DIR "/screenshots";
    std::filesystem::create_directories(folder);
    EXPECT_TRUE(screen().save(QString::fromStdString((folder / ("colour-" + name + ".png")).string())));
  }
  // Both pages show these variants, in a picture each.
  void expectBothPages(QRgb paper, QRgb otherPaper, QRgb red, QRgb otherRed, const std::string& name) {
    tell({std::string("readMe ") + kReadMe});
    EXPECT_TRUE(comesToShow(paper, otherPaper, "readMeTextView")) << name;
    keepPicture(name + "-readme");
    tell({"error missing product signature"});
    EXPECT_TRUE(comesToShow(red, otherRed, "introField")) << name;
    keepPicture(name + "-error");
  }

  std::unique_ptr<ChildProcess> portal_;
};

TEST_F(ColorsOnADesktop, SwitchingTheColorSchemeRepaintsTheOpenWindowInTheOtherVariant) {
  startWindow("desktop");
  const auto pid = probe_->pid();
  expectBothPages(kPaper, kDarkPaper, kRed, kDarkRed, "1-light");
  setScheme("dark");
  EXPECT_TRUE(comesToShow(kDarkRed, kRed, "introField")) << "nothing but the scheme has changed";
  expectBothPages(kDarkPaper, kPaper, kDarkRed, kRed, "2-dark");
  setScheme("light");
  EXPECT_TRUE(comesToShow(kRed, kDarkRed, "introField"));
  EXPECT_EQ(ask("globals"), "globals 0");
  EXPECT_EQ(probe_->pid(), pid);
  EXPECT_EQ(times("ready"), 1) << "it is the same run of the same program";
}

TEST_F(ColorsOnADesktop, AViewForcedToLightStaysLightWhenTheDesktopTurnsDark) {
  startWindow("desktop");
  tell({"aqua tabView"});
  expectBothPages(kPaper, kDarkPaper, kRed, kDarkRed, "forced-before");
  setScheme("dark");
  ASSERT_TRUE(said("dark"));
  expectBothPages(kPaper, kDarkPaper, kRed, kDarkRed, "3-forced-light-in-dark");
  EXPECT_EQ(ask("globals"), "globals 0");
  tell({"inherit tabView"});
  EXPECT_TRUE(comesToShow(kDarkRed, kRed, "introField")) << "the window's appearance is inherited again";
}

TEST_F(ColorsOnADesktop, WithTheGlobalFlagAViewForcedToLightTurnsDarkWithTheDesktop) {
  startWindow("desktop");
  tell({"aqua tabView", "global yes"});
  expectBothPages(kPaper, kDarkPaper, kRed, kDarkRed, "global-before");
  EXPECT_EQ(ask("globals"), "globals 0");
  setScheme("dark");
  EXPECT_TRUE(comesToShow(kDarkRed, kRed, "introField")) << "also without a change of the view's own look";
  expectBothPages(kDarkPaper, kPaper, kDarkRed, kRed, "4-global-flag-in-dark");
  EXPECT_NE(ask("globals"), "globals 0") << "each query is logged";
  setScheme("light");
  EXPECT_TRUE(comesToShow(kRed, kDarkRed, "introField"));
}

// The installer itself.
class InstallerOnADesktop : public ColorsOnADesktop {
 protected:
  void startInstaller(const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {KT_INSTALLER_PROGRAM};
    command.insert(command.end(), arguments.begin(), arguments.end());
    installer_ =
        std::make_unique<ChildProcess>(command, ChildOptions{.environment = desktop_->environment()});
  }
  std::unique_ptr<ChildProcess> installer_;
};

TEST_F(InstallerOnADesktop, ASetUpErrorIsRedInTheVariantOfTheDesktop) {
  const std::string product = desktop_->folder() + "/Nameless.app";
  std::filesystem::create_directories(product + "/Contents");
  setScheme("dark");
  startInstaller({"-sourcePath", product, "-productName", "Nameless"});
  EXPECT_TRUE(comesToShow(kDarkRed, kRed)) << installer_->output();
  keepPicture("installer-error-dark");
  setScheme("light");
  EXPECT_TRUE(comesToShow(kRed, kDarkRed));
  keepPicture("installer-error-light");
}

TEST_F(InstallerOnADesktop, TheReadMeIsOnLightPaperWhateverTheDesktopSays) {
  const std::string product = desktop_->folder() + "/Sample.app";
  std::filesystem::create_directories(product + "/Contents");
  std::ofstream(product + "/Contents/Info.plist")
      << "<?xml version=\"1.0\"?><plist "
         "version=\"1.0\"><dict><key>CFBundleSignature</key><string>SAMP</string>"
         "</dict></plist>";
  startInstaller({"-sourcePath", product, "-productName", "Sample", "-readMePath", kReadMe});
  EXPECT_TRUE(comesToShow(kPaper, kDarkPaper)) << installer_->output();
  setScheme("dark");
  const QRgb darkWindow = qRgb(0x2B, 0x2B, 0x2E);
  EXPECT_TRUE(eventually([&] { return pixels(darkWindow) > 1000; })) << "the rest of the window is dark";
  EXPECT_GT(pixels(kPaper), 10'000);
  EXPECT_EQ(pixels(kDarkPaper), 0);
  keepPicture("installer-readme-dark");
}

}  // namespace
}  // namespace halvorn
