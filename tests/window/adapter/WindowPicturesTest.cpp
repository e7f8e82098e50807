// Every state of the window, drawn in both looks, three languages and two scales; kept in screenshots/ of the
// build folder to be looked at.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestFiles.h"
#include "tests/window/adapter/ProbeProgram.h"

namespace halvorn {
namespace {

struct Words {
  const char* language;
  const char* product;
  const char* intro;
  const char* explanation;
  const char* path;
  const char* buttons[4];  // go on, install, back, OK
  const char* done;
};
constexpr Words kWords[] = {
    {"en",
     "Sample Studio 2.1",
     "This program will install Sample Studio on your computer.",
     "If you wish to read the documentation first, click the \"?\" button. If Sample Studio is running, it "
     "will be "
     "asked to quit. An older version will be moved to the Trash.",
     "/opt/Sample Studio",
     {"Continue", "Install", "Go Back", "OK"},
     "Sample Studio was successfully installed."},
    {"de",
     "Fotobearbeitungssoftware Professional 2.1b3",
     "Dieses Installationsprogramm wird Fotobearbeitungssoftware Professional auf Ihrem Computer "
     "installieren.",
     "Falls Fotobearbeitungssoftware Professional gerade ausgeführt wird, wird das Programm vor der "
     "Installation zum "
     "Beenden aufgefordert. Eine ältere Programmversion wird in den Papierkorb verschoben.",
     "/home/benutzerin/Programme/Donaudampfschifffahrtsgesellschaftskapitänsmützenverwaltungssoftware/Foto",
     {"Fortfahren", "Installieren", "Zurück", "OK"},
     "Fotobearbeitungssoftware Professional wurde erfolgreich installiert."},
    {"he",
     "סטודיו לדוגמה 2.1",
     "תוכנית זו תתקין את סטודיו לדוגמה במחשב שלך.",
     "אם סטודיו לדוגמה פועל, הוא יתבקש להיסגר. גרסה ישנה יותר תועבר לאשפה.",
     "/opt/Sample Studio",
     {"המשך", "התקן", "חזרה", "אישור"},
     "סטודיו לדוגמה הותקן בהצלחה."}};

class WindowPictures : public testing::Test {
 protected:
  WindowPictures() {
    const std::filesystem::path resources = folder_.path() / "Test.app/Contents/Resources";
    std::filesystem::create_directories(resources.parent_path());
    std::filesystem::copy(KT_SOURCE_DIR "/Resources", resources, std::filesystem::copy_options::recursive);
    std::filesystem::create_directories(pictures_);
  }

  // Takes the pictures of all states; answers how many of them differ from each other.
  std::size_t draw(const Words& words, const std::string& style, const std::string& scale) {
    ProbeProgram probe(
        {KT_WINDOW_PROBE, folder_ / "Test.app", words.language, style},
        {.environment = {"QT_QPA_PLATFORM=offscreen", "QT_SCALE_FACTOR=" + scale, "LANG=C.UTF-8",
                         "PATH=/usr/bin:/bin", "HOME=" + folder_.path().string(),
                         "XDG_RUNTIME_DIR=" + folder_.path().string()}});
    EXPECT_TRUE(probe.waitForOutput("ready", kTestPatience)) << probe.output();
    const std::string name = std::string(words.language) + "-" + style + "-" + scale + "00-";
    std::set<std::string> different;
    const auto picture = [&](const std::string& state) {
      const std::filesystem::path file = pictures_ / (name + state + ".png");
      std::filesystem::remove(file);
      EXPECT_EQ(probe.ask("screenshot " + file.string()), "saved");
      different.insert(contentsOf(file));
    };
    const std::string sources = KT_SOURCE_DIR;
    probe.tell({"window show", "set nameField " + std::string(words.product),
                "set introField " + std::string(words.intro),
                "set explanationField " + std::string(words.explanation),
                "set pathField " + std::string(words.path), "hide messageField", "hide checkmarkField",
                "image iconField " + sources + "/Resources/HalvornInstaller.icns", "aqua readMeTextView",
                "document " + sources + "/tests/data/window/editor.rtf", "select 0",
                "title installButton " + std::string(words.buttons[0]), "window atLaunch"});
    picture("readme");
    probe.tell({"select 1", "title installButton " + std::string(words.buttons[1]),
                "title cancelButton " + std::string(words.buttons[2])});
    picture("install");
    probe.tell({"disable installButton", "disable cancelButton", "spin"});
    picture("running");
    probe.tell({"stop", "enable installButton", "hide cancelButton", "hide explanationField",
                "hide pathField", "hide helpButton", "show checkmarkField",
                "title installButton " + std::string(words.buttons[3]),
                "set introField " + std::string(words.done)});
    picture("final");
    probe.tell({"hide checkmarkField", "set introField missing product signature"});
    picture("error");
    probe.tell({"sheet AlertStopIcon"});
    picture("alert");
    probe.tell({"terminate"});
    EXPECT_EQ(probe.waitForEnd(20), 0);
    return different.size();
  }

  TemporaryFolder folder_;
  std::filesystem::path pictures_ = KT_BINARY_DIR "/screenshots";
};

TEST_F(WindowPictures, EveryStateLooksDifferentInBothLooks) {
  for (const char* style : {"light", "dark"}) EXPECT_EQ(draw(kWords[0], style, "1"), 6U) << style;
  EXPECT_NE(contentsOf(pictures_ / "en-light-100-install.png"),
            contentsOf(pictures_ / "en-dark-100-install.png"));
}

TEST_F(WindowPictures, EveryStateIsDrawnWithLongWordsAndFromRightToLeft) {
  EXPECT_EQ(draw(kWords[1], "light", "1"), 6U);
  EXPECT_EQ(draw(kWords[2], "dark", "1"), 6U);
}

TEST_F(WindowPictures, EveryStateIsDrawnAtTwiceTheSize) { EXPECT_EQ(draw(kWords[1], "dark", "2"), 6U); }

}  // namespace
}  // namespace halvorn
