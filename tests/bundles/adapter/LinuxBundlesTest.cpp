#include "Platform/bundles/linux/LinuxBundles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "Platform/bundles/linux/BundleFolder.h"
#include "Platform/running/linux/ThisProgram.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

class LinuxBundlesOnDisk : public testing::Test {
 protected:
  LinuxBundles bundles(std::vector<Text> languages = {}) const {
    return LinuxBundles("/usr/bin/test", std::move(languages));
  }
  std::string file(const std::string& name, const std::string& bytes = "x",
                   Executable executable = Executable::No) const {
    return putFile(folder_ / name, bytes, executable);
  }
  Text path(const std::string& name) const { return Text(folder_ / name); }

  TemporaryFolder folder_;
};

TEST_F(LinuxBundlesOnDisk, ABundleWithContentsIsReadFromItsInformationFile) {
  file("Foo.app/Contents/Info.plist", infoPlist(plistEntry("CFBundleName", "Foo")));
  const auto info = bundles().infoDictionary(path("Foo.app"));
  EXPECT_EQ(info, (PropertyDictionary{{"CFBundleName", "Foo"}}));
  EXPECT_EQ(bundles().infoDictionary(path("Foo.app/")), info);
}

TEST_F(LinuxBundlesOnDisk, AFlatBundleIsReadFromEitherOfItsFiles) {
  file("A.app/Resources/Info-gnustep.plist", "{ NSExecutable = A1; }");
  file("A.app/Resources/Info.plist", "{ NSExecutable = A2; }");
  file("B.app/Resources/Info.plist", infoPlist(plistEntry("CFBundleName", "B")));
  file("C.app/Info.plist", "{ a = c; }");
  EXPECT_EQ(textForKey(*bundles().infoDictionary(path("A.app")), "NSExecutable"), Text("A1"));
  EXPECT_EQ(textForKey(*bundles().infoDictionary(path("B.app")), "CFBundleName"), Text("B"));
  EXPECT_EQ(textForKey(*bundles().infoDictionary(path("C.app")), "a"), Text("c"));
}

TEST_F(LinuxBundlesOnDisk, InAFlatBundleItsOwnKeysStandInForMissingOnes) {
  file("A.app/Resources/Info-gnustep.plist",
       "{ NSExecutable = Prog; NSIcon = \"A.tiff\"; ApplicationRelease = \"1.2\"; CFBundleIconFile = B; }");
  const auto info = bundles().infoDictionary(path("A.app"));
  ASSERT_TRUE(info);
  EXPECT_EQ(textForKey(*info, "CFBundleExecutable"), Text("Prog"));
  EXPECT_EQ(textForKey(*info, "CFBundleIconFile"), Text("B"));
  EXPECT_EQ(textForKey(*info, "CFBundleShortVersionString"), Text("1.2"));
  EXPECT_EQ(textForKey(*info, "NSIcon"), Text("A.tiff"));
}

TEST_F(LinuxBundlesOnDisk, AKeyForLinuxAnswersForTheKey) {
  file("Both.app/Contents/Info.plist",
       infoPlist(
           plistEntry("LSMinimumSystemVersion", "10.13") + plistEntry("LSMinimumSystemVersion-linux", "6.1") +
           plistEntry("LSMinimumSystemVersion-macos", "11.0") + plistEntry("CFBundleExecutable", "Foo") +
           plistEntry("CFBundleExecutable-linux", "foo") + plistEntry("CFBundleSignature-linux", "FOOX") +
           "<key>Types-linux</key><array><true/></array><key>-linux</key><string>x</string>"));
  file("Both.app/Contents/Linux/foo");
  file("Both.app/Contents/MacOS/Foo");
  const auto info = bundles().infoDictionary(path("Both.app"));
  ASSERT_TRUE(info);
  EXPECT_EQ(textForKey(*info, "LSMinimumSystemVersion"), Text("6.1"));
  EXPECT_EQ(textForKey(*info, "LSMinimumSystemVersion-macos"), Text("11.0"));
  EXPECT_EQ(textForKey(*info, "CFBundleSignature"), Text("FOOX"));
  EXPECT_EQ(info->at("Types"), PropertyValue(PropertyArray{true}));
  EXPECT_EQ(textForKey(*info, ""), std::nullopt) << "of no key at all";
  EXPECT_EQ(bundles().executablePath(path("Both.app")), path("Both.app/Contents/Linux/foo"));
}

