// The same cases for the fakes of the desktop's facts and for what they stand for.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>

#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/LinuxItemFacts.h"
#include "Platform/running/posix/PollRunLoop.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/session/linux/LinuxDesktopFacts.h"
#include "Platform/session/linux/LinuxSystemFacts.h"
#include "Platform/session/linux/PortalInterfaceStyle.h"
#include "tests/fakes/FakeDesktopFacts.h"
#include "tests/fakes/FakeInterfaceStyleSetting.h"
#include "tests/fakes/FakeItemFacts.h"
#include "tests/fakes/FakeSystemFacts.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {
namespace {

// A program of the desktop that does as it is told.
class Servant {
 public:
  Servant(const std::vector<std::string>& words, const Desktop& desktop)
      : program_(words, {.environment = desktop.environment()}) {
    EXPECT_EQ(program_.readLine(kTestPatience), "ready");
  }
  void tell(const std::string& line) {
    program_.writeInput(line + "\n");
    EXPECT_EQ(program_.readLine(kTestPatience), "done");
  }

 private:
  ChildProcess program_;
};

// --- clipboard and menu bar

struct FakeScreen {
  static std::optional<std::string> missing() { return std::nullopt; }
  void copy() { facts.changeClipboard(); }
  void fillTheScreen() { facts.hideMenuBar(); }
  void leaveTheScreen() { facts.showMenuBar(); }
  bool serveUntil(const std::function<bool()>& condition) { return condition(); }

  FakeDesktopFacts facts;
};

struct RealScreen {
  static constexpr DesktopParts parts{.bus = false};
  static std::optional<std::string> missing() { return Desktop::missing(parts); }
  void copy() { window.tell("copy"); }
  void fillTheScreen() { window.tell("fullscreen"); }
  void leaveTheScreen() { window.tell("windowed"); }
  bool serveUntil(const std::function<bool()>& condition) { return loop.runUntil(condition, kTestPatience); }

  Desktop desktop{parts};
  PollRunLoop loop;
  Servant window{{KT_WINDOW_PROBE}, desktop};
  const PosixClock clock;
  LinuxDesktopFacts facts{Environment(Environment::Variables{{"DISPLAY", desktop.displayName()}}),
                          std::nullopt, loop, clock};
};

template <typename Screen>
class ScreenContract : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = Screen::missing()) GTEST_SKIP() << *missing;
    screen = std::make_unique<Screen>();
  }
  std::unique_ptr<Screen> screen;
};
using ScreenWorlds = testing::Types<FakeScreen, RealScreen>;
TYPED_TEST_SUITE(ScreenContract, ScreenWorlds);

TYPED_TEST(ScreenContract, ClipboardCountStandsStillWhileNothingChanges) {
  const std::int64_t count = this->screen->facts.clipboardChangeCount().value();
  EXPECT_EQ(this->screen->facts.clipboardChangeCount().value(), count);
}

TYPED_TEST(ScreenContract, ClipboardCountHasGrownWhenTheChangeIsMade) {
  const std::int64_t count = this->screen->facts.clipboardChangeCount().value();
  this->screen->copy();
  const std::int64_t next = this->screen->facts.clipboardChangeCount().value();
  EXPECT_GT(next, count);
  this->screen->copy();
  EXPECT_GT(this->screen->facts.clipboardChangeCount().value(), next);
}

TYPED_TEST(ScreenContract, MenuBarTellsWhenItIsHiddenAndShown) {
  std::vector<int> kinds;
  ASSERT_TRUE(this->screen->facts.installMenuBarHandler([&](const MenuBarEvent& event) {
    EXPECT_EQ(event.eventClass, kMenuEventClass);
    kinds.push_back(event.kind);
    return EventAnswer::NotHandled;
  }));
  EXPECT_TRUE(kinds.empty()) << "never inside the call";
  this->screen->fillTheScreen();
  EXPECT_TRUE(this->screen->serveUntil([&] { return kinds == std::vector<int>{kMenuBarHiddenEvent}; }));
  this->screen->leaveTheScreen();
  EXPECT_TRUE(this->screen->serveUntil([&] {
    return kinds == std::vector<int>{kMenuBarHiddenEvent, kMenuBarShownEvent};
  }));
}

// --- interface style

