// Draws the window in every language, size, look and state that counts, has each picture judged, and writes a page
// to look through: picture_matrix BUNDLE_RESOURCES FOLDER [--gtest_filter=...]
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"
#include "tests/window/adapter/ProbeProgram.h"
#include "tests/window/adapter/PseudoLanguage.h"
#include "tests/window/adapter/ScreenOfSize.h"

namespace halvorn {
namespace {

using Names = std::vector<std::string>;

std::string resourcesFolder;
std::string pictureFolder;
std::string page;
int pictures = 0;

struct Set {
  std::string name;
  Names languages;
  Names scales;
  std::vector<ScreenSize> screens;
  Names styles;
  std::vector<int> points;
  Names states;
};

const Names kEveryState = {"readme",       "readme-long", "menu",      "install",   "help", "focus-install",
                           "focus-cancel", "focus-help",  "running",   "failed",    "done", "error",
                           "names",        "icon-none",   "icon-tiny", "icon-huge", "alert"};

class PictureMatrix : public testing::Test {
 protected:
  PictureMatrix() {
    const std::filesystem::path resources = folder_.path() / "Test.app/Contents/Resources";
    std::filesystem::create_directories(resources.parent_path());
    std::filesystem::copy(resourcesFolder, resources, std::filesystem::copy_options::recursive);
    writePseudoLanguage(resources.string(), kLongerLanguage, 40);
    writePseudoLanguage(resources.string(), kMirroredLanguage, 0, true);
  }

  void draw(const Set& set) {
    page += "<h2>" + set.name + "</h2>\n";
    for (const std::string& language : set.languages)
      for (const std::string& scale : set.scales)
        for (const ScreenSize screen : set.screens)
          for (const std::string& style : set.styles)
            for (const int points : set.points) drawStates(set, language, scale, screen, style, points);
  }

 private:
  void drawStates(const Set& set, const std::string& language, const std::string& scale, ScreenSize screen,
                  const std::string& style, int points) {
    ProbeProgram probe({KT_WINDOW_PROBE, folder_ / "Test.app", language, style},
                       {.environment = environmentOnScreen(folder_.path().string(), screen, scale, points)});
    ASSERT_TRUE(probe.waitForOutput("ready", kTestPatience)) << probe.output();
    const std::string about = set.name + "-" + language + "-" + std::to_string(screen.width) + "x" +
                              std::to_string(screen.height) + "-" + scale + "-" + style + "-" +
                              std::to_string(points);
    for (const std::string& state : set.states) {
      (void)probe.tell({"state " + state, "window center", "window front"});
      const std::string name = about + "-" + state + ".png";
      const std::string findings = probe.ask("judge");
      EXPECT_EQ(findings, "no finding") << name;
      EXPECT_EQ(probe.ask("screenshot " + pictureFolder + "/" + name), "saved") << name;
      page += "<figure><img loading=lazy src='" + name + "'><figcaption>" + name +
              (findings == "no finding" ? "" : "<b> " + findings + "</b>") + "</figcaption></figure>\n";
      ++pictures;
    }
  }

  TemporaryFolder folder_;
};

TEST_F(PictureMatrix, Core) {
  draw({"core",
        {"en", "de", "ar", "ja", kLongerLanguage},
        {"1", "2"},
        {{1280, 800}, {3840, 2160}},
        {"light", "dark"},
        {10},
        kEveryState});
}

TEST_F(PictureMatrix, Scales) {
  draw({"scales",
        {"en", kMirroredLanguage},
        {"1.25", "1.5", "3"},
        {{1920, 1080}},
        {"light"},
        {10},
        {"install", "running", "done", "icon-none", "icon-tiny", "icon-huge", "alert"}});
}

TEST_F(PictureMatrix, Tight) {
  draw({"tight",
        {"de", kLongerLanguage},
        {"1", "1.25", "1.5", "2"},
        {{800, 600}, {1366, 768}},
        {"light"},
        {10, 14, 20},
        {"readme-long", "install", "help", "names", "alert"}});
}

TEST_F(PictureMatrix, Sight) {
  draw({"sight",
        {"en", "de"},
        {"1", "2"},
        {{1366, 768}},
        {"clear", "dark-clear"},
        {14, 20},
        {"install", "focus-install", "focus-cancel", "focus-help", "failed", "done"}});
}

TEST_F(PictureMatrix, Breadth) {
  Names languages;
  for (const auto& item : std::filesystem::directory_iterator(resourcesFolder)) {
    if (item.path().extension() == ".lproj") languages.push_back(item.path().stem().string());
  }
  draw({"breadth", languages, {"1"}, {{1280, 800}}, {"light"}, {10}, {"install", "help", "done", "alert"}});
}

}  // namespace
}  // namespace halvorn

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  if (count < 3) return 2;
  halvorn::resourcesFolder = arguments[1];
  halvorn::pictureFolder = arguments[2];
  halvorn::page =
      "<!doctype html><meta charset=utf-8><title>The window</title>"
      "<style>figure{display:inline-block;margin:8px}img{max-width:480px;border:1px solid "
      "#888}b{color:#b00}</style>\n";
  const int status = RUN_ALL_TESTS();
  halvorn::putFile(halvorn::pictureFolder + "/index.html", halvorn::page);
  std::printf("%d pictures judged\n", halvorn::pictures);
  return status;
}