TEST_F(LinuxBundlesOnDisk, InAFlatBundleAKeyForLinuxStandsInLikeTheKey) {
  file("A.app/Resources/Info-gnustep.plist",
       "{ NSExecutable = A1; \"NSExecutable-linux\" = A2; \"NSIcon-linux\" = \"A.tiff\"; }");
  const auto info = bundles().infoDictionary(path("A.app"));
  ASSERT_TRUE(info);
  EXPECT_EQ(textForKey(*info, "CFBundleExecutable"), Text("A2"));
  EXPECT_EQ(textForKey(*info, "CFBundleIconFile"), Text("A.tiff"));
}

TEST_F(LinuxBundlesOnDisk, WhatCannotBeReadAsInformationCountsAsMissing) {
  file("Broken.app/Contents/Info.plist", "<plist><dict><key>");
  file("List.app/Contents/Info.plist", "(a, b)");
  fs::create_directories(folder_ / "Folder.app/Contents/Info.plist");
  file("Huge.app/Contents/Info.plist", "{ a = \"" + std::string(9UL * 1024 * 1024, 'x') + "\"; }");
  fs::create_directories(folder_ / "Pipe.app/Contents");
  ASSERT_EQ(::mkfifo((folder_ / "Pipe.app/Contents/Info.plist").c_str(), 0600), 0);
  file("Plain", "x");
  for (const char* const name :
       {"Broken.app", "List.app", "Folder.app", "Huge.app", "Pipe.app", "Plain", "Gone.app", ""}) {
    EXPECT_EQ(bundles().infoDictionary(path(name)), std::nullopt) << name;
  }
  EXPECT_EQ(bundles().infoDictionary(Text("")), std::nullopt);
  EXPECT_EQ(bundles().infoDictionary(Text(std::string("/tmp\0/x", 7))), std::nullopt);
}

TEST_F(LinuxBundlesOnDisk, TheProgramForLinuxComesBeforeTheOther) {
  const std::string info = infoPlist(plistEntry("CFBundleExecutable", "Foo"));
  file("Both.app/Contents/Info.plist", info);
  file("Both.app/Contents/Linux/Foo");
  file("Both.app/Contents/MacOS/Foo");
  file("Other.app/Contents/Info.plist", info);
  file("Other.app/Contents/MacOS/Foo", "\xCF\xFA\xED\xFE");
  file("None.app/Contents/Info.plist", info);
  file("Nameless.app/Contents/Info.plist", infoPlist(""));
  file("Nameless.app/Contents/Linux/Nameless");
  EXPECT_EQ(bundles().executablePath(path("Both.app")), path("Both.app/Contents/Linux/Foo"));
  EXPECT_EQ(bundles().executablePath(path("Other.app")), path("Other.app/Contents/MacOS/Foo"));
  EXPECT_EQ(bundles().executablePath(path("None.app")), std::nullopt);
  EXPECT_EQ(bundles().executablePath(path("Nameless.app")), std::nullopt);
}

TEST_F(LinuxBundlesOnDisk, AFlatBundlesProgramIsNamedByItsInformationOrLikeTheBundle) {
  file("A.app/Resources/Info-gnustep.plist", "{ NSExecutable = Prog; }");
  file("A.app/Prog");
  file("B.app/B");
  file("folder/folder");
  EXPECT_EQ(bundles().executablePath(path("A.app")), path("A.app/Prog"));
  EXPECT_EQ(bundles().executablePath(path("B.app")), path("B.app/B"));
  EXPECT_EQ(bundles().executablePath(path("folder")), std::nullopt);
}

TEST_F(LinuxBundlesOnDisk, AProgramsNameIsNoPath) {
  file("outside", "x", Executable::Yes);
  file("A.app/Contents/Linux/sub/prog", "x", Executable::Yes);
  int number = 0;
  for (const char* const name : {"../../../outside", "sub/prog", "/bin/sh", "..", ".", ""}) {
    const std::string bundle = "H" + std::to_string(number++) + ".app";
    file(bundle + "/Contents/Info.plist", infoPlist(plistEntry("CFBundleExecutable", name)));
    file(bundle + "/Contents/Linux/sub/prog", "x", Executable::Yes);
    EXPECT_EQ(bundles().executablePath(path(bundle)), std::nullopt) << name;
  }
}

