#include "Platform/bundles/linux/launching/BundleRegistration.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/launching/DesktopEntry.h"
#include "Platform/bundles/linux/launching/IconPictures.h"
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/bundles/linux/launching/LinuxWorkspace.h"
#include "Platform/session/linux/XdgFolders.h"
#include "tests/support/LaunchReport.h"
#include "tests/support/PngData.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

constexpr char kProbe[] = KT_LAUNCH_PROBE;

class BundleRegistrationTest : public testing::Test {
 protected:
  BundleRegistrationTest() { fs::create_directories(folder_ / "home"); }

  [[nodiscard]] Environment environment() const {
    return Environment(Environment::Variables{
        {"HOME", folder_ / "home"}, {"XDG_DATA_HOME", data()}, {"PATH", "/usr/local/bin:/usr/bin:/bin"}});
  }
  [[nodiscard]] std::string data() const { return folder_ / "data"; }
  int registerBundle(const std::string& urlText, IconDrawing drawing = {}) const {
    const XdgFolders folders(environment());
    const LinuxBundles bundles("/usr/bin/test", {});
    const Launcher launcher(environment(), folders);
    return LinuxWorkspace(bundles, folders, environment(), launcher, {}, std::move(drawing))
        .registerBundle(Text(urlText));
  }
  std::string bundle(const std::string& name, const std::string& moreInfo = "") const {
    return putProbeBundle(folder_.path().string(), name, kProbe, moreInfo);
  }
  [[nodiscard]] std::vector<std::string> entries() const {
    std::vector<std::string> paths;
    if (!fs::exists(data() + "/applications")) return paths;
    for (const auto& item : fs::directory_iterator(data() + "/applications")) {
      if (item.path().extension() == ".desktop") paths.push_back(item.path().string());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
  }
  [[nodiscard]] std::vector<std::string> icons() const {
    std::vector<std::string> paths;
    if (!fs::exists(data() + "/icons")) return paths;
    for (const auto& item : fs::recursive_directory_iterator(data() + "/icons/hicolor")) {
      if (item.is_regular_file())
        paths.push_back(fs::relative(item.path(), data() + "/icons/hicolor").string());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
  }
  void expectValid(const std::string& entry) const {
    if (!programExists("desktop-file-validate")) GTEST_SKIP() << "desktop-file-utils is not installed";
    const CommandResult result = runCommand({"desktop-file-validate", entry});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "");
  }
  // Starts the entry as a desktop's menu does, and says whether the bundle's own program ran.
  [[nodiscard]] bool startsByDesktop(const std::string& entry) const {
    const ChildOptions options{.environment = {"HOME=" + (folder_ / "home"), "PATH=/usr/bin:/bin",
                                               "GIO_USE_VFS=local", "DBUS_SESSION_BUS_ADDRESS=disabled:"}};
    const CommandResult result = runCommand({"gio", "launch", entry}, options);
    EXPECT_EQ(result.status, 0) << result.output;
    return LaunchReport::in(folder_.path().string()).exists();
  }

  TemporaryFolder folder_;
};

TEST_F(BundleRegistrationTest, ABundleGetsAnEntryThatDesktopsAcceptAndStart) {
  ASSERT_EQ(registerBundle(bundle("Foo", plistEntry("CFBundleIdentifier", "com.example.foo"))), 0);
  ASSERT_EQ(entries().size(), 1u);
  EXPECT_EQ(entries().front(), data() + "/applications/halvorn-app-com.example.foo.desktop");
  const auto entry = DesktopEntry::read(entries().front());
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->value("Name"), "Foo");
  EXPECT_EQ(entry->value("TryExec"), folder_ / "Foo.app/Contents/Linux/Probe");
  EXPECT_EQ(entry->value("StartupWMClass"), "Probe") << "what its windows say";
  EXPECT_EQ(entry->value("Icon"), std::nullopt);
  expectValid(entries().front());
  if (!programExists("gio")) GTEST_SKIP() << "libglib2.0-bin is not installed";
  EXPECT_TRUE(startsByDesktop(entries().front()));
}

TEST_F(BundleRegistrationTest, HostileNamesAreWrittenSafelyAndStart) {
  if (!programExists("gio")) GTEST_SKIP() << "libglib2.0-bin is not installed";
  for (const std::string name :
       {"Fo o", "F'o", "F\"o\"", "F$(touch x)`id`", "F\\o\\n", "F%f%%u", "F\nExec=evil\n[x]", "F\to", "F=o;",
        "#F", "Grüße 😀", " F ", "F&o|p>q<r*?~!(){}[]"}) {
    fs::remove_all(data());
    ASSERT_EQ(registerBundle(bundle(name)), 0) << name;
    ASSERT_EQ(entries().size(), 1u);
    expectValid(entries().front());
    EXPECT_TRUE(startsByDesktop(entries().front())) << name;
    EXPECT_EQ(splitExec(*DesktopEntry::read(entries().front())->value("Exec")).back(),
              folder_.path().string() + "/" + name + ".app/Contents/Linux/Probe");
  }
}

