#include "Platform/session/linux/x11/StartupNotification.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Platform/session/linux/x11/DisplayConnection.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"

namespace halvorn {
namespace {

// Hears what is announced as a window manager does.
class Announcements {
 public:
  explicit Announcements(const std::string& displayName) : display_(DisplayConnection::open(displayName)) {
    constexpr std::uint32_t kHear = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(display_->get(), display_->root(), XCB_CW_EVENT_MASK, &kHear);
    display_->synchronize();
  }

  [[nodiscard]] std::vector<std::string> heard() {
    const xcb_atom_t begin = display_->atom("_NET_STARTUP_INFO_BEGIN"),
                     more = display_->atom("_NET_STARTUP_INFO");
    display_->synchronize();
    while (const auto event = adopted(xcb_poll_for_event(display_->get()))) {
      if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) continue;
      const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event.get());
      if (message->type != begin && message->type != more) continue;
      EXPECT_EQ(message->format, 8);
      EXPECT_EQ(message->type == begin, !open_.contains(message->window)) << "only the first is the first";
      for (const std::uint8_t byte : message->data.data8) {
        if (byte != 0) {
          open_[message->window] += static_cast<char>(byte);
        } else if (open_.contains(message->window)) {
          whole_.push_back(open_.extract(message->window).mapped());
        }
      }
    }
    return whole_;
  }

 private:
  std::unique_ptr<DisplayConnection> display_;
  std::map<xcb_window_t, std::string> open_;
  std::vector<std::string> whole_;
};

class StartupNotification : public testing::Test {
 protected:
  void SetUp() override {
    const DesktopParts parts{.windowManager = false, .bus = false};
    if (const auto missing = Desktop::missing(parts)) GTEST_SKIP() << *missing;
    desktop_.emplace(parts);
  }
  [[nodiscard]] std::string display() const { return desktop_->displayName(); }

 private:
  std::optional<Desktop> desktop_;
};

TEST_F(StartupNotification, TheDesktopHearsTheIdThatTheProgramGets) {
  Announcements announcements(display());
  const auto id = announceStartup(
      display(), {.launcher = "HalvornInstaller", .program = "Sample", .deedTime = 4294967295});
  ASSERT_TRUE(id);
  EXPECT_TRUE(id->starts_with("HalvornInstaller/")) << *id;
  EXPECT_TRUE(id->ends_with("_TIME4294967295")) << *id;
  EXPECT_EQ(announcements.heard(),
            std::vector<std::string>{"new: ID=\"" + *id + "\" NAME=\"Sample\" SCREEN=0"});
}

TEST_F(StartupNotification, NamesOfEveryLengthArriveWholeAndQuoted) {
  Announcements announcements(display());
  std::string name = "A \"quoted\\name\"";
  std::vector<std::string> expected;
  for (int i = 0; i < 20; ++i, name += 'x') {
    const auto id = announceStartup(display(), {.launcher = "an installer", .program = name, .deedTime = 1});
    ASSERT_TRUE(id);
    EXPECT_EQ(id->find(' '), std::string::npos) << *id;
    expected.push_back("new: ID=\"" + *id + "\" NAME=\"A \\\"quoted\\\\name\\\"" + std::string(i, 'x') +
                       "\" SCREEN=0");
  }
  EXPECT_EQ(announcements.heard(), expected) << "and no id comes twice";
}

TEST_F(StartupNotification, WithoutADeedOrADisplayThereIsNone) {
  Announcements announcements(display());
  EXPECT_EQ(announceStartup(display(), {.launcher = "L", .program = "P", .deedTime = std::nullopt}),
            std::nullopt);
  EXPECT_EQ(announcements.heard(), std::vector<std::string>{});
  EXPECT_EQ(announceStartup(std::nullopt, {.launcher = "L", .program = "P", .deedTime = 1}), std::nullopt);
  EXPECT_EQ(announceStartup("", {.launcher = "L", .program = "P", .deedTime = 1}), std::nullopt);
  EXPECT_EQ(announceStartup(":63999", {.launcher = "L", .program = "P", .deedTime = 1}), std::nullopt);
}

}  // namespace
}  // namespace halvorn
