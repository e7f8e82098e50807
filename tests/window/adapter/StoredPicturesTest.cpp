// Forty pictures of the window against those that were looked at and found good: nothing in them has moved, gone or
// changed its tone. How letters are drawn may differ a little from system to system.
//
// With KT_STORE_PICTURES in the environment the pictures are stored instead (./dev check --pictures --store).
#include <gtest/gtest.h>

#include <QImage>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/window/adapter/ProbeProgram.h"
#include "tests/window/adapter/PseudoLanguage.h"
#include "tests/window/adapter/ScreenOfSize.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

constexpr int kPointsInOne = 4;       // of a stored picture's pixels, across and down
constexpr int kOtherTone = 40;        // of 255
constexpr double kMostOthers = 1e-3;  // of all pixels
constexpr int kLetters = 2;           // points by which drawing letters moves something

struct Circumstances {
  std::string language;
  std::string scale;
  ScreenSize screen;
  std::string style;
  int points;
  std::vector<std::string> states;
};

const std::vector<Circumstances>& chosen() {
  static const std::vector<Circumstances> all = {
      {"en", "1", {1280, 800}, "light", 10, {"readme-long", "install", "done", "alert"}},
      {"en", "1", {1280, 800}, "dark", 10, {"readme-long", "help", "running", "alert"}},
      {"de", "2", {3840, 2160}, "light", 10, {"install", "names", "focus-cancel", "alert"}},
      {"de", "1.5", {800, 600}, "light", 14, {"install", "help", "done", "alert"}},
      {"ar", "1", {1280, 800}, "light", 10, {"install", "help", "running", "alert"}},
      {"he", "2", {3840, 2160}, "dark", 10, {"install", "focus-cancel", "done", "alert"}},
      {"ja", "1", {1280, 800}, "light", 10, {"install", "help", "done", "alert"}},
      {kLongerLanguage, "2", {800, 600}, "light", 20, {"install", "help", "names", "alert"}},
      {kMirroredLanguage,
       "1.25",
       {1920, 1080},
       "light",
       10,
       {"install", "focus-install", "icon-tiny", "alert"}},
      {"en", "3", {1920, 1080}, "light", 10, {"error", "failed", "icon-none", "icon-huge"}}};
  return all;
}

bool isStoring() { return std::getenv("KT_STORE_PICTURES") != nullptr; }

QImage coarse(const QImage& picture, double scale) {
  const QSize size = picture.size() / (scale * kPointsInOne);
  return picture.convertToFormat(QImage::Format_Grayscale8)
      .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
      .convertToFormat(QImage::Format_Grayscale8);
}

// How many pixels have another tone; -1 when the pictures are not of one size.
int differences(const QImage& one, const QImage& other) {
  if (one.size() != other.size()) return -1;
  int found = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x)
      found += std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))) > kOtherTone ? 1 : 0;
  }
  return found;
}

// "id leading top width height; ..."
std::map<std::string, std::vector<int>> placesIn(const std::string& text) {
  std::map<std::string, std::vector<int>> places;
  std::istringstream all(text);
  for (std::string one; std::getline(all, one, ';');) {
    std::istringstream words(one);
    std::string id;
    if (!(words >> id)) continue;
    for (int number = 0; words >> number;) places[id].push_back(number);
  }
  return places;
}

// What stands elsewhere; "" for nothing.
std::string moved(const std::string& stored, const std::string& now) {
  const auto before = placesIn(stored);
  const auto after = placesIn(now);
  std::string found;
  for (const auto& [id, place] : before) {
    const auto there = after.find(id);
    bool isSame = there != after.end() && there->second.size() == place.size();
    for (std::size_t i = 0; isSame && i < place.size(); ++i)
      isSame = std::abs(place[i] - there->second[i]) <= kLetters;
    if (!isSame) found += id + " ";
  }
  return before.size() == after.size() ? found : found + "more or less is shown";
}

class StoredPictures : public testing::TestWithParam<Circumstances> {
 protected:
  StoredPictures() {
    const fs::path resources = folder_.path() / "Test.app/Contents/Resources";
    fs::create_directories(resources.parent_path());
    fs::copy(KT_SOURCE_DIR "/Resources", resources, fs::copy_options::recursive);
    writePseudoLanguage(resources.string(), kLongerLanguage, 40);
    writePseudoLanguage(resources.string(), kMirroredLanguage, 0, true);
    fs::create_directories(now_);
    if (isStoring()) fs::create_directories(stored_);
  }