TEST_F(BundleRegistrationTest, APathWithControlCharactersIsRefusedOrItsEntryIsValid) {
  std::vector<std::string> characters;
  for (char character = 1; character < ' '; ++character) characters.emplace_back(1, character);
  for (const char* const other : {"\x7F", "\xC2\x80", "\xC2\x85", "\xC2\x9F", "\xE2\x80\xA8"}) {
    characters.emplace_back(other);
  }
  int refused = 0;
  for (const std::string& character : characters) {
    fs::remove_all(data());
    const int status = registerBundle(bundle("F" + character + "o"));
    if (status == RegistrationStatus::kUnusablePath) {
      ++refused;
      EXPECT_TRUE(entries().empty()) << testing::PrintToString(character);
    } else {
      EXPECT_EQ(status, 0) << testing::PrintToString(character);
      ASSERT_EQ(entries().size(), 1u);
      expectValid(entries().front());
    }
  }
  EXPECT_LT(refused, static_cast<int>(characters.size())) << "ends of lines and tabulators can be written";
}

TEST_F(BundleRegistrationTest, AnIdentifierChoosesNoFileOutsideItsOwnKind) {
  const std::string others = putFile(data() + "/applications/firefox.desktop", "mine");
  int number = 0;
  const std::vector<std::string> identifiers = {"firefox", "../../../evil",        "a/b",     "",
                                                "a b",     std::string(5000, 'x'), "\xC3\xA4"};
  for (const std::string& identifier : identifiers) {
    const std::string path =
        bundle("B" + std::to_string(number++), plistEntry("CFBundleIdentifier", identifier));
    EXPECT_EQ(registerBundle(path), 0) << identifier.substr(0, 20);
  }
  EXPECT_EQ(contentsOf(others), "mine");
  EXPECT_EQ(entries().size(), 8u);
  for (const std::string& entry : entries()) {
    EXPECT_TRUE(entry == others || fs::path(entry).filename().string().starts_with("halvorn-app-")) << entry;
    if (entry != others) expectValid(entry);
  }
  EXPECT_FALSE(fs::exists(folder_ / "evil.desktop"));
}

TEST_F(BundleRegistrationTest, NamesInOtherLanguagesComeAlong) {
  const std::string path = bundle("Foo", plistEntry("CFBundleDisplayName", "Foo"));
  putFile(path + "/Contents/Resources/de.lproj/InfoPlist.strings",
          "CFBundleDisplayName = \"Fu\\nName=Evil\";CFBundleName = \"Fü\";");
  putFile(path + "/Contents/Resources/pt-BR.lproj/InfoPlist.strings", "CFBundleDisplayName = \"Fó\\\\o\";");
  putFile(path + "/Contents/Resources/pt_PT.lproj/InfoPlist.strings", "CFBundleDisplayName = \"Fô\";");
  putFile(path + "/Contents/Resources/sr_Latn.lproj/InfoPlist.strings", "CFBundleDisplayName = \"Fuj\";");
  putFile(path + "/Contents/Resources/zh-Hant.lproj/InfoPlist.strings", "CFBundleDisplayName = \"福\";");
  putFile(path + "/Contents/Resources/b]\nx.lproj/InfoPlist.strings", "CFBundleDisplayName = \"Evil\";");
  ASSERT_EQ(registerBundle(path), 0);
  const auto entry = DesktopEntry::read(entries().front());
  EXPECT_EQ(entry->value("Name"), "Foo");
  EXPECT_EQ(entry->value("Name[de]"), "Fü") << "the one with a line end is no name";
  EXPECT_EQ(entry->value("Name[pt_BR]"), "Fó\\o");
  EXPECT_EQ(entry->value("Name[pt_PT]"), "Fô") << "named as locales are";
  EXPECT_EQ(entry->value("Name[sr@latin]"), "Fuj");
  EXPECT_EQ(entry->value("Name[zh_TW]"), "福");
  EXPECT_EQ(contentsOf(entries().front()).find("Evil"), std::string::npos);
  expectValid(entries().front());
}

