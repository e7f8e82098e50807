// A packaged toolkit and an environment that was made for another one.
#include "Platform/window/linux/PackagedToolkit.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"

namespace halvorn {
namespace {

using Removed = std::vector<std::string>;

class PackagedToolkit : public testing::Test {
 protected:
  PackagedToolkit() {
    for (const char* part : {"libqxcb.so", "libqwayland-generic.so"}) {
      std::filesystem::create_directories(folder.path() / "PlugIns/platforms");
      putFile(folder.path() / "PlugIns/platforms" / part, "");
    }
    std::filesystem::create_directories(programs);
    putFile(folder.path() / "Linux/qt.conf", "[Paths]\n");
    for (const char* name : kNames) ::unsetenv(name);
    ::setenv("DISPLAY", ":7", 1);
  }
  ~PackagedToolkit() override {
    for (const char* name : kNames) ::unsetenv(name);
  }

  static constexpr const char* kNames[] = {"DISPLAY",         "WAYLAND_DISPLAY",
                                           "WAYLAND_SOCKET",  "QT_PLUGIN_PATH",
                                           "QT_QPA_PLATFORM", "QT_QPA_PLATFORM_PLUGIN_PATH"};
  const TemporaryFolder folder;
  const std::string programs = folder.path() / "Linux";
};

TEST_F(PackagedToolkit, PartsOfAnotherOneAreNotLookedFor) {
  ::setenv("QT_PLUGIN_PATH", "/usr/lib/plugins", 1);
  ::setenv("QT_QPA_PLATFORM_PLUGIN_PATH", "/tmp", 1);
  EXPECT_EQ(removeForeignParts(programs),
            (Removed{"QT_PLUGIN_PATH=/usr/lib/plugins", "QT_QPA_PLATFORM_PLUGIN_PATH=/tmp"}));
  EXPECT_EQ(std::getenv("QT_PLUGIN_PATH"), nullptr);
  EXPECT_EQ(std::getenv("QT_QPA_PLATFORM_PLUGIN_PATH"), nullptr);
}

TEST_F(PackagedToolkit, AWindowSystemThatIsNotThereIsNotHeeded) {
  for (const char* chosen : {"wayland", "wayland-egl", "eglfs", "wayland;offscreen", ";", "xcb2"}) {
    ::setenv("QT_QPA_PLATFORM", chosen, 1);
    EXPECT_EQ(removeForeignParts(programs), (Removed{std::string("QT_QPA_PLATFORM=") + chosen}));
    EXPECT_EQ(std::getenv("QT_QPA_PLATFORM"), nullptr);
  }
}

TEST_F(PackagedToolkit, AWindowSystemThatIsThereIsHeeded) {
  ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
  for (const char* chosen : {"xcb", "wayland", "wayland;xcb", "eglfs;xcb:nograb"}) {
    ::setenv("QT_QPA_PLATFORM", chosen, 1);
    EXPECT_EQ(removeForeignParts(programs), Removed()) << chosen;
    EXPECT_STREQ(std::getenv("QT_QPA_PLATFORM"), chosen);
  }
}

TEST_F(PackagedToolkit, APartThatIsNotPackagedIsNotHeeded) {
  std::filesystem::remove(folder.path() / "PlugIns/platforms/libqxcb.so");
  ::setenv("QT_QPA_PLATFORM", "xcb", 1);
  EXPECT_EQ(removeForeignParts(programs), Removed{"QT_QPA_PLATFORM=xcb"});
}

TEST_F(PackagedToolkit, TheSystemsOwnToolkitIsLeftAlone) {
  std::filesystem::remove(folder.path() / "Linux/qt.conf");
  ::setenv("QT_PLUGIN_PATH", "/usr/lib/plugins", 1);
  ::setenv("QT_QPA_PLATFORM", "eglfs", 1);
  EXPECT_EQ(removeForeignParts(programs), Removed());
}

}  // namespace
}  // namespace halvorn
