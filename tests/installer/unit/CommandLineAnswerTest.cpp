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

TEST_F(CommandLineAnswer, HelpIsATableThatFitsIntoATerminal) {
  EXPECT_EQ(
      answer({"/installer", "--help"}),
      Text("usage: HalvornInstaller [-KEY VALUE]...\n"
           "Installs an application bundle through a window.\n"
           "\n"
           "  -sourcePath PATH              the bundle to install; without it, the one around the installer\n"
           "  -destinationPath PATH         where to, bundle name included\n"
           "  -productName NAME             shown in the window\n"
           "  -version VERSION              shown after the name\n"
           "  -minSystemVersion VERSION     lowest system version the product runs on\n"
           "  -readMePath FILE              rich text, plain text, HTML or Markdown shown first\n"
           "  -documentationPath FILE       what the \"?\" button opens\n"
           "  -iconPath FILE                image for the window\n"
           "  -wrapperPath FOLDER           folder around the bundle whose other items come along\n"
           "  -productCode CODE...          four-character signatures of the product\n"
           "  -quitCode CODE...             signatures of programs that must not run meanwhile\n"
           "  -completionSound YES          play a sound at the end\n"
           "  -completionQuit SECONDS       quit by itself after so many seconds\n"
           "\n"
           "Alone: --help, --version\n"));
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
