#include "tools/halvorn/InterfaceTexts.h"

#include <gtest/gtest.h>

#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

TEST(InterfaceTexts, AreThoseOfTheInstallersWindow) {
  FakeLocalizedStrings strings;
  strings.translations["Install %@"] = "%@ installieren";
  auto texts = interfaceTexts(contentsOf(KT_SOURCE_DIR "/Resources/InstallerWindow.xml"), strings);
  EXPECT_EQ(texts["window"], Text("%@ installieren"));
  EXPECT_EQ(texts["introField"], Text("This program will install %@ on your computer."));
  EXPECT_EQ(texts["installButton"], Text("Install"));
  EXPECT_FALSE(texts.contains("nameField"));
}

TEST(InterfaceTexts, ABrokenDescriptionHasNone) {
  EXPECT_TRUE(interfaceTexts("<window id=\"window\" title=\"x\">", FakeLocalizedStrings()).empty());
}

}  // namespace
}  // namespace halvorn
