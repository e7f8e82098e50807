#include "Sources/CommandLineAnswer.h"

#include <gtest/gtest.h>

#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "tests/fakes/FakeBundles.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

class CommandLineAnswer : public testing::Test {
 protected:
  OptionalText answer(const std::vector<Text>& argumentList) {
    return commandLineAnswer(argumentList, bundles);
  }
  FakeBundles bundles;
};

TEST_F(CommandLineAnswer, HelpNamesEveryKey) {
  const OptionalText help = answer({"/installer", "--help"});
  ASSERT_TRUE(help);
  for (const char* key :
       {KTInstallerKeyProductName, KTInstallerKeyVersion, KTInstallerKeyMinSystemVersion,
        KTInstallerKeySourcePath, KTInstallerKeyDestinationPath, KTInstallerKeyDocumentationPath,
        KTInstallerKeyReadMePath, KTInstallerKeyProductCode, KTInstallerKeyQuitCode, KTInstallerKeyIconPath,
        KTInstallerKeyWrapperPath, KTInstallerCompletionSound, KTInstallerCompletionQuit}) {
    EXPECT_TRUE(help->contains(Text("  -") + Text(key) + Text(" "))) << key;
  }
}

TEST_F(CommandLineAnswer, TheVersionIsTheInstallersOwn) {
  EXPECT_EQ(answer({"/installer", "--version"}), Text("HalvornInstaller\n")) << "none is known";
  bundles.setInfo(bundles.mainBundle, {{"CFBundleShortVersionString", "1.0"}});
  EXPECT_EQ(answer({"/installer", "--version"}), Text("HalvornInstaller 1.0\n"));
}

TEST_F(CommandLineAnswer, BesideAnythingElseTheyAreNoQuestions) {
  EXPECT_EQ(answer({}), std::nullopt);
  EXPECT_EQ(answer({"/installer"}), std::nullopt);
  EXPECT_EQ(answer({"/installer", "--help", "--version"}), std::nullopt);
  EXPECT_EQ(answer({"/installer", "-productName", "--help"}), std::nullopt);
  EXPECT_EQ(answer({"/installer", "-help"}), std::nullopt);
  EXPECT_EQ(answer({"--help"}), std::nullopt) << "the program's own path";
}

}  // namespace
}  // namespace halvorn
