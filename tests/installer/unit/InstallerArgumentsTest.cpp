#include <gtest/gtest.h>

#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "tests/installer/unit/InstallerFixture.h"

namespace halvorn {
namespace {

using Texts = std::vector<Text>;

class Arguments : public InstallerFixture {
 protected:
  // The dictionary of this command line alone, the program path in front.
  ArgumentDictionary extracted(Texts arguments) {
    arguments.insert(arguments.begin(), "/installer");
    ArgumentDictionary dictionary;
    InstallerArguments(dictionary, files, log).extract(arguments);
    return dictionary;
  }
};

TEST_F(Arguments, AreLoggedWholeBeforeAnythingElse) {
  static_cast<void>(extracted({"-productName", "Foo Bar"}));
  EXPECT_EQ(log.lines(),
            std::vector<std::string>{"arguments: (\"/installer\", \"-productName\", \"Foo Bar\")"});
}

TEST_F(Arguments, WithoutAnyOnlyTheProgramPathIsStoredUnderTheEmptyKey) {
  EXPECT_EQ(extracted({}).description(), Text("{\"\" = \"/installer\"; }"));
}

TEST_F(Arguments, AKeyEndingInCodeTakesAllItsValuesAlsoWhenGivenTwice) {
  const Texts both = {"ABCD", "EFGH"};
  EXPECT_EQ(*extracted({"-quitCode", "ABCD", "EFGH"}).list("quitCode"), both);
  EXPECT_EQ(*extracted({"-quitCode", "ABCD", "-quitCode", "EFGH"}).list("quitCode"), both);
  EXPECT_EQ(*extracted({"-anyCode", "x"}).list("anyCode"), Texts{"x"});
}

TEST_F(Arguments, TheTestForCodeMindsUpperAndLowerCase) {
  EXPECT_EQ(extracted({"-barcode", "1", "2"}).text("barcode"), Text("2"));
}

TEST_F(Arguments, AnyOtherKeyKeepsTheLastValue) {
  EXPECT_EQ(extracted({"-productName", "A", "B"}).text("productName"), Text("B"));
  EXPECT_EQ(extracted({"-productName", "A", "-productName", "B"}).text("productName"), Text("B"));
}

TEST_F(Arguments, AKeyFollowedByAKeyIsDropped) {
  const ArgumentDictionary dictionary = extracted({"-iconPath", "-version", "2"});
  EXPECT_FALSE(dictionary.has("iconPath"));
  EXPECT_EQ(dictionary.text("version"), Text("2"));
}

TEST_F(Arguments, AKeyAsTheLastElementHasNoEntry) {
  EXPECT_FALSE(extracted({"-productName"}).has("productName"));
}

TEST_F(Arguments, AValueNeverBeginsWithAHyphen) {
  EXPECT_EQ(extracted({"-completionQuit", "-2"}).description(), Text("{\"\" = \"/installer\"; }"));
}

TEST_F(Arguments, UnknownKeysAreStoredAndIgnored) {
  EXPECT_EQ(extracted({"-AppleLanguages", "(de)", "-psn_0_1"}).text("AppleLanguages"), Text("(de)"));
}

TEST_F(Arguments, AreExtractedAtMostOnce) {
  auto& controller = start({"-productName", "Foo", "-sourcePath", product});
  controller.extractArguments();
  const auto lines = log.lines();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const auto& line) { return line.starts_with("arguments: "); }),
            1);
}

TEST_F(Arguments, WithoutASourcePathTheInnermostBundleAroundTheInstallerIsTheProduct) {
  bundles.mainBundle = "/Volumes/NAS/Foo.app/Contents/Resources/tools/Installer.app";
  bundles.setInfo("/Volumes/NAS/Foo.app", {{"CFBundleSignature", "FOOX"}});
  auto& controller = start({});
  EXPECT_EQ(controller.arguments().text(KTInstallerKeySourcePath), Text("/Volumes/NAS/Foo.app"));
  EXPECT_EQ(controller.arguments().text(KTInstallerKeyProductName), Text("Foo"));
  EXPECT_TRUE(logHas("shortened path = /Volumes/NAS/Foo.app/Contents/Resources"));
  EXPECT_TRUE(logHas("shortened path = /Volumes/NAS/Foo.app/Contents"));
  EXPECT_TRUE(logHas("shortened path = /Volumes/NAS/Foo.app"));
  EXPECT_FALSE(logHas("shortened path = /Volumes/NAS"));
}