TEST_F(BundleRegistrationTest, AHundredLanguagesAreNotTooMany) {
  const std::string path = bundle("Foo", plistEntry("CFBundleDisplayName", "Foo"));
  for (int i = 0; i < 100; ++i) {
    const std::string language = {'q', static_cast<char>('a' + i / 10), static_cast<char>('a' + i % 10)};
    putFile(path + "/Contents/Resources/" + language + ".lproj/InfoPlist.strings",
            "CFBundleDisplayName = \"Fu " + language + "\";");
  }
  ASSERT_EQ(registerBundle(path), 0);
  const auto entry = DesktopEntry::read(entries().front());
  EXPECT_EQ(entry->value("Name[qaa]"), "Fu qaa");
  EXPECT_EQ(entry->value("Name[qjj]"), "Fu qjj");
}

TEST_F(BundleRegistrationTest, ThePicturesOfItsIconGoIntoTheIconTheme) {
  const std::string path =
      bundle("Foo", plistEntry("CFBundleIdentifier", "foo") + plistEntry("CFBundleIconFile", "Foo"));
  putFile(path + "/Contents/Resources/Foo.icns", icnsOf({{"ic07", pngOf(128, 128)},
                                                         {"ic08", pngOf(256, 256)},
                                                         {"icp6", pngOf(100, 100)},
                                                         {"it32", "old"},
                                                         {"ic10", pngOf(1024, 1024)},
                                                         {"ic09", "\0\0\0\x0CjP  "}}));
  ASSERT_EQ(registerBundle(path), 0);
  EXPECT_EQ(icons(),
            (std::vector<std::string>{"128x128/apps/halvorn-app-foo.png", "256x256/apps/halvorn-app-foo.png",
                                      "512x512/apps/halvorn-app-foo.png", "96x96/apps/halvorn-app-foo.png"}));
  EXPECT_EQ(contentsOf(data() + "/icons/hicolor/128x128/apps/halvorn-app-foo.png"), pngOf(128, 128));
  EXPECT_EQ(DesktopEntry::read(entries().front())->value("Icon"), "halvorn-app-foo");
  expectValid(entries().front());
}

TEST_F(BundleRegistrationTest, ASecondRegistrationReplacesTheFirst) {
  const std::string info = plistEntry("CFBundleIdentifier", "foo") + plistEntry("CFBundleIconFile", "Foo");
  const std::string first = bundle("Foo", info);
  putFile(first + "/Contents/Resources/Foo.icns", icnsOf({{"ic07", pngOf(128, 128)}}));
  ASSERT_EQ(registerBundle(first), 0);
  const std::string second = bundle("Foo 2", info);
  putFile(second + "/Contents/Resources/Foo.png", pngOf(48, 48));
  ASSERT_EQ(registerBundle(second), 0);
  ASSERT_EQ(entries().size(), 1u);
  EXPECT_EQ(DesktopEntry::read(entries().front())->value("Name"), "Foo 2");
  EXPECT_EQ(icons(), std::vector<std::string>{"48x48/apps/halvorn-app-foo.png"});
}

TEST_F(BundleRegistrationTest, AnIconThatDesktopsCannotReadIsDrawnForThem) {
  const std::string path =
      bundle("Foo", plistEntry("CFBundleIdentifier", "foo") + plistEntry("CFBundleIconFile", "Foo.tiff"));
  putFile(path + "/Contents/Resources/Foo.tiff", "II*");
  std::string drawn;
  ASSERT_EQ(registerBundle(path,
                           [&](std::string_view bytes) {
                             drawn = bytes;
                             return std::vector<IconPicture>{{32, pngOf(32, 32)}};
                           }),
            0);
  EXPECT_EQ(drawn, "II*");
  EXPECT_EQ(icons(), std::vector<std::string>{"32x32/apps/halvorn-app-foo.png"});
  EXPECT_EQ(DesktopEntry::read(entries().front())->value("Icon"), "halvorn-app-foo");
}

TEST_F(BundleRegistrationTest, AnIconThatDesktopsReadIsTakenAsItIs) {
  const std::string path = bundle("Foo", plistEntry("CFBundleIconFile", "Foo.png"));
  putFile(path + "/Contents/Resources/Foo.png", pngOf(16, 16));
  const auto nobody = [](std::string_view) -> std::vector<IconPicture> {
    ADD_FAILURE() << "nothing is to be drawn";
    return {};
  };
  ASSERT_EQ(registerBundle(path, nobody), 0);
  EXPECT_EQ(icons().size(), 1U);
}

TEST_F(BundleRegistrationTest, ABrokenIconIsLeftOut) {
  const std::string path = bundle("Foo", plistEntry("CFBundleIconFile", "Foo"));
  std::string broken = icnsOf({{"ic07", pngOf(128, 128)}});
  broken.resize(broken.size() / 2);
  for (const std::string& bytes :
       {broken, std::string("icns"), std::string(), std::string("\x89PNG\r\n\x1A\n")}) {
    putFile(path + "/Contents/Resources/Foo.icns", bytes);
    EXPECT_EQ(registerBundle(path), 0);
    EXPECT_TRUE(icons().empty());
    EXPECT_EQ(DesktopEntry::read(entries().front())->value("Icon"), std::nullopt);
  }
}

