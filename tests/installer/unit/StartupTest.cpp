#include <gtest/gtest.h>

#include "tests/installer/unit/InstallerFixture.h"

namespace halvorn {
namespace {

using Stream = StandardStreams::Stream;

class Startup : public InstallerFixture {};

TEST_F(Startup, OneKeyWithOneValueCountsAsStartedByAProduct) {
  start({"-sourcePath", product});
  const std::vector<std::pair<Stream, Text>> expected = {
      {Stream::Output, "/home/anna/Library/Logs/HalvornInstaller.log"},
      {Stream::Error, "/home/anna/Library/Logs/HalvornInstaller.log"}};
  EXPECT_EQ(streams.reopened, expected);
  EXPECT_FALSE(logHas("direct invocation"));
}

TEST_F(Startup, NoArgumentOrASingleOneIsDirectInvocation) {
  bundles.mainBundle = product + Text("/Contents/Resources/Installer.app");
  for (const std::vector<Text>& arguments : {std::vector<Text>{}, std::vector<Text>{"-x"}}) {
    start(arguments);
    EXPECT_TRUE(streams.reopened.empty());
    EXPECT_EQ(log.lines().front(), "direct invocation");
    EXPECT_EQ(window.nameField.text_, Text("Foo 1.2")) << "everything else is derived all the same";
  }
}

TEST_F(Startup, ALanguageAsTheFirstArgumentIsDirectInvocationAndTheRestIsStillParsed) {
  auto& controller = start({"-AppleLanguages", "(de)", "-sourcePath", product, "-productName", "Bar"});
  EXPECT_TRUE(streams.reopened.empty());
  EXPECT_EQ(log.lines().front(), "direct invocation");
  EXPECT_EQ(controller.arguments().text("productName"), Text("Bar"));
}

TEST_F(Startup, AStreamWhoseLogCannotBeOpenedGoesToTheNullDeviceAlone) {
  streams.unopenable.insert({Stream::Output, "/home/anna/Library/Logs/HalvornInstaller.log"});
  start({"-sourcePath", product});
  const std::vector<std::pair<Stream, Text>> expected = {
      {Stream::Output, "/home/anna/Library/Logs/HalvornInstaller.log"},
      {Stream::Output, "/dev/null"},
      {Stream::Error, "/home/anna/Library/Logs/HalvornInstaller.log"}};
  EXPECT_EQ(streams.reopened, expected);
  EXPECT_EQ(window.nameField.text_, Text("Foo 1.2"));
}

TEST_F(Startup, FillsTheWindowForTheProduct) {
  start({"-sourcePath", product});
  EXPECT_EQ(window.window.title_, Text("Install Foo"));
  EXPECT_EQ(window.nameField.text_, Text("Foo 1.2"));
  EXPECT_EQ(window.introField.text_, Text("Installs Foo."));
  EXPECT_EQ(window.explanationField.text_, Text("Click to install Foo."));
  EXPECT_EQ(window.pathField.text_, Text("/Applications/Foo"));
  EXPECT_FALSE(window.tabView.tabsAndBorder_);
  EXPECT_EQ(window.tabView.selected_, 1);
  EXPECT_FALSE(window.helpButton.visible());
  EXPECT_FALSE(window.messageField.visible());
  EXPECT_FALSE(window.checkmarkField.visible());
}

TEST_F(Startup, WithoutAVersionTheNameStandsAlone) {
  bundles.setInfo(product, {{"CFBundleSignature", "FOOX"}});
  start({"-sourcePath", product});
  EXPECT_EQ(window.nameField.text_, Text("Foo"));
}

TEST_F(Startup, LooksAtNoProcessBeforeItsWindowIsShown) {
  start({"-sourcePath", product, "-destinationPath", "/Applications/Foo.app"});
  EXPECT_TRUE(processes.applications.requestsOfInstaller().empty());
  EXPECT_FALSE(installerCameToFront());
  application.show();
  EXPECT_TRUE(installerCameToFront());
}

TEST_F(Startup, BringsTheWindowForwardInOrderAndThenTheProcess) {
  start({"-sourcePath", product});
  const auto at = std::find(window.calls.begin(), window.calls.end(), "window.center");
  ASSERT_GE(window.calls.end() - at, 4);
  EXPECT_EQ(std::vector<std::string>(at, at + 4),
            (std::vector<std::string>{"window.center", "window.makeKeyAndOrderFront",
                                      "window.orderFrontRegardless", "window.makeMain"}));
  application.show();
  EXPECT_TRUE(installerCameToFront());
}

TEST_F(Startup, TheImageAtTheIconPathComesFirst) {
  images.files["/Volumes/NAS/Box.png"] = std::make_shared<FakeImage>("box");
  addBundleIcon("Foo.icns");
  start({"-sourcePath", product, "-iconPath", "/Volumes/NAS/Box.png"});
  EXPECT_EQ(nameOf(window.iconField.image_), "box");
  EXPECT_EQ(nameOf(application.icon), "box");
}

TEST_F(Startup, AnIconPathThatYieldsNoImageFallsBackToTheBundle) {
  addBundleIcon("Foo.icns");
  start({"-sourcePath", product, "-iconPath", "/Volumes/NAS/Missing.png"});
  EXPECT_EQ(nameOf(window.iconField.image_), "Foo.icns");
}

TEST_F(Startup, TheBundlesIconIsLookedUpAsIcnsAndThenWithoutType) {
  addBundleIcon("Foo.png");
  bundles.bundles[product].info->insert_or_assign("CFBundleIconFile", "Foo.png");
  start({"-sourcePath", product});
  EXPECT_EQ(nameOf(window.iconField.image_), "Foo.png");
}

TEST_F(Startup, WithoutAnIconOfItsOwnTheWorkspacesStandsIn) {
  images.icons[product] = std::make_shared<FakeImage>("generic");
  start({"-sourcePath", product});
  EXPECT_EQ(nameOf(window.iconField.image_), "generic");
}

TEST_F(Startup, ANameInDisguiseIsShownAsWhatItIs) {
  start({"-sourcePath", product, "-productName", "Foo\u202Egnp\u200B", "-version", "1\u00AD2"});
  EXPECT_EQ(window.window.title_, Text("Install Foo\\u{202E}gnp\\u{200B}"));
  EXPECT_EQ(window.nameField.text_, Text("Foo\\u{202E}gnp\\u{200B} 1\\u{00AD}2"));
  EXPECT_EQ(window.introField.text_, Text("Installs Foo\\u{202E}gnp\\u{200B}."));
  EXPECT_EQ(window.explanationField.text_, Text("Click to install Foo\\u{202E}gnp\\u{200B}."));
}

TEST_F(Startup, ADestinationInDisguiseIsShownAsWhatItIs) {
  start({"-sourcePath", product, "-destinationPath", "/Applications/Foo\u202Eppa.exe"});
  EXPECT_TRUE(window.pathField.text_.contains("\\u{202E}")) << window.pathField.text_.bytes();
}

TEST_F(Startup, ANameFromRightToLeftDoesNotTurnTheSentenceAround) {
  start({"-sourcePath", product, "-productName", "אבג!"});
  EXPECT_EQ(window.introField.text_, Text("Installs \u2068אבג!\u2069."));
}

TEST_F(Startup, WithoutAnyImageIconAndApplicationAreLeftAlone) {
  start({"-sourcePath", product});
  EXPECT_EQ(window.iconField.image_, nullptr);
  EXPECT_EQ(application.icon, nullptr);
  EXPECT_EQ(std::count(window.calls.begin(), window.calls.end(), "iconField.setImage none"), 0);
}

TEST_F(Startup, DocumentationShowsTheHelpButtonAndItsSentenceFirst) {
  files.addFile("/Volumes/NAS/Guide.pdf");
  start({"-sourcePath", product, "-documentationPath", "/Volumes/NAS/Guide.pdf"});
  EXPECT_TRUE(window.helpButton.visible());
  EXPECT_EQ(
      window.explanationField.text_,
      Text("If you wish to read the documentation first, click the \"?\" button. Click to install Foo."));
}

TEST_F(Startup, AReadMeIsShownInTheLightAppearanceOnTheFirstPage) {
  files.addFile("/Volumes/NAS/ReadMe.rtf");
  start({"-sourcePath", product, "-readMePath", "/Volumes/NAS/ReadMe.rtf"});
  application.show();
  EXPECT_EQ(window.readMeTextView.document_, Text("/Volumes/NAS/ReadMe.rtf"));
  EXPECT_EQ(window.readMeTextView.appearance_, AppearanceName::Aqua);
  EXPECT_EQ(window.tabView.selected_, 0);
  EXPECT_EQ(window.installButton.title_, Text("Continue"));
  EXPECT_EQ(window.cancelButton.title_, Text("Cancel"));
}

TEST_F(Startup, TheReadMeIsReadWhenTheWindowHasBeenPainted) {
  files.addFile("/Volumes/NAS/ReadMe.rtf");
  start({"-sourcePath", product, "-readMePath", "/Volumes/NAS/ReadMe.rtf"});
  EXPECT_TRUE(window.window.visible_);
  EXPECT_EQ(window.tabView.selected_, 0);
  EXPECT_EQ(window.readMeTextView.document_, std::nullopt);
  application.show();
  EXPECT_EQ(window.readMeTextView.document_, Text("/Volumes/NAS/ReadMe.rtf"));
}

TEST_F(Startup, OnSystemsWithoutAppearancesTheReadMeKeepsItsOwn) {
  files.addFile("/Volumes/NAS/ReadMe.rtf");
  system.framework = 1561.6;
  start({"-sourcePath", product, "-readMePath", "/Volumes/NAS/ReadMe.rtf"});
  EXPECT_EQ(window.readMeTextView.appearance_, AppearanceName::Inherited);
}

TEST_F(Startup, AMissingReadMeShowsTheInstallPageWithAButtonBackToTheEmptyOne) {
  start({"-sourcePath", product, "-readMePath", "/Volumes/NAS/Missing.rtf"});
  EXPECT_EQ(window.tabView.selected_, 1);
  EXPECT_EQ(window.cancelButton.title_, Text("Go Back"));
  EXPECT_EQ(window.readMeTextView.document_, std::nullopt);
}

TEST_F(Startup, AMinimumEqualToTheRunningSystemIsCompatible) {
  start({"-sourcePath", product, "-minSystemVersion", "10.14.6"});
  EXPECT_FALSE(alerts.isUp());
}

TEST_F(Startup, WithoutAMinimumThereIsNoCheck) {
  start({"-sourcePath", product});
  EXPECT_FALSE(alerts.isUp());
}

TEST_F(Startup, ANewerMinimumShowsTheAlertOverTheWindow) {
  start({"-sourcePath", product, "-minSystemVersion", "10.15"});
  ASSERT_TRUE(alerts.isUp());
  const AlertDescription& alert = alerts.shown.front();
  EXPECT_EQ(alert.style, AlertDescription::Style::Informational);
  EXPECT_EQ(alert.buttonTitles, (std::vector<Text>{"Quit", "Visit Archive"}));
  EXPECT_EQ(nameOf(alert.icon), "AlertStopIcon");
  EXPECT_EQ(
      alert.messageText,
      Text("Foo 1.2 cannot be installed on this computer because it requires Mac OS X 10.15 or newer."));
  EXPECT_EQ(
      alert.informativeText,
      Text("To check if an older version of Foo is available for your computer, please visit our software "
           "archive."));
  EXPECT_TRUE(window.window.visible_);
  EXPECT_EQ(application.terminations, 0);
}

TEST_F(Startup, TheAlertNamesAnAbsentVersionAsThePlatformDoes) {
  bundles.setInfo(product, {{"CFBundleSignature", "FOOX"}});
  start({"-sourcePath", product, "-minSystemVersion", "99"});
  EXPECT_TRUE(alerts.shown.front().messageText.hasPrefix("Foo (null) cannot be installed"));
}

TEST_F(Startup, QuitOnlyQuits) {
  start({"-sourcePath", product, "-minSystemVersion", "99"});
  alerts.press(kAlertFirstButtonReturn);
  EXPECT_EQ(application.terminations, 1);
  EXPECT_TRUE(workspace.openedUrls.empty());
}

TEST_F(Startup, VisitArchiveOpensTheArchiveAndStillQuits) {
  start({"-sourcePath", product, "-minSystemVersion", "99"});
  alerts.press(kAlertSecondButtonReturn);
  EXPECT_EQ(application.terminations, 1);
  ASSERT_EQ(workspace.openedUrls.size(), 1u);
  EXPECT_TRUE(workspace.openedUrls.front().hasPrefix("https://"));
}

TEST_F(Startup, ASetUpErrorTurnsTheWindowIntoItsMessage) {
  bundles.setInfo(product, {});
  start({"-sourcePath", product});
  EXPECT_TRUE(logHas("missing product signature"));
  EXPECT_EQ(window.introField.text_, Text("missing product signature"));
  EXPECT_EQ(window.installButton.title_, Text("OK"));
  EXPECT_FALSE(window.cancelButton.visible());
  EXPECT_EQ(window.window.title_, Text("Install Foo")) << "formatted before the error";
  EXPECT_EQ(std::count(window.calls.begin(), window.calls.end(), "window.center"), 0);
  EXPECT_FALSE(installerCameToFront());
  window.installButton.click();
  EXPECT_EQ(application.terminations, 1);
}

TEST_F(Startup, ATitleThatWasNeverFormattedBecomesEmpty) {
  bundles.mainBundle = "/usr/lib/Installer.app";
  start({});
  EXPECT_EQ(window.window.title_, Text(""));
}

TEST_F(Startup, ATitleWithoutAPlaceholderStaysUnchanged) {
  bundles.mainBundle = "/usr/lib/Installer.app";
  window.window.title_ = "Installer";
  start({});
  EXPECT_EQ(window.window.title_, Text("Installer"));
}

TEST_F(Startup, ASetUpErrorIsLookedUpByItsText) {
  bundles.setInfo(product, {});
  strings.translations["missing product signature"] = "Signatur fehlt";
  start({"-sourcePath", product});
  EXPECT_EQ(window.introField.text_, Text("Signatur fehlt"));
  EXPECT_TRUE(logHas("missing product signature"));
}

TEST_F(Startup, TheProgramEndsWithItsLastWindow) {
  EXPECT_TRUE(start({"-sourcePath", product}).applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(Startup, ASecondInstallerOfTheSameDestinationBringsTheFirstForwardAndEnds) {
  installersKnowEachOther = true;
  start({"-sourcePath", product});
  application.show();
  window.calls.clear();
  const auto requestsForFront = [&] {
    const auto& requests = processes.applications.requestsOfInstaller();
    return std::count(requests.begin(), requests.end(), "front");
  };
  const auto before = requestsForFront();
  start({"-sourcePath", product});
  EXPECT_EQ(application.terminations, 1);
  EXPECT_EQ(requestsForFront(), before + 1);
  EXPECT_EQ(linesWith("Another installer"),
            std::vector<std::string>{
                "Another installer is there for /Applications/Foo.app: it comes to the front"});
  const auto shown = std::count(window.calls.begin(), window.calls.end(), "window.makeKeyAndOrderFront");
  EXPECT_EQ(shown, 1) << "the first one's; that of the second is not shown";
  EXPECT_EQ(std::count(window.calls.begin(), window.calls.end(), "window.center"), 0);
}

TEST_F(Startup, InstallersOfTwoProductsStandSideBySide) {
  installersKnowEachOther = true;
  start({"-sourcePath", product});
  start({"-sourcePath", product, "-destinationPath", "/Applications/Bar.app"});
  EXPECT_EQ(application.terminations, 0);
}

TEST_F(Startup, ASetUpErrorIsShownWhoeverElseIsThere) {
  installersKnowEachOther = true;
  start({"-sourcePath", product});
  start({"-sourcePath", "/Volumes/NAS/Missing.app", "-destinationPath", "/Applications/Foo.app"});
  EXPECT_EQ(application.terminations, 0);
  EXPECT_EQ(window.introField.text_, Text("missing product signature"));
}

}  // namespace
}  // namespace halvorn
