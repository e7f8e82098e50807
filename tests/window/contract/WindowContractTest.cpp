// The same cases against the window that a test writes down and against the toolkit's.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "WindowWorlds.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

template <typename World>
class WindowContract : public testing::Test {
 protected:
  World world;
  InstallerOutlets outlets = world.outlets();
  TemporaryFolder folder;

  std::vector<View*> views() {
    return {&outlets.tabView,          &outlets.nameField,      &outlets.introField,
            &outlets.pathField,        &outlets.messageField,   &outlets.explanationField,
            &outlets.iconField,        &outlets.checkmarkField, &outlets.readMeTextView,
            &outlets.installButton,    &outlets.cancelButton,   &outlets.helpButton,
            &outlets.progressIndicator};
  }
};
TYPED_TEST_SUITE(WindowContract, Worlds);

TYPED_TEST(WindowContract, AFreshWindowHasTheTextsOfItsDescription) {
  EXPECT_EQ(this->outlets.window.title(), "Install %@");
  EXPECT_EQ(this->outlets.introField.stringValue(), "This program will install %@ on your computer.");
  EXPECT_EQ(this->outlets.explanationField.stringValue(),
            "If %@ is running, it will be asked to quit. An older version will be moved to the Trash.");
  EXPECT_EQ(this->outlets.nameField.stringValue(), "");
  EXPECT_EQ(this->outlets.pathField.stringValue(), "");
  EXPECT_EQ(this->outlets.messageField.stringValue(), "");
  EXPECT_EQ(this->outlets.installButton.title(), "Install");
  EXPECT_EQ(this->outlets.cancelButton.title(), "Cancel");
  EXPECT_EQ(this->outlets.helpButton.title(), "?");
  EXPECT_EQ(this->outlets.tabView.selectedItem(), 0);
}

TYPED_TEST(WindowContract, EveryViewIsShownUntilItIsHidden) {
  for (View* view : this->views()) {
    // The success mark waits for a success; a set-up error leaves the window as the description has it.
    const bool isMark = view == &this->outlets.checkmarkField;
    EXPECT_EQ(view->isHidden(), isMark ? Hidden::Yes : Hidden::No);
    view->setHidden(Hidden::Yes);
    view->setHidden(Hidden::Yes);
    EXPECT_EQ(view->isHidden(), Hidden::Yes);
    view->setHidden(Hidden::No);
    EXPECT_EQ(view->isHidden(), Hidden::No);
  }
}

TYPED_TEST(WindowContract, WhoIsThereIsNotAskedForAttention) {
  this->world.showWindow();
  EXPECT_TRUE(this->outlets.window.isKeyWindow());
  this->world.application().requestUserAttention();
}

TYPED_TEST(WindowContract, AViewOnThePageThatIsNotSelectedIsNotHidden) {
  this->outlets.tabView.selectItem(1);
  EXPECT_EQ(this->outlets.readMeTextView.isHidden(), Hidden::No);
  this->outlets.tabView.selectItem(0);
  EXPECT_EQ(this->outlets.introField.isHidden(), Hidden::No);
}

TYPED_TEST(WindowContract, AnAppearanceIsHeldUntilItIsInheritedAgain) {
  for (View* view : this->views()) {
    EXPECT_EQ(view->appearance(), AppearanceName::Inherited);
    for (const auto name : {AppearanceName::Aqua, AppearanceName::DarkAqua, AppearanceName::Inherited}) {
      view->setAppearance(name);
      EXPECT_EQ(view->appearance(), name);
    }
  }
}

