// The colors that the controller gives its window.
#include "Sources/WindowColors.h"

#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "tests/installer/unit/InstallerFixture.h"

namespace halvorn {
namespace {

class WindowColors : public InstallerFixture {
 protected:
  // What the color answers in that appearance.
  RedGreenBlueAlpha in(AppearanceName name, const ColorPointer& color) {
    appearances.draw(name);
    return color ? color->getRed().value_or(RedGreenBlueAlpha{}) : RedGreenBlueAlpha{};
  }
  static constexpr RedGreenBlueAlpha red = {0.75, 0.0, 0.0, 1.0};
  static constexpr RedGreenBlueAlpha darkRed = {1.0, 0.2, 0.0, 1.0};
};

// How bright the color is to the eye, for contrasts as people with weak sight need them.
double luminance(const RedGreenBlueAlpha& color) {
  const auto light =
      ColorSpace::sRGB().converted({color.red, color.green, color.blue}, ColorSpace::linearSRGB());
  return 0.2126 * light[0] + 0.7152 * light[1] + 0.0722 * light[2];
}
double contrast(const RedGreenBlueAlpha& one, const RedGreenBlueAlpha& other) {
  const double most = std::max(luminance(one), luminance(other));
  const double least = std::min(luminance(one), luminance(other));
  return (most + 0.05) / (least + 0.05);
}

TEST_F(WindowColors, TheReadMeHasPaperOfBothAppearances) {
  start({"-sourcePath", product});
  const ColorPointer paper = window.readMeTextView.backgroundColor_;
  ASSERT_NE(paper, nullptr);
  const RedGreenBlueAlpha ink = {0.114, 0.114, 0.122, 1.0};
  const RedGreenBlueAlpha lightInk = {0.941, 0.941, 0.949, 1.0};
  EXPECT_NEAR(in(AppearanceName::Aqua, paper).blue, 0.969, 1e-6);
  EXPECT_NEAR(in(AppearanceName::DarkAqua, paper).red, 0.129, 1e-6);
  EXPECT_NEAR(in(AppearanceName::DarkAqua, paper).green, 0.125, 1e-6);
  EXPECT_NEAR(in(AppearanceName::DarkAqua, paper).blue, 0.114, 1e-6);
  EXPECT_GT(contrast(in(AppearanceName::Aqua, paper), ink), 7.0);
  EXPECT_GT(contrast(in(AppearanceName::DarkAqua, paper), lightInk), 7.0);
  EXPECT_EQ(window.readMeTextView.textColor_, nullptr) << "the document's own";
}

TEST_F(WindowColors, FailuresAreInTheRedOfWarnings) {
  start({"-sourcePath", product});
  EXPECT_EQ(in(AppearanceName::Aqua, window.messageField.textColor_), red);
  EXPECT_EQ(in(AppearanceName::DarkAqua, window.messageField.textColor_), darkRed);
  EXPECT_EQ(window.introField.textColor_, nullptr) << "nothing has gone wrong";
}

TEST_F(WindowColors, ASetUpErrorIsInTheSameRed) {
  start({"-sourcePath", "/Volumes/NAS/Missing.app", "-productName", "Foo"});
  EXPECT_EQ(in(AppearanceName::Aqua, window.introField.textColor_), red);
  EXPECT_EQ(window.introField.textColor_, window.messageField.textColor_) << "the identical object";
}

TEST_F(WindowColors, ASuccessIsNotRed) {
  auto& controller = start({"-sourcePath", product});
  controller.installationFinished(InstallOutcome::installed());
  EXPECT_EQ(window.introField.textColor_, nullptr);
}

TEST_F(WindowColors, WarningsCanBeReadInBothAppearances) {
  EXPECT_GT(contrast(red, {1.0, 1.0, 1.0, 1.0}), 4.5);
  EXPECT_GT(contrast(darkRed, {30 / 255.0, 30 / 255.0, 32 / 255.0, 1.0}), 4.5);
}

}  // namespace
}  // namespace halvorn
