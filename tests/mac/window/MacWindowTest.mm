// What the window of AppKit does beyond what every window must.
#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <fstream>

#include "Platform/running/mac/Conversions.h"
#include "Platform/running/mac/MacMainThread.h"
#include "Platform/window/mac/ControlClasses.h"
#include "Platform/window/mac/InterfaceElement.h"
#include "Platform/window/mac/MacApplication.h"
#include "Platform/window/mac/MacImages.h"
#include "Platform/window/mac/MacInstallerWindow.h"
#include "Platform/window/mac/MacViews.h"
#include "Platform/window/mac/WindowOf.h"
#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/mac/MacLoop.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class MacWindowTest : public testing::Test {
 protected:
  static constexpr char kDescription[] = KT_SOURCE_DIR "/Resources/InstallerWindow.xml";
  MacInstallerWindow::Loaded load(const Text& path = kDescription) {
    return MacInstallerWindow::load(path, strings, images, application);
  }
  // The description with one text in it replaced.
  Text changed(const std::string& from, const std::string& to) {
    std::ifstream file(kDescription);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    text.replace(text.find(from), from.size(), to);
    std::ofstream(folder / "changed.xml") << text;
    return Text(folder / "changed.xml");
  }
  Text problem(const std::string& from, const std::string& to) {
    const auto loaded = load(changed(from, to));
    EXPECT_EQ(loaded.window, nullptr);
    return loaded.problem.replacing(Text(folder / "changed.xml"), "FILE");
  }
  static NSView* viewOf(View& outlet) { return dynamic_cast<MacView&>(outlet).view(); }

  MacPool pool;
  TemporaryFolder folder;
  MacMainThread mainThread;
  MacApplication application{mainThread, "Test", "Quit"};
  FakeLocalizedStrings strings;
  MacImages images{KT_SOURCE_DIR "/Resources"};
};

TEST_F(MacWindowTest, TextsOfTheDescriptionAreTranslated) {
  strings.translations = {{"Install", "Installieren"}, {"Cancel", "Abbrechen"}};
  const auto loaded = load();
  ASSERT_NE(loaded.window, nullptr) << loaded.problem.bytes();
  EXPECT_EQ(loaded.window->outlets().installButton.title(), Text("Installieren"));
  NSButton* const cancel = (NSButton*)viewOf(loaded.window->outlets().cancelButton);
  EXPECT_TRUE([[cancel title] isEqual:@"Abbrechen"]);
}

TEST_F(MacWindowTest, ReturnAndEscapeAreTheKeysOfTheButtons) {
  const auto loaded = load();
  EXPECT_TRUE([[(NSButton*)viewOf(loaded.window->outlets().installButton) keyEquivalent] isEqual:@"\r"]);
  EXPECT_TRUE([[(NSButton*)viewOf(loaded.window->outlets().cancelButton) keyEquivalent] isEqual:@"\033"]);
}

TEST_F(MacWindowTest, EachButtonDoesWhatTheDescriptionNames) {
  const auto loaded = load();
  std::string done;
  loaded.window->setActions({.install = [&] { done += "i"; },
                             .cancel = [&] { done += "c"; },
                             .openDocumentation = [&] { done += "d"; },
                             .windowClosed = [&] { done += "w"; }});
  InstallerOutlets outlets = loaded.window->outlets();
  [(NSButton*)viewOf(outlets.helpButton) performClick:nil];
  [(NSButton*)viewOf(outlets.cancelButton) performClick:nil];
  [(NSButton*)viewOf(outlets.installButton) performClick:nil];
  [windowOf(*loaded.window) close];
  EXPECT_EQ(done, "dciw");
}

TEST_F(MacWindowTest, AWindowWithoutAnOutletIsNotUsable) {
  EXPECT_EQ(problem("id=\"pathField\"", "id=\"other\""), Text("FILE: no usable pathField"));
  EXPECT_EQ(problem("id=\"checkmarkField\"", "id=\"mark\""), Text("FILE: no usable checkmarkField"));
  EXPECT_EQ(problem("id=\"helpButton\"", "id=\"help\""), Text("FILE: no usable helpButton"));
}

TEST_F(MacWindowTest, WhatTheDescriptionHasWrongIsNamed) {
  EXPECT_EQ(problem("<rule/>", "<ruler/>"), Text("FILE: unknown element ruler"));
  EXPECT_EQ(problem("lines=\"5\"", "lnes=\"5\""), Text("FILE: unknown attribute lnes of textField"));
  EXPECT_EQ(problem("style=\"lead\"", "style=\"led\""), Text("FILE: unknown style led"));
  EXPECT_EQ(problem("id=\"helpButton\"", "id=\"installButton\""), Text("FILE: id installButton used twice"));
  EXPECT_TRUE(problem("</window>", "").contains("no XML"));
  EXPECT_EQ(load(Text(folder / "missing.xml")).problem,
            Text(folder / "missing.xml") + Text(": cannot be read"));
}

TEST_F(MacWindowTest, AFieldGrowsWithItsTextAndWhatFollowsItMovesDown) {
  const auto loaded = load();
  InstallerOutlets outlets = loaded.window->outlets();
  outlets.tabView.showWithoutTabsAndBorder();
  outlets.tabView.selectItem(1);
  outlets.introField.setStringValue("short");
  const CGFloat before = [viewOf(outlets.introField) frame].size.height;
  const CGFloat below = [viewOf(outlets.explanationField) frame].origin.y;
  outlets.introField.setStringValue(Text(std::string(300, 'w') + " " + std::string(300, 'w')));
  EXPECT_GT([viewOf(outlets.introField) frame].size.height, before);
  EXPECT_GT([viewOf(outlets.explanationField) frame].origin.y, below);
}