TEST_F(Arguments, AnInstallerDirectlyInsideABundleShortensNothing) {
  bundles.mainBundle = "/Volumes/NAS/Foo.app/Installer.app";
  bundles.setInfo("/Volumes/NAS/Foo.app", {{"CFBundleSignature", "FOOX"}});
  auto& controller = start({});
  EXPECT_EQ(controller.arguments().text(KTInstallerKeySourcePath), Text("/Volumes/NAS/Foo.app"));
  EXPECT_FALSE(logHasPrefix("shortened path"));
}

TEST_F(Arguments, WithoutABundleAboveTheSourcePathIsMissing) {
  bundles.mainBundle = "/usr/lib/Installer.app";
  start({});
  EXPECT_EQ(window.introField.text_, Text("missing source path"));
  EXPECT_EQ(window.nameField.text_, Text("")) << "there is none to show";
  EXPECT_TRUE(logHas("shortened path = /usr"));
  EXPECT_TRUE(logHas("shortened path = /"));
  EXPECT_TRUE(logHas("missing source path"));
}

TEST_F(Arguments, AMissingSourcePathPlaysTheCompletionSoundFirst) {
  bundles.mainBundle = "/usr/lib/Installer.app";
  start({"-completionSound", "YES"});
  EXPECT_EQ(doneSoundsPlayed(), 1);
  EXPECT_EQ(window.introField.text_, Text("missing source path"));
}

TEST_F(Arguments, ANameIsMissingOnlyWithoutAnyPath) {
  EXPECT_EQ(productNameFromSourcePath(std::nullopt), std::nullopt);
  EXPECT_EQ(productNameFromSourcePath(Text("/x/Foo Bar.app")), Text("Foo Bar"));
  EXPECT_EQ(productNameFromSourcePath(Text("")), Text("")) << "an empty name is a name";
}

TEST_F(Arguments, VersionAndMinimumComeFromTheBundleAndAreNotWrittenBack) {
  bundles.setInfo(product, {{"CFBundleSignature", "FOOX"},
                            {"CFBundleShortVersionString", "3.1"},
                            {"LSMinimumSystemVersion", "99"}});
  auto& controller = start({"-sourcePath", product});
  EXPECT_EQ(window.nameField.text_, Text("Foo 3.1"));
  EXPECT_TRUE(alerts.isUp());
  EXPECT_FALSE(controller.arguments().has(KTInstallerKeyVersion));
  EXPECT_FALSE(controller.arguments().has(KTInstallerKeyMinSystemVersion));
}

TEST_F(Arguments, GivenVersionAndMinimumWinOverTheBundle) {
  bundles.setInfo(product, {{"CFBundleSignature", "FOOX"},
                            {"CFBundleShortVersionString", "3.1"},
                            {"LSMinimumSystemVersion", "99"}});
  start({"-sourcePath", product, "-version", "4b1", "-minSystemVersion", "1.0"});
  EXPECT_EQ(window.nameField.text_, Text("Foo 4b1"));
  EXPECT_FALSE(alerts.isUp());
}

TEST_F(Arguments, TheProductCodesAreAppendedToTheQuitCodes) {
  auto& controller = start({"-sourcePath", product, "-quitCode", "ABCD", "EFGH", "-productCode", "WXYZ"});
  EXPECT_EQ(*controller.arguments().list(KTInstallerKeyQuitCode), (Texts{"ABCD", "EFGH", "WXYZ"}));
  EXPECT_EQ(*controller.arguments().list(KTInstallerKeyProductCode), Texts{"WXYZ"});
}

TEST_F(Arguments, WithoutQuitCodesTheProductCodesAreTheQuitCodes) {
  auto& controller = start({"-sourcePath", product});
  EXPECT_EQ(*controller.arguments().list(KTInstallerKeyProductCode), Texts{"FOOX"});
  EXPECT_EQ(*controller.arguments().list(KTInstallerKeyQuitCode), Texts{"FOOX"});
  EXPECT_TRUE(logHasPrefix("Updated arguments: {"));
  EXPECT_TRUE(logHas("Updated arguments: " + controller.arguments().description().bytes()));
}

TEST_F(Arguments, ACodeGivenTwiceStaysTwice) {
  auto& controller = start({"-sourcePath", product, "-quitCode", "FOOX", "-productCode", "FOOX"});
  EXPECT_EQ(*controller.arguments().list(KTInstallerKeyQuitCode), (Texts{"FOOX", "FOOX"}));
}

TEST_F(Arguments, WithoutAnyCodeTheSignatureIsMissing) {
  bundles.setInfo(product, {});
  start({"-sourcePath", product, "-quitCode", "ABCD"});
  EXPECT_EQ(window.introField.text_, Text("missing product signature"));
  EXPECT_FALSE(logHasPrefix("Updated arguments"));
}