struct FakeStyles {
  static std::optional<std::string> missing() { return std::nullopt; }
  void choose(bool dark) { style.change(dark ? OptionalText("Dark") : std::nullopt); }
  bool serveUntil(const std::function<bool()>& condition) { return condition(); }

  FakeInterfaceStyleSetting style;
};

struct RealStyles {
  static constexpr DesktopParts parts{.display = false};
  static std::optional<std::string> missing() { return Desktop::missing(parts); }
  void choose(bool dark) { portal.tell(dark ? "scheme 1" : "scheme 2"); }
  bool serveUntil(const std::function<bool()>& condition) {
    return eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }

  int argumentCount = 1;
  char name[5] = "test";
  char* arguments[2] = {name, nullptr};
  QCoreApplication application{argumentCount, arguments};
  Desktop desktop{parts};
  Servant portal{{KT_SESSION_SERVICES, "portal", desktop.busAddress()}, desktop};
  PortalInterfaceStyle style{desktop.busAddress()};
};

template <typename Styles>
class StyleContract : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto missing = Styles::missing()) GTEST_SKIP() << *missing;
    styles = std::make_unique<Styles>();
  }
  std::unique_ptr<Styles> styles;
};
using StyleWorlds = testing::Types<FakeStyles, RealStyles>;
TYPED_TEST_SUITE(StyleContract, StyleWorlds);

TYPED_TEST(StyleContract, IsDarkOrNothingAndAlwaysOfThisMoment) {
  EXPECT_EQ(this->styles->style.current(), std::nullopt);
  this->styles->choose(true);
  EXPECT_EQ(this->styles->style.current(), Text("Dark"));
  this->styles->choose(false);
  EXPECT_EQ(this->styles->style.current(), std::nullopt);
}

TYPED_TEST(StyleContract, ChangesAreTold) {
  int changes = 0;
  this->styles->style.installChangeHandler([&] { ++changes; });
  EXPECT_EQ(changes, 0) << "never inside the call";
  this->styles->choose(true);
  EXPECT_TRUE(this->styles->serveUntil([&] { return changes == 1; }));
  this->styles->choose(false);
  EXPECT_TRUE(this->styles->serveUntil([&] { return changes == 2; }));
}

// --- files

struct FakeFiles {
  FakeFiles() { system.fileSystemTypes["/"] = "ext4"; }
  Text plainFile() { return "/plain"; }
  Text aliasOf(const Text& target) {
    items.aliasTargets["/alias"] = target;
    return "/alias";
  }

  FakeItemFacts items;
  FakeSystemFacts system;
};

struct RealFiles {
  Text plainFile() {
    const std::string path = std::filesystem::canonical(folder.path()).string() + "/plain";
    std::ofstream(path) << "text";
    return path;
  }
  Text aliasOf(const Text& target) {
    std::filesystem::create_symlink(target.bytes(), folder / "alias");
    return folder / "alias";
  }

  TemporaryFolder folder;
  const LinuxBundles bundles{"/program", {}};
  const LinuxItemFacts items{bundles};
  LinuxSystemFacts system;
};

template <typename Files>
class FilesContract : public testing::Test {
 protected:
  Files files;
};
using FilesWorlds = testing::Types<FakeFiles, RealFiles>;
TYPED_TEST_SUITE(FilesContract, FilesWorlds);

TYPED_TEST(FilesContract, AliasLeadsToItsTargetAndNothingElseIsOne) {
  const Text plain = this->files.plainFile();
  EXPECT_EQ(this->files.items.aliasTarget(plain), std::nullopt);
  EXPECT_EQ(this->files.items.aliasTarget("/no/such/file"), std::nullopt);
  EXPECT_EQ(this->files.items.aliasTarget(this->files.aliasOf(plain)), plain);
}

TYPED_TEST(FilesContract, FileSystemHasANameAndAMissingPathIsAnError) {
  const FileSystemAnswer root = this->files.system.fileSystemOf("/");
  EXPECT_EQ(root.status, 0);
  EXPECT_FALSE(root.typeName.isEmpty());
  const FileSystemAnswer missing = this->files.system.fileSystemOf("/no/such/file");
  EXPECT_LT(missing.status, 0);
  EXPECT_TRUE(missing.typeName.isEmpty());
}

}  // namespace
}  // namespace halvorn