TEST_F(BundleRegistrationTest, ThePathMayComeAsTheTextOfAnAddress) {
  const std::string path = bundle("F o%20o");
  EXPECT_EQ(registerBundle(path), 0);
  EXPECT_EQ(registerBundle("file://" + folder_.path().string() + "/F%20o%2520o.app"), 0);
  EXPECT_EQ(entries().size(), 1u);
  EXPECT_EQ(pathFromUrlText("file:///a%2Fb%C3%A4%zz%4"), Text("/a/bä%zz%4"));
  EXPECT_EQ(pathFromUrlText("/a%20b"), Text("/a%20b")) << "a path is no address";
}

TEST_F(BundleRegistrationTest, WhatCannotBeRegisteredGivesANegativeStatus) {
  putFile(folder_ / "file.app", "x");
  fs::create_directories(folder_ / "Empty.app/Contents");
  EXPECT_EQ(registerBundle(folder_ / "missing.app"), RegistrationStatus::kNotFound);
  EXPECT_EQ(registerBundle(""), RegistrationStatus::kNotFound);
  EXPECT_EQ(registerBundle(folder_ / "file.app"), RegistrationStatus::kNotAnApplication);
  EXPECT_EQ(registerBundle(folder_ / "Empty.app"), RegistrationStatus::kNotAnApplication);
  EXPECT_EQ(registerBundle(folder_ / "home"), RegistrationStatus::kNotAnApplication);
  EXPECT_EQ(registerBundle(bundle("F\xE4o")), RegistrationStatus::kUnusablePath);
  EXPECT_TRUE(entries().empty());
  putFile(data(), "a file where the folder should be");
  EXPECT_EQ(registerBundle(bundle("Foo")), RegistrationStatus::kNotWritten);
  EXPECT_EQ(contentsOf(data()), "a file where the folder should be");
}

TEST_F(BundleRegistrationTest, TheDatabaseIsRefreshed) {
  if (!programExists("update-desktop-database")) GTEST_SKIP() << "desktop-file-utils is not installed";
  ASSERT_EQ(registerBundle(bundle("Foo")), 0);
  EXPECT_TRUE(fs::exists(data() + "/applications/mimeinfo.cache"));
}

TEST_F(BundleRegistrationTest, NoUnfinishedFileIsLeft) {
  const std::string path = bundle("Foo", plistEntry("CFBundleIconFile", "Foo"));
  putFile(path + "/Contents/Resources/Foo.png", pngOf(48, 48));
  ASSERT_EQ(registerBundle(path), 0);
  for (const auto& item : fs::recursive_directory_iterator(data())) {
    if (!item.is_regular_file()) continue;
    const std::string name = item.path().filename().string();
    EXPECT_TRUE(name.ends_with(".desktop") || name.ends_with(".png") || name == "mimeinfo.cache") << name;
    EXPECT_EQ(static_cast<int>(item.status().permissions()) & 0644, 0644) << name;
  }
}

TEST_F(BundleRegistrationTest, EverythingThatExistsHasAnIcon) {
  const XdgFolders folders(environment());
  const LinuxBundles bundles("/usr/bin/test", {});
  const Launcher launcher(environment(), folders);
  LinuxWorkspace workspace(bundles, folders, environment(), launcher, {});
  EXPECT_TRUE(workspace.hasIcon(Text(bundle("Foo"))));
  EXPECT_FALSE(workspace.hasIcon(Text(folder_ / "missing.app")));
}

TEST(IconPictures, NoMutationOfAnIconDoesHarm) {
  const std::string seed = icnsOf({{"icp4", pngOf(16, 16)}, {"ic11", pngOf(32, 32)}});
  ASSERT_EQ(picturesInIcon(seed).size(), 2u);
  EXPECT_EQ(picturesInIcon(pngOf(20, 21)).size(), 0u) << "not square";
  EXPECT_EQ(picturesInIcon(pngOf(1025, 1025)).size(), 0u) << "too large";
  std::mt19937 random(4711);
  std::size_t found = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string bytes = seed;
    for (std::uint32_t change = random() % 6; change > 0; --change)
      bytes[random() % bytes.size()] = static_cast<char>(random());
    if (random() % 4 == 0) bytes.resize(random() % bytes.size());
    found += picturesInIcon(bytes).size();
  }
  EXPECT_GT(found, 1000u);
  EXPECT_LT(found, 6000u);
}

}  // namespace
}  // namespace halvorn
