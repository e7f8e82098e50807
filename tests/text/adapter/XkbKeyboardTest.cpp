// The layout of a display.
#include <gtest/gtest.h>

#include <memory>

#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/linux/XkbKeyboard.h"
#include "tests/support/Desktop.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

using namespace StringExtensions;

class KeyboardOfADisplay : public testing::Test {
 protected:
  static constexpr DesktopParts kParts{.windowManager = false, .bus = false};
  void SetUp() override {
    if (const auto missing = Desktop::missing(kParts)) GTEST_SKIP() << *missing;
    desktop_ = std::make_unique<Desktop>(kParts);
  }
  void setLayout(const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {"setxkbmap"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    ChildProcess program(command, {.environment = desktop_->environment()});
    ASSERT_EQ(program.waitForEnd(20), 0) << program.output();
  }
  std::unique_ptr<Desktop> desktop_;
};

TEST_F(KeyboardOfADisplay, KeysTypeWhatTheLayoutSays) {
  const XkbKeyboard keyboard(desktop_->displayName());
  const auto typed = [&](std::uint16_t key, KeyModifiers modifiers = 0) {
    return stringWithVirtualKeyCode(key, modifiers, keyboard);
  };
  constexpr std::uint16_t kA = 0x00, kZ = 0x06, kQ = 0x0C, kE = 0x0E, kMinus = 0x1B, kGrave = 0x32, k2 = 0x13;
  setLayout({"us"});
  EXPECT_EQ(typed(kA), Text("a"));
  EXPECT_EQ(typed(kA, KeyModifier::shift), Text("A"));
  EXPECT_EQ(typed(kA, KeyModifier::capsLock), Text("A"));
  EXPECT_EQ(typed(k2, KeyModifier::capsLock), Text("2"));
  EXPECT_EQ(typed(k2, KeyModifier::shift), Text("@"));
  EXPECT_EQ(typed(kA, KeyModifier::command), Text("a"));
  EXPECT_EQ(typed(kA, KeyModifier::control), Text("\x01"));
  EXPECT_EQ(typed(kGrave), Text("`"));
  EXPECT_EQ(typed(kMinus), Text("-"));

  // The same object sees the change.
  setLayout({"de"});
  EXPECT_EQ(typed(kZ), Text("y"));
  EXPECT_EQ(typed(kMinus), Text("ß"));
  EXPECT_EQ(typed(kE, KeyModifier::option), Text("€"));
  EXPECT_EQ(typed(kQ, KeyModifier::option), Text("@"));
  EXPECT_EQ(typed(kGrave), Text(""));  // a dead key by itself

  setLayout({"fr"});
  EXPECT_EQ(typed(kA), Text("q"));
  EXPECT_EQ(typed(k2), Text("é"));
  EXPECT_EQ(typed(k2, KeyModifier::shift), Text("2"));

  setLayout({"us,ru"});
  EXPECT_EQ(typed(kA), Text("a"));
}

TEST_F(KeyboardOfADisplay, EveryLetterDigitAndKeypadKeyIsInItsPlace) {
  const XkbKeyboard keyboard(desktop_->displayName());
  setLayout({"us"});
  const std::uint16_t letters[] = {0x00, 0x0B, 0x08, 0x02, 0x0E, 0x03, 0x05, 0x04, 0x22,
                                   0x26, 0x28, 0x25, 0x2E, 0x2D, 0x1F, 0x23, 0x0C, 0x0F,
                                   0x01, 0x11, 0x20, 0x09, 0x0D, 0x07, 0x10, 0x06};
  for (std::size_t i = 0; i < std::size(letters); ++i) {
    EXPECT_EQ(stringWithVirtualKeyCode(letters[i], 0, keyboard),
              Text::fromScalar(static_cast<char32_t>(U'a' + i)));
  }
  const std::uint16_t digits[] = {0x1D, 0x12, 0x13, 0x14, 0x15, 0x17, 0x16, 0x1A, 0x1C, 0x19};
  const std::uint16_t keypad[] = {0x52, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5B, 0x5C};
  for (std::size_t i = 0; i < 10; ++i) {
    const Text digit = Text::fromScalar(static_cast<char32_t>(U'0' + i));
    EXPECT_EQ(stringWithVirtualKeyCode(digits[i], 0, keyboard), digit);
    EXPECT_EQ(stringWithVirtualKeyCode(keypad[i], 0, keyboard), digit);
  }
}

TEST_F(KeyboardOfADisplay, AKeyThatDoesNotExistGivesTheTextERR) {
  const XkbKeyboard keyboard(desktop_->displayName());
  for (const std::uint16_t key : {0x34, 0x42, 0x7F, 0x80, 0xFFFF}) {
    EXPECT_EQ(stringWithVirtualKeyCode(key, 0, keyboard), Text("<ERR>")) << key;
  }
}

TEST(KeyboardWithoutADisplay, EveryKeyGivesTheTextERR) {
  const XkbKeyboard keyboard(":65535");
  EXPECT_EQ(stringWithVirtualKeyCode(0x00, 0, keyboard), Text("<ERR>"));
}

TEST_F(KeyboardOfADisplay, AKeyboardWhoseDisplayIsGoneGivesTheTextERR) {
  const XkbKeyboard keyboard(desktop_->displayName());
  EXPECT_EQ(stringWithVirtualKeyCode(0x00, 0, keyboard), Text("a"));
  desktop_->xServer()->end();
  EXPECT_EQ(stringWithVirtualKeyCode(0x00, 0, keyboard), Text("<ERR>"));
}

}  // namespace
}  // namespace halvorn