TYPED_TEST(WindowContract, ATextComesBackAsItWasGiven) {
  for (const Text& text :
       {Text("Sample 2.1"), Text(""), Text("two\rlines\nand more"), Text("100 % & <b>\"x\"</b>"),
        Text("not UTF-8: \xE4\xFF"), Text("😌 שלום"), Text(std::string(20'000, 'x'))}) {
    this->outlets.nameField.setStringValue(text);
    EXPECT_EQ(this->outlets.nameField.stringValue(), text);
    this->outlets.cancelButton.setTitle(text);
    EXPECT_EQ(this->outlets.cancelButton.title(), text);
    this->outlets.window.setTitle(text);
    EXPECT_EQ(this->outlets.window.title(), text);
  }
}

TYPED_TEST(WindowContract, AButtonActsOnlyWhileItIsEnabledAndShown) {
  Button& button = this->outlets.installButton;
  EXPECT_EQ(button.isEnabled(), Enabled::Yes);
  this->world.click("installButton");
  EXPECT_EQ(this->world.installs, 1);
  button.setEnabled(Enabled::No);
  EXPECT_EQ(button.isEnabled(), Enabled::No);
  this->world.click("installButton");
  EXPECT_EQ(this->world.installs, 1);
  button.setEnabled(Enabled::Yes);
  button.setHidden(Hidden::Yes);
  EXPECT_EQ(button.isEnabled(), Enabled::Yes) << "hiding does not disable";
  this->world.click("installButton");
  EXPECT_EQ(this->world.installs, 1);
  button.setHidden(Hidden::No);
  this->world.click("installButton");
  EXPECT_EQ(this->world.installs, 2);
}

TYPED_TEST(WindowContract, APageIsSelectedByItsIndex) {
  this->outlets.tabView.showWithoutTabsAndBorder();
  this->outlets.tabView.selectItem(1);
  EXPECT_EQ(this->outlets.tabView.selectedItem(), 1);
  for (const int none : {2, -1, 1000}) {
    this->outlets.tabView.selectItem(none);
    EXPECT_EQ(this->outlets.tabView.selectedItem(), 1) << "there is no page " << none;
  }
  this->outlets.tabView.selectItem(0);
  EXPECT_EQ(this->outlets.tabView.selectedItem(), 0);
}

TYPED_TEST(WindowContract, ADocumentIsReadOrNot) {
  const Text path = this->folder / "Read Me.txt";
  EXPECT_FALSE(this->outlets.readMeTextView.setDocumentFromFile(path));
  this->world.makeReadable(path);
  EXPECT_TRUE(this->outlets.readMeTextView.setDocumentFromFile(path));
}

TYPED_TEST(WindowContract, ProgressMayBeStartedAndStoppedAnyNumberOfTimes) {
  this->outlets.progressIndicator.stopAnimation();
  this->outlets.progressIndicator.startAnimation();
  this->outlets.progressIndicator.startAnimation();
  this->outlets.progressIndicator.stopAnimation();
  this->outlets.progressIndicator.stopAnimation();
  EXPECT_EQ(this->outlets.progressIndicator.isHidden(), Hidden::No);
}

TYPED_TEST(WindowContract, NoImageIsAnImageToo) {
  this->outlets.iconField.setImage(nullptr);
  EXPECT_FALSE(this->world.iconIsDrawn());
  this->outlets.iconField.setImage(this->world.images().imageNamed("AlertStopIcon"));
  EXPECT_TRUE(this->world.iconIsDrawn());
  this->outlets.iconField.setImage(nullptr);
  EXPECT_FALSE(this->world.iconIsDrawn()) << "the last one is gone";
}

TYPED_TEST(WindowContract, TheApplicationMayHaveNoIcon) {
  this->world.application().setApplicationIcon(nullptr);
  bool isReached = false;
  this->world.mainThread().perform([&] { isReached = true; });
  this->world.runMainThread();
  EXPECT_TRUE(isReached);
}

TYPED_TEST(WindowContract, TheWindowComesForwardAndCanBeMinimised) {
  this->outlets.window.center();
  this->outlets.window.makeKeyAndOrderFront();
  this->outlets.window.orderFrontRegardless();
  this->outlets.window.makeMain();
  EXPECT_TRUE(this->outlets.window.isMiniaturizeEnabled());
}

TYPED_TEST(WindowContract, WhatWaitsForTheWindowRunsOnceItIsShownInOrderAndLater) {
  std::vector<int> done;
  this->world.application().performWhenShown([&] { done.push_back(1); });
  this->world.application().performWhenShown([&] { done.push_back(2); });
  EXPECT_TRUE(done.empty());
  this->world.showWindow();
  EXPECT_EQ(done, (std::vector<int>{1, 2}));
}

TYPED_TEST(WindowContract, ImagesAreFoundOrNull) {
  EXPECT_NE(this->world.images().imageNamed("AlertStopIcon"), nullptr);
  EXPECT_EQ(this->world.images().imageNamed("NoSuchPicture"), nullptr);
  EXPECT_EQ(this->world.images().imageFromFile(this->folder / "missing.png"), nullptr);
  EXPECT_EQ(this->world.images().iconForFile(this->folder / "missing.app"), nullptr);
}

TYPED_TEST(WindowContract, ASheetEndsOnceWithTheCodeOfItsButton) {
  AlertDescription alert;
  alert.messageText = "Message";
  alert.buttonTitles = {"First", "Second"};
  for (const int index : {0, 1}) {
    std::vector<int> codes;
    this->world.alerts().beginSheet(alert, [&](int code) { codes.push_back(code); });
    EXPECT_TRUE(this->world.sheetIsUp());
    EXPECT_TRUE(codes.empty()) << "it returns before the sheet ends";
    this->world.pressSheetButton(index);
    EXPECT_EQ(codes, std::vector<int>{kAlertFirstButtonReturn + index});
    EXPECT_FALSE(this->world.sheetIsUp());
  }
}

TYPED_TEST(WindowContract, ASheetThatIsDismissedEndsWithItsFirstButton) {
  AlertDescription alert;
  alert.buttonTitles = {"First", "Second"};
  std::vector<int> codes;
  this->world.alerts().beginSheet(alert, [&](int code) { codes.push_back(code); });
  this->world.dismissSheet();
  EXPECT_EQ(codes, std::vector<int>{kAlertFirstButtonReturn});
  EXPECT_FALSE(this->world.sheetIsUp());
}

TYPED_TEST(WindowContract, AnnouncementsNeverChangeTheWindow) {
  this->outlets.nameField.setStringValue("before");
  this->world.screenReader().announce("Sample was successfully installed.");
  this->world.screenReader().announce("");
  EXPECT_EQ(this->outlets.nameField.stringValue(), "before");
}

TYPED_TEST(WindowContract, TasksRunLaterInTheirOrder) {
  std::string order;
  this->world.mainThread().perform([&] {
    order += "a";
    this->world.mainThread().perform([&] { order += "c"; });
  });
  this->world.mainThread().perform([&] { order += "b"; });
  EXPECT_EQ(order, "") << "never inside the call";
  this->world.runMainThread();
  EXPECT_EQ(order, "abc");
}

TYPED_TEST(WindowContract, ADelayedTaskRunsAfterItsTime) {
  std::string order;
  this->world.mainThread().performAfter(0.02, [&] { order += "late "; });
  this->world.mainThread().performAfter(0.0, [&] { order += "soon "; });
  this->world.mainThread().performAfter(-1.0, [&] { order += "past "; });
  this->world.mainThread().performAfter(1e18, [&] { order += "never "; });
  EXPECT_EQ(order, "");
  this->world.runMainThread();
  EXPECT_TRUE(order == "soon past late " || order == "past soon late ") << order;
}

TYPED_TEST(WindowContract, NoEventHasTheOptionKeyAtFirst) {
  EXPECT_FALSE(this->world.application().currentEventHasOptionKey());
}

}  // namespace
}  // namespace halvorn
