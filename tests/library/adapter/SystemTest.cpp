// KTSystem where there is no desktop: nothing happens before it is asked for, and what is missing is answered so.
#include "KTStuff/KTSystem.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <filesystem>

#include "KTStuff/CocoaExtensions/SoundExtensions.h"
#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "KTStuff/KTClasses/KTRegularExpression.h"
#include "KTStuff/KTClasses/KTUtilities.h"
#include "Platform/processes/Accessibility.h"
#include "Platform/running/MainThread.h"
#include "Platform/running/Workers.h"
#include "Platform/session/DesktopFacts.h"
#include "Platform/text/Digests.h"
#include "Platform/text/HtmlText.h"
#include "Platform/text/Keyboard.h"
#include "Platform/text/Unicode.h"
#include "tests/library/adapter/EnvironmentOfTest.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

std::size_t openDescriptors() {
  std::size_t count = 0;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) count += entry.is_symlink() ? 1 : 0;
  return count;
}
std::size_t openSockets() {
  std::size_t count = 0;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    count += fs::read_symlink(entry.path(), gone).string().starts_with("socket:") ? 1 : 0;
  }
  return count;
}
std::size_t threads() {
  std::size_t count = 0;
  for (const auto& entry : fs::directory_iterator("/proc/self/task")) count += entry.is_directory() ? 1 : 0;
  return count;
}
bool isLoaded(const std::string& module) {
  void* const handle = ::dlopen(module.c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (handle != nullptr) ::dlclose(handle);
  return handle != nullptr;
}

class SystemWithoutDesktop : public testing::Test {
 protected:
  const TemporaryFolder folder;
  const EnvironmentOfTest environment{{"PATH=/usr/bin:/bin", "HOME=" + folder.path().string(), "LANG=C.UTF-8",
                                       "XDG_RUNTIME_DIR=" + folder.path().string()}};
  const std::string soundModule = KT_BUNDLE_PROGRAMS "/HalvornSound.so";
  KTSystem system{{"/opt/program"}, {.programName = "program", .modulesFolder = KT_BUNDLE_PROGRAMS}};
};

TEST_F(SystemWithoutDesktop, MakingItOpensLoadsAndStartsNothing) {
  const std::size_t descriptors = openDescriptors();
  const std::size_t running = threads();
  const KTSystem another({"/opt/program"}, {.modulesFolder = KT_BUNDLE_PROGRAMS});
  EXPECT_EQ(openDescriptors(), descriptors);
  EXPECT_EQ(threads(), running);
  EXPECT_FALSE(isLoaded(soundModule));
}

TEST_F(SystemWithoutDesktop, HandingOutClassesConnectsNothing) {
  (void)system.log();  // has a socket that is never connected
  const std::size_t sockets = openSockets();
  (void)system.versions();
  (void)system.unicode();
  (void)system.htmlText();
  (void)system.sound();
  (void)system.accessibility();
  (void)system.desktopFacts();
  EXPECT_FALSE(isLoaded(soundModule));
  EXPECT_EQ(openSockets(), sockets);
  EXPECT_EQ(system.desktopFacts().clipboardChangeCount(), std::nullopt);
}

TEST_F(SystemWithoutDesktop, TheSoundModuleIsLoadedForTheFirstSound) {
  EXPECT_FALSE(isLoaded(soundModule));
  EXPECT_EQ(system.sound().systemAudioDeviceID(), std::nullopt);  // there is no sound server
  EXPECT_TRUE(isLoaded(soundModule));
}

TEST_F(SystemWithoutDesktop, EachPartIsMadeOnce) {
  EXPECT_EQ(&system.versions(), &system.versions());
  EXPECT_EQ(&system.processes(), &system.processes());
  EXPECT_EQ(&system.utilities(), &system.utilities());
  EXPECT_EQ(&system.processes().services().log, &system.log());
}

TEST_F(SystemWithoutDesktop, VersionsTextsAndDigestsAnswer) {
  EXPECT_EQ(system.versions().compareVersion("2.1b3", "2.1"), Ordering::Ascending);
  EXPECT_EQ(StringExtensions::stringByExpandingHTMLEntities("a &lt; b", system.htmlText()), Text("a < b"));
  EXPECT_EQ(StringExtensions::stringWithOSType(fourCharCode("ABCD"), system.fourCharCodes()), Text("ABCD"));
  EXPECT_EQ(StringExtensions::MD5String("abc", system.digests()), Text("900150983cd24fb0d6963f7d28e17f72"));
  EXPECT_EQ(system.regexReplacing().stringByReplacingOccurrencesOfRegexPattern("a1b22", "[0-9]+", "#"),
            Text("a#b#"));
}

TEST_F(SystemWithoutDesktop, WhatNoDisplayTellsIsUnknown) {
  EXPECT_EQ(system.processes().frontProcess(), nullptr);
  EXPECT_EQ(system.desktopFacts().clipboardChangeCount(), std::nullopt);
  EXPECT_FALSE(system.utilities().fullScreenMode());
  EXPECT_FALSE(system.utilities().darkAppearance());
  EXPECT_EQ(StringExtensions::stringWithVirtualKeyCode(0, 0, system.keyboard()), Text("<ERR>"));
}

TEST_F(SystemWithoutDesktop, ACommandsOutputComesBack) {
  EXPECT_EQ(system.utilities().shellCommandResult("printf abc"), Text("abc"));
}

TEST_F(SystemWithoutDesktop, TheMainThreadServesWhatWasPosted) {
  bool isDone = false;
  system.mainThread().performAfter(0.01, [&] { isDone = true; });
  EXPECT_TRUE(system.runUntil([&] { return isDone; }, 30.0));
  EXPECT_FALSE(system.runUntil([] { return false; }, 0.01));
}

TEST_F(SystemWithoutDesktop, TheEndWaitsForWorkers) {
  bool isDone = false;
  {
    KTSystem another;
    another.workers().detach([&] { isDone = true; });
  }
  EXPECT_TRUE(isDone);
}

TEST(SystemBesideAnApplication, TheProgramsOwnIsUsedAndStaysAsItIs) {
  const TemporaryFolder folder;
  const EnvironmentOfTest environment({"PATH=/usr/bin:/bin", "HOME=" + folder.path().string(), "LANG=C.UTF-8",
                                       "XDG_RUNTIME_DIR=" + folder.path().string(),
                                       "QT_QPA_PLATFORM=offscreen"});
  std::string name = "program";
  char* arguments[] = {name.data(), nullptr};
  int count = 1;
  QApplication::setStyle(QStringLiteral("windows"));
  QApplication own(count, arguments);
  const QPalette palette = QApplication::palette();
  {
    KTSystem system;
    (void)system.application();
    EXPECT_EQ(QCoreApplication::instance(), &own);
    (void)system.appearances();
    EXPECT_EQ(QApplication::palette(), palette);
    bool isDone = false;
    system.mainThread().perform([&] {
      isDone = true;
      QCoreApplication::quit();
    });
    EXPECT_EQ(QApplication::exec(),
              0);  // the program's own loop serves the library, and ends when the program says so
    EXPECT_TRUE(isDone);
  }
  EXPECT_EQ(QCoreApplication::instance(), &own);
  EXPECT_TRUE(QApplication::quitOnLastWindowClosed());
  EXPECT_EQ(QApplication::style()->objectName(), QStringLiteral("windows"));
}

TEST_F(SystemWithoutDesktop, ArgumentsAreSettings) {
  KTSystem another({"/opt/program", "-soundLog", "YES"});
  const auto value = another.defaults().objectForKey("soundLog");
  ASSERT_TRUE(value && value->text());
  EXPECT_EQ(*value->text(), Text("YES"));
}

}  // namespace
}  // namespace halvorn
