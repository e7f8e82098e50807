#include <gtest/gtest.h>

#include "tests/installer/unit/InstallerFixture.h"

namespace halvorn {
namespace {

class PageFlow : public InstallerFixture {
 protected:
  InstallerWinController& startWithReadMe() {
    files.addFile("/Volumes/NAS/ReadMe.rtf");
    return start({"-sourcePath", product, "-readMePath", "/Volumes/NAS/ReadMe.rtf"});
  }
};

TEST_F(PageFlow, ContinueLeadsFromTheReadMeToTheInstallPage) {
  startWithReadMe();
  window.installButton.click();
  EXPECT_EQ(window.tabView.selected_, 1);
  EXPECT_EQ(window.installButton.title_, Text("Install"));
  EXPECT_EQ(window.cancelButton.title_, Text("Go Back"));
  EXPECT_TRUE(workers.tasks.empty());
}

TEST_F(PageFlow, EachButtonSaysWhatItWillDo) {
  startWithReadMe();
  EXPECT_EQ(window.installButton.description_, Text("Shows the install page"));
  EXPECT_EQ(window.cancelButton.description_, Text("Ends without installing anything"));
  EXPECT_EQ(window.helpButton.description_, Text("Opens the documentation"));
  window.installButton.click();
  EXPECT_EQ(window.installButton.description_, Text("Installs Foo to ") + window.pathField.text_);
  EXPECT_EQ(window.cancelButton.description_, Text("Shows the read-me again"));
}

TEST_F(PageFlow, ATurnedPageIsAnnouncedWithWhatItSays) {
  startWithReadMe();
  EXPECT_TRUE(screenReader.announced.empty());
  window.installButton.click();
  EXPECT_EQ(screenReader.announced, std::vector<Text>{window.introField.text_});
}

TEST_F(PageFlow, WithoutAReadMeTheInstallButtonSaysWhereItInstalls) {
  start({"-sourcePath", product});
  EXPECT_EQ(window.installButton.description_, Text("Installs Foo to ") + window.pathField.text_);
  EXPECT_EQ(window.cancelButton.description_, Text("Ends without installing anything"));
}

TEST_F(PageFlow, GoBackLeadsToTheReadMeAndCancelThenQuits) {
  startWithReadMe();
  window.installButton.click();
  window.cancelButton.click();
  EXPECT_EQ(window.tabView.selected_, 0);
  EXPECT_EQ(window.installButton.title_, Text("Continue"));
  EXPECT_EQ(window.cancelButton.title_, Text("Cancel"));
  EXPECT_EQ(application.terminations, 0);
  window.cancelButton.click();
  EXPECT_EQ(application.terminations, 1);
}

TEST_F(PageFlow, GoBackLeadsToTheEmptyPageAlsoWhenTheReadMeIsMissing) {
  start({"-sourcePath", product, "-readMePath", "/Volumes/NAS/Missing.rtf"});
  EXPECT_EQ(window.cancelButton.title_, Text("Go Back"));
  window.cancelButton.click();
  EXPECT_EQ(window.tabView.selected_, 0);
  EXPECT_EQ(window.installButton.title_, Text("Continue"));
}

TEST_F(PageFlow, TheWholeReadMeIsOpenedWithItsDefaultApplication) {
  startWithReadMe().openReadMe();
  EXPECT_EQ(workspace.opened, std::vector<Text>{"/Volumes/NAS/ReadMe.rtf"});
  start({"-sourcePath", product}).openReadMe();
  EXPECT_EQ(workspace.opened.size(), 1U) << "without one there is nothing to open";
}

TEST_F(PageFlow, WithoutAReadMeTheCancelButtonKeepsItsTitleAndQuits) {
  window.cancelButton.title_ = "Not now";
  start({"-sourcePath", product});
  EXPECT_EQ(window.cancelButton.title_, Text("Not now"));
  window.cancelButton.click();
  EXPECT_EQ(application.terminations, 1);
}

TEST_F(PageFlow, InstallStartsOneWorkerAndDisablesBothButtons) {
  start({"-sourcePath", product});
  window.installButton.click();
  window.installButton.click();
  EXPECT_EQ(workers.tasks.size(), 2u) << "the work, and a look at how much it is";
  EXPECT_EQ(window.cancelButton.enabled_, Enabled::No);
}

TEST_F(PageFlow, TitlesAreTranslated) {
  strings.translations = {{"Continue", "Fortfahren"},
                          {"Install", "Installieren"},
                          {"Go Back",
                           "Zur\xC3\xBC"
                           "ck"}};
  startWithReadMe();
  EXPECT_EQ(window.installButton.title_, Text("Fortfahren"));
  window.installButton.click();
  EXPECT_EQ(window.installButton.title_, Text("Installieren"));
  EXPECT_EQ(window.cancelButton.title_, Text("Zur\xC3\xBC"
                                             "ck"));
}

TEST_F(PageFlow, TheHelpButtonOpensTheDocumentationAndAsksForTheMinimiseButton) {
  files.addFile("/Volumes/NAS/Guide.pdf");
  start({"-sourcePath", product, "-documentationPath", "/Volumes/NAS/Guide.pdf"});
  window.calls.clear();
  window.helpButton.click();
  EXPECT_EQ(workspace.opened, std::vector<Text>{"/Volumes/NAS/Guide.pdf"});
  EXPECT_EQ(window.calls, std::vector<std::string>{"window.isMiniaturizeEnabled"});
  EXPECT_EQ(application.beeps, 0);
}

TEST_F(PageFlow, WithoutDocumentationTheHelpActionLogsAndBeeps) {
  auto& controller = start({"-sourcePath", product});
  log.clear();
  controller.openDocumentation();
  EXPECT_EQ(log.lines(), std::vector<std::string>{"documentation path missing"});
  EXPECT_EQ(application.beeps, 1);
  EXPECT_TRUE(workspace.opened.empty());
}

}  // namespace
}  // namespace halvorn