TEST_F(MacWindowTest, TheButtonsStandAtTheEndOfTheLastRowOrAtItsBeginningWhereItIsReadSo) {
  auto loaded = load();
  InstallerOutlets outlets = loaded.window->outlets();
  const NSRect install = [viewOf(outlets.installButton) frame];
  EXPECT_EQ(NSMaxX(install), 660 - 16);
  EXPECT_LT(NSMaxX([viewOf(outlets.cancelButton) frame]), NSMinX(install));
  strings.translations["LayoutDirection"] = "RTL";
  const auto other = load();
  InstallerOutlets turned = other.window->outlets();
  EXPECT_EQ(NSMinX([viewOf(turned.installButton) frame]), 16);
}

TEST_F(MacWindowTest, WhatTurnsHasItsPlaceBesideTheHelpButtonBeforeItTurns) {
  const auto loaded = load();
  InstallerOutlets outlets = loaded.window->outlets();
  const NSRect help = [viewOf(outlets.helpButton) frame];
  for (const bool turns : {false, true}) {
    if (turns) outlets.progressIndicator.startAnimation();
    const NSRect place = [viewOf(outlets.progressIndicator) frame];
    EXPECT_GE(NSMinX(place), NSMaxX(help)) << turns;
    EXPECT_LT(NSMinY(place), NSMaxY(help)) << turns;
    EXPECT_GT(NSMaxY(place), NSMinY(help)) << turns;
  }
  outlets.progressIndicator.stopAnimation();
}

TEST_F(MacWindowTest, PagesAreShownWithoutTabsAndBorder) {
  const auto loaded = load();
  InstallerOutlets outlets = loaded.window->outlets();
  NSTabView* const pages = (NSTabView*)viewOf(outlets.tabView);
  [pages setTabViewType:NSTopTabsBezelBorder];
  outlets.tabView.showWithoutTabsAndBorder();
  EXPECT_EQ([pages tabViewType], NSNoTabsNoBorder);
}

TEST_F(MacWindowTest, AViewThatCountsDownwardsIsTurnedAndOneThatCountsUpwardsIsNot) {
  const NSRect frame = NSMakeRect(0, 0, 100, 50);
  NSView* const down = [[[KTBoxView alloc] initWithFrame:frame] autorelease];
  NSView* const up = [[[NSView alloc] initWithFrame:frame] autorelease];
  EXPECT_EQ(upwards(down, NSMakeRect(5, 10, 20, 15)), (Rect{.x = 5, .y = 25, .width = 20, .height = 15}));
  EXPECT_EQ(upwards(up, NSMakeRect(5, 10, 20, 15)), (Rect{.x = 5, .y = 10, .width = 20, .height = 15}));
  EXPECT_TRUE(NSEqualRects(ofView(down, {5, 25, 20, 15}), NSMakeRect(5, 10, 20, 15)));
  EXPECT_TRUE(NSEqualRects(ofView(up, {5, 10, 20, 15}), NSMakeRect(5, 10, 20, 15)));
}

TEST_F(MacWindowTest, ADocumentOfRichTextIsShownAsSuch) {
  std::ofstream(folder / "a.rtf")
      << "{\\rtf1\\ansi{\\fonttbl{\\f0\\fswiss Helvetica;}}\\f0 Gr\\'fc\\'dfe {\\b bold}}";
  const auto loaded = load();
  TextView& view = loaded.window->outlets().readMeTextView;
  EXPECT_TRUE(view.setDocumentFromFile(Text(folder / "a.rtf")));
  NSTextView* const document = [(NSScrollView*)viewOf(view) documentView];
  EXPECT_EQ(textOf([document string]), Text("Grüße bold"));
  EXPECT_FALSE([document isEditable]);
  EXPECT_FALSE(view.setDocumentFromFile(Text(folder / "missing.rtf")));
  EXPECT_EQ([[document string] length], 0U) << "the one before is gone";
}

TEST_F(MacWindowTest, AnElementKnowsItsNumbers) {
  const auto read = readInterfaceElement("<a n='12' w='x' e='' big='100000'><b/><c k='v'/></a>");
  ASSERT_TRUE(read.element);
  EXPECT_EQ(read.element->number("n", 1), 12);
  EXPECT_EQ(read.element->number("w", 1), 1);
  EXPECT_EQ(read.element->number("e", 1), 1);
  EXPECT_EQ(read.element->number("big", 1), 1);
  EXPECT_EQ(read.element->number("missing", 7), 7);
  ASSERT_EQ(read.element->children.size(), 2U);
  EXPECT_EQ(read.element->children[1].value("k"), Text("v"));
  EXPECT_FALSE(readInterfaceElement("<a><b></a>").element);
  EXPECT_FALSE(readInterfaceElement("").element);
}

TEST_F(MacWindowTest, PicturesAreReadFromFilesOfAnyKindTheSystemKnows) {
  EXPECT_NE(images.imageFromFile(KT_SOURCE_DIR "/Resources/HalvornInstaller.icns"), nullptr);
  EXPECT_NE(images.imageFromFile(KT_SOURCE_DIR "/Resources/Checkmark.png"), nullptr);
  EXPECT_EQ(images.imageFromFile(kDescription), nullptr) << "no picture";
  EXPECT_EQ(images.imageNamed("../Resources/Checkmark"), nullptr) << "a name is no path";
}

}  // namespace
}  // namespace halvorn