TEST_F(LinuxBundlesOnDisk, ResourcesAreTakenInThePersonsLanguageFirst) {
  file("Foo.app/Contents/Info.plist", infoPlist(plistEntry("CFBundleDevelopmentRegion", "fr")));
  const std::string resources = "Foo.app/Contents/Resources/";
  for (const char* const name :
       {"a.txt", "de.lproj/a.txt", "en.lproj/a.txt", "de.lproj/b.txt", "fr.lproj/c.txt", "en.lproj/d.txt",
        "German.lproj/e.txt", "en.lproj/c.txt", "plain"}) {
    file(resources + name);
  }
  const LinuxBundles german = bundles({"de_AT", "en"});
  EXPECT_EQ(german.pathForResource(path("Foo.app"), "a", "txt"), path(resources + "de.lproj/a.txt"));
  EXPECT_EQ(bundles({"it"}).pathForResource(path("Foo.app"), "a", "txt"), path(resources + "a.txt"));
  EXPECT_EQ(bundles({"it"}).pathForResource(path("Foo.app"), "c", "txt"), path(resources + "fr.lproj/c.txt"));
  EXPECT_EQ(bundles().pathForResource(path("Foo.app"), "d", "txt"), path(resources + "en.lproj/d.txt"));
  EXPECT_EQ(german.pathForResource(path("Foo.app"), "e", "txt"), path(resources + "German.lproj/e.txt"));
  EXPECT_EQ(german.pathForResource(path("Foo.app"), "plain", ""), path(resources + "plain"));
  EXPECT_EQ(german.pathForResource(path("Foo.app"), "plain", "txt"), std::nullopt);
}

TEST_F(LinuxBundlesOnDisk, NoResourceIsTakenFromOutsideTheBundle) {
  const std::string secret = file("secret.png");
  const std::string resources = folder_ / "Foo.app/Contents/Resources";
  file("Foo.app/Contents/Resources/inside.png");
  fs::create_symlink(secret, resources + "/absolute.png");
  fs::create_symlink("../../../secret.png", resources + "/relative.png");
  fs::create_directory_symlink(folder_.path(), resources + "/folder");
  fs::create_symlink("inside.png", resources + "/good.png");
  fs::create_directory_symlink(folder_.path(), resources + "/de.lproj");
  const LinuxBundles german = bundles({"de"});
  for (const char* const name :
       {"absolute", "relative", "folder/secret", "../../../secret", "./../../../secret", "secret"}) {
    EXPECT_EQ(german.pathForResource(path("Foo.app"), name, "png"), std::nullopt) << name;
  }
  EXPECT_EQ(german.pathForResource(path("Foo.app"), secret, ""), std::nullopt);
  EXPECT_EQ(german.pathForResource(path("Foo.app"), "good", "png"),
            path("Foo.app/Contents/Resources/good.png"));
  std::vector<Text> listed = german.resourcePaths(path("Foo.app"));
  std::sort(listed.begin(), listed.end());
  EXPECT_EQ(listed, (std::vector<Text>{path("Foo.app/Contents/Resources/good.png"),
                                       path("Foo.app/Contents/Resources/inside.png")}));
}

TEST_F(LinuxBundlesOnDisk, InformationAndProgramFromOutsideTheBundleCountAsMissing) {
  const std::string info = file("Info.plist", infoPlist(plistEntry("CFBundleExecutable", "Foo")));
  fs::create_directories(folder_ / "Foo.app/Contents");
  fs::create_symlink(info, folder_ / "Foo.app/Contents/Info.plist");
  EXPECT_EQ(bundles().infoDictionary(path("Foo.app")), std::nullopt);
  file("Bar.app/Contents/Info.plist", infoPlist(plistEntry("CFBundleExecutable", "sh")));
  fs::create_directory_symlink("/bin", folder_ / "Bar.app/Contents/Linux");
  EXPECT_EQ(bundles().executablePath(path("Bar.app")), std::nullopt);
}

TEST_F(LinuxBundlesOnDisk, ABundleMayItselfBeALink) {
  file("real/Foo.app/Contents/Info.plist", infoPlist(plistEntry("CFBundleExecutable", "Foo")));
  file("real/Foo.app/Contents/Linux/Foo");
  fs::create_directory_symlink(folder_ / "real/Foo.app", folder_ / "Foo.app");
  EXPECT_EQ(bundles().executablePath(path("Foo.app")), path("Foo.app/Contents/Linux/Foo"));
}

