// Items, aliases, resources, the workspace and Launch Services: what is asked, and what is given back.
#include "Platform/bundles/mac/MacItemFacts.h"
#include "Platform/bundles/mac/MacWorkspace.h"
#include "tests/mac/MacTest.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class MacItems : public MacTest {
 protected:
  MacItemFacts items;
  MacWorkspace workspace;
  TemporaryFolder folder;
};

using Strings = std::vector<std::string>;

TEST_F(MacItems, FlagsAreThoseOfLaunchServicesEachByItself) {
  const std::string app = putFile(folder / "Foo.app/x", "x");
  for (const bool isPackage : {false, true}) {
    for (const bool isNative : {false, true}) {
      fakemac::state().itemFlags[app] = (isPackage ? 2U : 0U) | (isNative ? 0x80U : 0U) | 0x4U | 0x100U;
      const auto flags = items.flags(Text(app));
      ASSERT_TRUE(flags);
      EXPECT_EQ(flags->isPackage, isPackage);
      EXPECT_EQ(flags->isNativeApplication, isNative);
    }
  }
  EXPECT_EQ(fakemac::state().itemQuestions.front() & 0x8U, 0x8U) << "the flags of applications";
  EXPECT_EQ(items.flags(Text(folder / "missing")), std::nullopt);
}

TEST_F(MacItems, AChainOfAliasesIsFollowedToItsEnd) {
  const std::string first = putFile(folder / "first", "");
  const std::string second = putFile(folder / "second", "");
  const std::string target = putFile(folder / "target", "");
  fakemac::state().aliases = {{first, second}, {second, target}};
  EXPECT_EQ(items.aliasTarget(Text(first)), Text(target));
  EXPECT_EQ(items.aliasTarget(Text(target)), std::nullopt) << "it is no alias";
  EXPECT_EQ(items.aliasTarget(Text(folder / "missing")), std::nullopt);
  fakemac::state().aliases[second] = folder / "gone";
  EXPECT_EQ(items.aliasTarget(Text(first)), std::nullopt);
}

TEST_F(MacItems, AResourceIsReadAndItsFileClosedAgain) {
  const std::string app = putFile(folder / "Foo", "");
  fakemac::state().resourceForks[app] = {{{fourCharCode("vers"), 1}, std::string("\1\0\x80\2", 4)},
                                         {{fourCharCode("vers"), 2}, ""}};
  EXPECT_EQ(items.resource(Text(app), fourCharCode("vers"), 1), std::string("\1\0\x80\2", 4));
  EXPECT_EQ(fakemac::liveObjects(), 0);
  EXPECT_EQ(fakemac::state().currentResourceFile, 2) << "the file before is current again";
  EXPECT_EQ(items.resource(Text(app), fourCharCode("vers"), 2), "");
  EXPECT_EQ(items.resource(Text(app), fourCharCode("vers"), 3), std::nullopt);
  EXPECT_EQ(items.resource(Text(app), fourCharCode("STR "), 1), std::nullopt);
}

TEST_F(MacItems, WithoutAForkThereIsNoResource) {
  const std::string file = putFile(folder / "plain", "x");
  EXPECT_EQ(items.resource(Text(file), fourCharCode("vers"), 1), std::nullopt);
  EXPECT_EQ(items.resource(Text(folder / "missing"), fourCharCode("vers"), 1), std::nullopt);
  EXPECT_EQ(fakemac::state().currentResourceFile, 2);
}

TEST_F(MacItems, AnEmptyPathNamesNothing) {
  EXPECT_EQ(items.flags(Text()), std::nullopt);
  EXPECT_EQ(items.aliasTarget(Text()), std::nullopt);
  EXPECT_EQ(items.resource(Text(), fourCharCode("vers"), 1), std::nullopt);
  EXPECT_TRUE(fakemac::state().itemQuestions.empty()) << "Launch Services are not asked";
}

TEST_F(MacItems, AnAliasToAFolderLeadsThere) {
  const std::string alias = putFile(folder / "alias", "");
  fakemac::state().aliases[alias] = folder.path().string();
  EXPECT_EQ(items.aliasTarget(Text(alias)), Text(folder.path().string()));
}

TEST_F(MacItems, OpeningIsAnsweredByTheWorkspace) {
  const std::string file = putFile(folder / "Guide.html", "x");
  EXPECT_TRUE(workspace.openFile(Text(file)));
  EXPECT_TRUE(workspace.openUrl("https://example.com/a?b"));
  EXPECT_EQ(fakemac::state().opened, (Strings{file, "https://example.com/a?b"}));
  EXPECT_FALSE(workspace.openFile(Text(folder / "missing")));
  fakemac::state().refusesOpening = true;
  EXPECT_FALSE(workspace.openFile(Text(file)));
  EXPECT_FALSE(workspace.openUrl("https://example.com"));
  fakemac::state().raisesExceptions = true;
  EXPECT_FALSE(workspace.openFile(Text(file)));
}

TEST_F(MacItems, ABundleIsRegisteredByItsPathAsTheTextOfAUrl) {
  EXPECT_EQ(workspace.registerBundle("/Applications/Foo.app"), 0);
  EXPECT_EQ(workspace.registerBundle("file:///Applications/Bar.app"), 0);
  EXPECT_EQ(fakemac::state().registered, (Strings{"/Applications/Foo.app", "file:///Applications/Bar.app"}));
  fakemac::state().registration = -10811;
  EXPECT_EQ(workspace.registerBundle("/Applications/Foo.app"), -10811);
}

TEST_F(MacItems, WhatIsNoUrlIsNotRegistered) {
  EXPECT_EQ(workspace.registerBundle("no url <"), -50);
  EXPECT_TRUE(fakemac::state().registered.empty());
}

TEST_F(MacItems, IconsAndNamesAreTheSystems) {
  EXPECT_TRUE(workspace.hasIcon("/Applications/Foo.app"));
  fakemac::state().hasIcons = false;
  EXPECT_FALSE(workspace.hasIcon("/Applications/Foo.app"));
  EXPECT_EQ(workspace.displayName("/Applications/Foo.app"), Text("Foo"));
  fakemac::state().raisesExceptions = true;
  EXPECT_EQ(workspace.displayName("/Applications/Foo.app"), Text("Foo.app"));
}

TEST_F(MacItems, LoginItemsAreResolvedInTheirOrderAndGivenBack) {
  fakemac::state().loginItems = {"/Applications/B.app", std::nullopt, "/Applications/A ü.app"};
  EXPECT_EQ(workspace.loginItems(), (std::vector<OptionalText>{Text("/Applications/B.app"), std::nullopt,
                                                               Text("/Applications/A ü.app")}));
  EXPECT_EQ(fakemac::liveObjects(), 0);
  fakemac::state().loginItems.clear();
  EXPECT_EQ(workspace.loginItems(), std::vector<OptionalText>{});
  fakemac::state().hasLoginItems = false;
  EXPECT_EQ(workspace.loginItems(), std::nullopt);
}

}  // namespace
}  // namespace halvorn