  void compare(const std::string& name, const QImage& picture, double scale, const std::string& places) {
    const std::string file = (stored_ / name).string();
    const QImage now = coarse(picture, scale);
    if (isStoring()) {
      EXPECT_TRUE(now.save(QString::fromStdString(file + ".png")));
      putFile(file + ".txt", places + "\n");
      return;
    }
    ASSERT_TRUE(fs::exists(file + ".png")) << "the picture has not been stored: " << name;
    const QImage stored(QString::fromStdString(file + ".png"));
    EXPECT_EQ(moved(contentsOf(file + ".txt"), places), "") << name;
    ASSERT_EQ(stored.size().width(), now.width()) << name;
    ASSERT_EQ(stored.size().height(), now.height()) << name;
    const int others = differences(stored, now);
    EXPECT_LE(others, now.width() * now.height() * kMostOthers)
        << name << ": see screenshots/now in the build folder";
  }

  TemporaryFolder folder_;
  const fs::path stored_ = KT_SOURCE_DIR "/tests/data/window/pictures";
  const fs::path now_ = KT_BINARY_DIR "/screenshots/now";
};

TEST_P(StoredPictures, LookAsTheyDid) {
  const Circumstances& how = GetParam();
  ProbeProgram probe(
      {KT_WINDOW_PROBE, folder_ / "Test.app", how.language, how.style},
      {.environment = environmentOnScreen(folder_.path().string(), how.screen, how.scale, how.points)});
  ASSERT_TRUE(probe.waitForOutput("ready", kTestPatience)) << probe.output();
  for (const std::string& state : how.states) {
    (void)probe.tell({"state " + state, "window center", "window front", "still"});
    const std::string name =
        how.language + "-" + how.scale + "-" + how.style + "-" + std::to_string(how.points) + "-" + state;
    const std::string file = (now_ / (name + ".png")).string();
    const std::string places = probe.ask("places");
    ASSERT_EQ(probe.ask("screenshot " + file), "saved");
    const QImage picture(QString::fromStdString(file));
    ASSERT_FALSE(picture.isNull()) << file;
    compare(name, picture, std::stod(how.scale), places);
  }
}

INSTANTIATE_TEST_SUITE_P(Chosen, StoredPictures, testing::ValuesIn(chosen()), [](const auto& how) {
  std::string name =
      how.param.language + how.param.scale + how.param.style + std::to_string(how.param.points);
  std::erase_if(name, [](char each) { return std::isalnum(static_cast<unsigned char>(each)) == 0; });
  return name;
});

TEST(PicturesCompared, AreForty) {
  std::size_t pictures = 0;
  for (const Circumstances& how : chosen()) pictures += how.states.size();
  EXPECT_EQ(pictures, 40U);
}

// What the comparison is there for.
TEST(PicturesCompared, AShiftAGapAndAnotherToneAreSeen) {
  QImage window(1600, 1200, QImage::Format_Grayscale8);
  window.fill(240);
  const auto fill = [](QImage& image, const QRect& part, int tone) {
    for (int y = part.top(); y <= part.bottom(); ++y) {
      for (int x = part.left(); x <= part.right(); ++x) image.setPixel(x, y, qRgb(tone, tone, tone));
    }
  };
  const QRect button(1200, 1100, 200, 60);
  QImage good = window;
  fill(good, button, 90);
  const auto others = [&](const QImage& bad) { return differences(coarse(good, 1), coarse(bad, 1)); };
  const double most = 400 * 300 * kMostOthers;
  EXPECT_EQ(others(good), 0);
  EXPECT_GT(others(window), most) << "gone";
  QImage shifted = window;
  fill(shifted, button.translated(24, 0), 90);
  EXPECT_GT(others(shifted), most);
  QImage paler = window;
  fill(paler, button, 150);
  EXPECT_GT(others(paler), most);
  EXPECT_EQ(differences(coarse(good, 1), coarse(good, 2)), -1);
  EXPECT_EQ(moved("a 1 2 3 4; b 5 6 7 8; ", "a 2 2 3 4; b 5 6 7 8; "), "");
  EXPECT_EQ(moved("a 1 2 3 4; b 5 6 7 8; ", "a 4 2 3 4; b 5 6 7 8; "), "a ");
  EXPECT_EQ(moved("a 1 2 3 4; b 5 6 7 8; ", "a 1 2 3 4; "), "b more or less is shown");
}

}  // namespace
}  // namespace halvorn
