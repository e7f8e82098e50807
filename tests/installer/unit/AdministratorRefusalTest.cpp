#include "Sources/AdministratorRefusal.h"

#include <gtest/gtest.h>

#include "tests/fakes/FakeLocalizedStrings.h"
#include "tests/fakes/NamedImages.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/support/TextPrinting.h"

namespace halvorn {
namespace {

TEST(AdministratorRefusal, OnlyTheNamedExceptionLetsTheAdministratorIn) {
  EXPECT_TRUE(isRefusedForAdministrator(true, std::nullopt));
  for (const char* value : {"", "1", "yes", "Container", "container ", "no"})
    EXPECT_TRUE(isRefusedForAdministrator(true, Text(value))) << value;
  EXPECT_FALSE(isRefusedForAdministrator(true, Text("container")));
  EXPECT_FALSE(isRefusedForAdministrator(false, std::nullopt));
  EXPECT_FALSE(isRefusedForAdministrator(false, Text("container")));
}

TEST(AdministratorRefusal, TheLogSaysWhatToDo) {
  RecordingLog log;
  logAdministratorRefusal(log);
  EXPECT_EQ(log.lines(),
            std::vector<std::string>{
                "ERROR -- The installer does not run as root. Start it as the person who uses the computer: "
                "it asks for an "
                "administrator's password where one is needed. In a container without another account, set "
                "HALVORN_AS_ROOT=container."});
}

TEST(AdministratorRefusal, TheAlertIsInThePersonsLanguageAndHasOneButton) {
  FakeLocalizedStrings strings;
  strings.translations = {
      {"The installer cannot be used as the administrator \"root\".", "Nicht als root."},
      {"Start it as the person who uses this computer. It asks for an administrator's password where one is "
       "needed.",
       "Als Sie selbst."},
      {"Quit", "Beenden"}};
  NamedImages images;
  const AlertDescription alert = administratorAlert(strings, images);
  EXPECT_EQ(alert.style, AlertDescription::Style::Critical);
  EXPECT_EQ(alert.messageText, "Nicht als root.");
  EXPECT_EQ(alert.informativeText, "Als Sie selbst.");
  EXPECT_EQ(alert.buttonTitles, std::vector<Text>{"Beenden"});
  EXPECT_EQ(images.asked, std::vector<Text>{"AlertStopIcon"});
  EXPECT_NE(alert.icon, nullptr);
}

}  // namespace
}  // namespace halvorn