TEST_F(LinuxBundlesOnDisk, AFlatBundlesResourcesElsewhereCountOnlyWhenTheAdministratorPutThemThere) {
  file("share/Foo.app/Info-gnustep.plist", "{ NSExecutable = Foo; }");
  file("share/Other/Info-gnustep.plist", "{ NSExecutable = Foo; }");
  file("Foo.app/Foo");
  const std::string link = folder_ / "Foo.app/Resources";
  fs::create_directory_symlink("../share/Foo.app", link);
  const bool isAdministrator = ::geteuid() == 0;
  EXPECT_EQ(bundles().infoDictionary(path("Foo.app")).has_value(), isAdministrator);
  if (!isAdministrator) return;
  fs::permissions(folder_ / "share/Foo.app", static_cast<fs::perms>(0777));
  EXPECT_EQ(bundles().infoDictionary(path("Foo.app")), std::nullopt) << "others may write there";
  fs::permissions(folder_ / "share/Foo.app", static_cast<fs::perms>(0755));
  ASSERT_EQ(::chown((folder_ / "share/Foo.app").c_str(), 1, 0), 0);
  EXPECT_EQ(bundles().infoDictionary(path("Foo.app")), std::nullopt) << "the folder is somebody else's";
  ASSERT_EQ(::chown((folder_ / "share/Foo.app").c_str(), 0, 0), 0);
  ASSERT_EQ(::lchown(link.c_str(), 1, 0), 0);
  EXPECT_EQ(bundles().infoDictionary(path("Foo.app")), std::nullopt) << "the link is somebody else's";
  fs::remove(link);
  fs::create_directory_symlink("../share/Other", link);
  EXPECT_EQ(bundles().infoDictionary(path("Foo.app")), std::nullopt) << "another name";
}

TEST_F(LinuxBundlesOnDisk, NamesMayHoldAnyBytes) {
  const std::string name = "F\xE4 \"o'\n%.app";
  file(name + "/Contents/Info.plist", infoPlist(plistEntry("CFBundleExecutable", "Fo o")));
  file(name + "/Contents/Linux/Fo o");
  file(name + "/Contents/Resources/r\xFF.png");
  EXPECT_EQ(bundles().executablePath(path(name))->bytes(), folder_ / name + "/Contents/Linux/Fo o");
  EXPECT_EQ(bundles().pathForResource(path(name), Text("r\xFF"), "png")->bytes(),
            folder_ / name + "/Contents/Resources/r\xFF.png");
}

TEST_F(LinuxBundlesOnDisk, TheMainBundleIsTheInnermostAroundTheProgram) {
  fs::create_directories(folder_ / "Outer.app/Contents/Resources/Inner.app/Contents/Linux");
  const auto mainBundle = [&](const std::string& program) {
    return LinuxBundles(path(program), {}).mainBundlePath();
  };
  EXPECT_EQ(mainBundle("Outer.app/Contents/Resources/Inner.app/Contents/Linux/Inner"),
            path("Outer.app/Contents/Resources/Inner.app"));
  EXPECT_EQ(mainBundle("Outer.app/Contents/Resources/tool"), path("Outer.app"));
  EXPECT_EQ(mainBundle("tool.app"), Text(folder_.path().string())) << "a program is no bundle";
  EXPECT_EQ(mainBundle("gone.app/tool"), path("gone.app")) << "no such folder, so it is the program's folder";
}

TEST(LinuxBundles, ThisProgramsPathIsThatOfTheRunningFile) {
  EXPECT_EQ(pathOfThisProgram().bytes(), fs::read_symlink("/proc/self/exe").string());
}

// Bundles that nobody here made, as the packages aclock.app and edenmath.app install them.
class DistributionBundle : public testing::TestWithParam<const char*> {};

TEST_P(DistributionBundle, IsReadWhereItIsAndWhereItWasCopiedTo) {
  const std::string name = GetParam();
  const std::string installed = "/usr/lib/GNUstep/Applications/" + name + ".app";
  if (!fs::exists(installed)) GTEST_SKIP() << "the package with " << installed << " is not installed";
  const TemporaryFolder folder;
  const std::string copied = folder / (name + ".app");
  fs::create_directories(copied);
  fs::copy_file(installed + "/" + name, copied + "/" + name);
  fs::copy(fs::canonical(installed + "/Resources"), copied + "/Resources", fs::copy_options::recursive);
  const LinuxBundles bundles("/usr/bin/test", {"en"});
  for (const std::string& bundle : {installed, copied}) {
    const auto info = bundles.infoDictionary(bundle);
    ASSERT_TRUE(info) << bundle;
    EXPECT_EQ(textForKey(*info, "CFBundleExecutable"), Text(name));
    EXPECT_TRUE(textForKey(*info, "CFBundleShortVersionString"));
    EXPECT_EQ(bundles.executablePath(bundle), Text(bundle + "/" + name));
    EXPECT_EQ(bundles.pathForResource(bundle, name, "tiff"), Text(bundle + "/Resources/" + name + ".tiff"));
    EXPECT_GE(bundles.resourcePaths(bundle).size(), 3u);
  }
}

INSTANTIATE_TEST_SUITE_P(Packages, DistributionBundle, testing::Values("AClock", "EdenMath"),
                         [](const auto& which) { return std::string(which.param); });

}  // namespace
}  // namespace halvorn