TEST_F(Arguments, ASignatureThatIsNoTextIsNone) {
  bundles.setInfo(product, {{"CFBundleSignature", 4}});
  start({"-sourcePath", product});
  EXPECT_EQ(window.introField.text_, Text("missing product signature"));
}

TEST_F(Arguments, AGivenDestinationIsKeptAndWrittenBack) {
  auto& controller = start({"-sourcePath", product, "-destinationPath", "/Applications/Tools/Foo.app"});
  EXPECT_EQ(controller.arguments().text(KTInstallerKeyDestinationPath), Text("/Applications/Foo.app"))
      << "the folder /Applications/Tools does not exist";
  files.addFolder("/Applications/Tools");
  auto& second = start({"-sourcePath", product, "-destinationPath", "/Applications/Tools/Bar.app"});
  EXPECT_EQ(second.arguments().text(KTInstallerKeyDestinationPath), Text("/Applications/Tools/Bar.app"));
}

TEST_F(Arguments, WhatTheDestinationWasChosenForIsTold) {
  EXPECT_EQ(start({"-sourcePath", product}).destinationReason(), DestinationReason::ApplicationsFolder);
  EXPECT_EQ(start({"-sourcePath", product, "-destinationPath", "/Applications/F.app"}).destinationReason(),
            DestinationReason::Given);
  EXPECT_EQ(start({"-sourcePath", product, "-destinationPath", "/None/F.app"}).destinationReason(),
            DestinationReason::GivenOneIsUnusable);
  processes.applications.start(
      {.name = "Foo", .signature = fourCharCode("FOOX"), .path = Text("/Applications/Foo.app")});
  EXPECT_EQ(start({"-sourcePath", product, "-productCode", "FOOX"}).destinationReason(),
            DestinationReason::RunningCopy);
  workspace.loginItemPaths = {{"/Applications/Foo.app"}};
  EXPECT_EQ(start({"-sourcePath", product}).destinationReason(), DestinationReason::LoginItem);
  EXPECT_EQ(start({}).destinationReason(), std::nullopt);
}

TEST_F(Arguments, AFileWhereTheDestinationsFolderShouldBeCountsAsMissing) {
  files.addFile("/Applications/Tools");
  auto& controller = start({"-sourcePath", product, "-destinationPath", "/Applications/Tools/Foo.app"});
  EXPECT_EQ(controller.arguments().text(KTInstallerKeyDestinationPath), Text("/Applications/Foo.app"));
}

TEST_F(Arguments, WithoutADestinationTheLoginItemIsReplaced) {
  files.addFile("/Users/Shared/Foo.app/Contents/Info.plist");
  workspace.loginItemPaths = {{"/Users/Shared/Foo.app"}};
  auto& controller = start({"-sourcePath", product});
  EXPECT_EQ(controller.arguments().text(KTInstallerKeyDestinationPath), Text("/Users/Shared/Foo.app"));
}

TEST_F(Arguments, AWrapperMakesAFolderOfItsNameAroundTheProduct) {
  files.addFile("/Volumes/NAS/Foo Suite/Foo.app/Contents/Info.plist");
  bundles.setInfo("/Volumes/NAS/Foo Suite/Foo.app", {{"CFBundleSignature", "FOOX"}});
  auto& controller =
      start({"-sourcePath", "/Volumes/NAS/Foo Suite/Foo.app", "-wrapperPath", "/Volumes/NAS/Foo Suite"});
  EXPECT_EQ(controller.arguments().text(KTInstallerKeyDestinationPath),
            Text("/Applications/Foo Suite/Foo.app"));
  EXPECT_TRUE(logHas("wrapper = /Volumes/NAS/Foo Suite"));
}

TEST_F(Arguments, ADestinationInsideAFolderOfTheWrappersNameStaysThere) {
  files.addFile("/Volumes/NAS/Suite/Foo.app/Contents/Info.plist");
  files.addFolder("/Applications/Suite");
  bundles.setInfo("/Volumes/NAS/Suite/Foo.app", {{"CFBundleSignature", "FOOX"}});
  auto& controller = start({"-sourcePath", "/Volumes/NAS/Suite/Foo.app", "-wrapperPath", "/Volumes/NAS/Suite",
                            "-destinationPath", "/Applications/Suite/Foo.app"});
  EXPECT_EQ(controller.arguments().text(KTInstallerKeyDestinationPath), Text("/Applications/Suite/Foo.app"));
}

