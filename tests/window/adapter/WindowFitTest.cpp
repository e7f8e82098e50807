// No state of the window is larger than the work area or cut, whatever the screen, its scale and the person's font.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/window/adapter/ProbeProgram.h"
#include "tests/window/adapter/PseudoLanguage.h"
#include "tests/window/adapter/ScreenOfSize.h"

namespace halvorn {
namespace {

class WindowFit : public testing::Test {
 protected:
  WindowFit() {
    const std::filesystem::path resources = folder_.path() / "Test.app/Contents/Resources";
    std::filesystem::create_directories(resources.parent_path());
    std::filesystem::copy(KT_SOURCE_DIR "/Resources", resources, std::filesystem::copy_options::recursive);
    writePseudoLanguage(resources.string(), kLongerLanguage, 40);
    writePseudoLanguage(resources.string(), kMirroredLanguage, 0, true);
  }

  void expectFit(ScreenSize screen, const std::vector<const char*>& scales, const std::string& language) {
    for (const char* scale : scales) {
      for (const int points : {10, 14, 20}) {
        ProbeProgram probe(
            {KT_WINDOW_PROBE, folder_ / "Test.app", language, "light"},
            {.environment = environmentOnScreen(folder_.path().string(), screen, scale, points)});
        ASSERT_TRUE(probe.waitForOutput("ready", kTestPatience)) << probe.output();
        for (const char* state : {"readme-long", "install", "help", "names", "running", "done", "error"}) {
          (void)probe.tell({std::string("state ") + state, "window center", "window front"});
          EXPECT_EQ(probe.ask("judge"), "no finding")
              << language << " " << screen.width << "x" << screen.height << " times " << scale << ", "
              << points << " points, " << state;
        }
      }
    }
  }

  TemporaryFolder folder_;
};

TEST_F(WindowFit, FromRightToLeftItIsItsOwnMirrorImage) {
  for (const char* scale : {"1", "1.5"}) {
    for (const int points : {10, 20}) {
      std::vector<std::string> places;
      for (const char* language : {"en", kMirroredLanguage}) {
        ProbeProgram probe(
            {KT_WINDOW_PROBE, folder_ / "Test.app", language, "light"},
            {.environment = environmentOnScreen(folder_.path().string(), {800, 600}, scale, points)});
        ASSERT_TRUE(probe.waitForOutput("ready", kTestPatience)) << probe.output();
        std::string all;
        for (const char* state : {"readme", "install", "help", "names", "done"}) {
          (void)probe.tell({std::string("state ") + state, "window center", "window front", "judge"});
          all += state + (": " + probe.ask("places")) + "\n";
        }
        places.push_back(all);
      }
      EXPECT_EQ(places[0], places[1]) << scale << ", " << points << " points";
      EXPECT_NE(places[0].find("installButton"), std::string::npos);
    }
  }
}

TEST_F(WindowFit, OnASmallScreen) {
  for (const char* language : {"de", kLongerLanguage})
    expectFit({800, 600}, {"1", "1.25", "1.5", "2"}, language);
}

TEST_F(WindowFit, OnASmallNotebook) {
  for (const char* language : {"de", kLongerLanguage})
    expectFit({1366, 768}, {"1", "1.25", "1.5", "2"}, language);
}

TEST_F(WindowFit, OnAnUsualScreen) {
  for (const char* language : {"de", kLongerLanguage})
    expectFit({1920, 1080}, {"1", "1.25", "1.5", "2", "3"}, language);
}

TEST_F(WindowFit, OnALargeScreen) {
  for (const char* language : {"de", kLongerLanguage}) expectFit({3840, 2160}, {"1", "2", "3"}, language);
}

}  // namespace
}  // namespace halvorn