TEST_F(Arguments, AWrapperOutsideTheSourcesFolderIsRemoved) {
  files.addFolder("/Volumes/Other/Suite");
  auto& controller = start({"-sourcePath", product, "-wrapperPath", "/Volumes/Other/Suite"});
  EXPECT_FALSE(controller.arguments().has(KTInstallerKeyWrapperPath));
  EXPECT_EQ(controller.arguments().text(KTInstallerKeyDestinationPath), Text("/Applications/Foo.app"));
  EXPECT_FALSE(logHasPrefix("wrapper = "));
}

TEST_F(Arguments, ARelativeSourceLiesInNoFolderThatAWrapperCouldBe) {
  bundles.setInfo("Foo.app", {{"CFBundleSignature", "FOOX"}});
  files.addFolder("/Volumes/Other/Suite");
  auto& controller = start({"-sourcePath", "Foo.app", "-wrapperPath", "/Volumes/Other/Suite"});
  EXPECT_FALSE(controller.arguments().has(KTInstallerKeyWrapperPath));
  EXPECT_FALSE(logHasPrefix("wrapper = "));
}

TEST_F(Arguments, SlashesInARowInTheSourcePathDoNotLoseTheWrapper) {
  files.addFile("/Volumes//NAS///Suite//Foo.app/Contents/Info.plist");
  files.addFolder("/Volumes/NAS/Suite");
  bundles.setInfo("/Volumes//NAS///Suite//Foo.app", {{"CFBundleSignature", "FOOX"}});
  auto& controller =
      start({"-sourcePath", "/Volumes//NAS///Suite//Foo.app", "-wrapperPath", "/Volumes/NAS/Suite"});
  EXPECT_EQ(controller.arguments().text(KTInstallerKeyWrapperPath), Text("/Volumes/NAS/Suite"));
  EXPECT_EQ(controller.arguments().text(KTInstallerKeyDestinationPath), Text("/Applications/Suite/Foo.app"));
}

TEST_F(Arguments, AWrapperThatDoesNotExistIsRemoved) {
  auto& controller = start({"-sourcePath", product, "-wrapperPath", "/Volumes/NAS/Missing"});
  EXPECT_FALSE(controller.arguments().has(KTInstallerKeyWrapperPath));
}

TEST_F(Arguments, AWrapperWhoseNameOnlyBeginsLikeTheSourcesFolderPasses) {
  files.addFolder("/Volumes/NAS2");
  auto& controller = start({"-sourcePath", product, "-wrapperPath", "/Volumes/NAS2"});
  EXPECT_EQ(controller.arguments().text(KTInstallerKeyWrapperPath), Text("/Volumes/NAS2"));
}

TEST_F(Arguments, DocumentationThatDoesNotExistIsRemoved) {
  auto& controller = start({"-sourcePath", product, "-documentationPath", "/Volumes/NAS/Guide.pdf"});
  EXPECT_FALSE(controller.arguments().has(KTInstallerKeyDocumentationPath));
}

TEST_F(Arguments, AReadMeThatDoesNotExistKeepsItsEntry) {
  auto& controller = start({"-sourcePath", product, "-readMePath", "/Volumes/NAS/Missing.rtf"});
  EXPECT_TRUE(controller.arguments().has(KTInstallerKeyReadMePath));
}

TEST_F(Arguments, AnUnreadableBundleGivesNoValues) {
  bundles.bundles[product].info = std::nullopt;
  start({"-sourcePath", product, "-productCode", "FOOX"});
  EXPECT_EQ(window.nameField.text_, Text("Foo"));
  EXPECT_FALSE(alerts.isUp());
}

TEST_F(Arguments, TheKeysAreSpelledAsProductsKnowThem) {
  const std::pair<const char*, const char*> keys[] = {{KTInstallerKeyProductName, "productName"},
                                                      {KTInstallerKeyVersion, "version"},
                                                      {KTInstallerKeyMinSystemVersion, "minSystemVersion"},
                                                      {KTInstallerKeySourcePath, "sourcePath"},
                                                      {KTInstallerKeyDestinationPath, "destinationPath"},
                                                      {KTInstallerKeyDocumentationPath, "documentationPath"},
                                                      {KTInstallerKeyReadMePath, "readMePath"},
                                                      {KTInstallerKeyProductCode, "productCode"},
                                                      {KTInstallerKeyQuitCode, "quitCode"},
                                                      {KTInstallerKeyIconPath, "iconPath"},
                                                      {KTInstallerKeyWrapperPath, "wrapperPath"},
                                                      {KTInstallerCompletionSound, "completionSound"},
                                                      {KTInstallerCompletionQuit, "completionQuit"}};
  for (const auto& [constant, text] : keys) EXPECT_STREQ(constant, text);
}

}  // namespace
}  // namespace halvorn
