// The installer window with its colors on the desktop's appearance, in a program of its own that does what
// it is told on standard input, a command a line, and prints what happens to it:
//
//   color_probe BUNDLE LANGUAGE desktop
//
//   readMe PATH | error TEXT | aqua VIEW | inherit VIEW | global yes | global no | where VIEW
//   globals (how many lines "global dark color" were logged)
//
// Each command is answered by "done"; "light" and "dark" tell that the desktop's appearance has changed.
#include <QWidget>
#include <atomic>
#include <iostream>
#include <map>
#include <semaphore>
#include <string>
#include <thread>

#include "Core/Paths.h"
#include "KTStuff/CocoaExtensions/ViewExtensions.h"
#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "KTStuff/KTClasses/PlainColor.h"
#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "Platform/color/linux/DesktopAppearance.h"
#include "Platform/color/linux/QtInterfaceStyle.h"
#include "Platform/session/linux/LinuxSystemFacts.h"
#include "Platform/window/linux/InstallerWindow.h"
#include "Platform/window/linux/QtAppearances.h"
#include "Platform/window/linux/QtApplication.h"
#include "Platform/window/linux/WindowWidget.h"
#include "Platform/window/linux/pictures/QtImages.h"
#include "Sources/WindowColors.h"
#include "tests/fakes/FakeBundles.h"
#include "tests/fakes/FakeDefaults.h"
#include "tests/fakes/FakeLocalizedDates.h"
#include "tests/fakes/FakeUnicode.h"
#include "tests/fakes/RecordingLog.h"

namespace halvorn {
namespace {

void say(const std::string& line) { std::cout << line << std::endl; }

class Probe {
 public:
  Probe(DesktopAppearance& desktop, InstallerWindow& window)
      : appearances_(desktop), style_(desktop), window_(window) {
    colorWindow(outlets_, colors_);
    outlets_.tabView.showWithoutTabsAndBorder();
    outlets_.messageField.setHidden(Hidden::Yes);
    outlets_.checkmarkField.setHidden(Hidden::Yes);
    outlets_.window.setTitle("Install Sample");
    outlets_.nameField.setStringValue("Sample 2.1");
    outlets_.pathField.setStringValue("/opt/Sample");
  }

  void obey(const std::string& line) {
    const auto space = line.find(' ');
    const std::string verb = line.substr(0, space);
    const std::string rest = space == std::string::npos ? "" : line.substr(space + 1);
    const LinuxSystemFacts system;
    if (verb == "readMe") readMe(rest);
    if (verb == "error") error(rest);
    if (verb == "aqua") useLightAquaAppearance(view(rest), KTViewExtensions::LightAqua::Yes, system);
    if (verb == "inherit") useLightAquaAppearance(view(rest), KTViewExtensions::LightAqua::No, system);
    if (verb == "global") global(rest == "yes" ? UseGlobalAppearance::Yes : UseGlobalAppearance::No);
    if (verb == "where") where(rest);
    if (verb == "globals") say("globals " + std::to_string(log_.lines().size()));
    say("done");
  }

 private:
  View& view(const std::string& name) {
    if (name == "tabView") return outlets_.tabView;
    if (name == "introField") return outlets_.introField;
    return outlets_.readMeTextView;
  }

  void readMe(const std::string& path) {
    outlets_.readMeTextView.setDocumentFromFile(Text(path));
    outlets_.tabView.selectItem(0);
    front();
  }
  void error(const std::string& text) {
    outlets_.introField.setStringValue(Text(text));
    outlets_.pathField.setHidden(Hidden::Yes);
    outlets_.explanationField.setHidden(Hidden::Yes);
    colorSetupError(outlets_, colors_);
    outlets_.tabView.selectItem(1);
    front();
  }
  void front() {
    outlets_.window.center();
    outlets_.window.makeKeyAndOrderFront();
  }
  // Paper, ink and warnings follow the desktop, whatever the views are held to.
  void global(UseGlobalAppearance use) {
    const auto ink = colors_.lightColor(PlainColor::calibratedWhite(0.1), PlainColor::calibratedWhite(0.9));
    outlets_.readMeTextView.setBackgroundColor(readMePaper(colors_)->useGlobalAppearance(use));
    outlets_.readMeTextView.setTextColor(ink->useGlobalAppearance(use));
    colors_.redWarningTextColor()->useGlobalAppearance(use);
    outlets_.introField.setTextColor(colors_.redWarningTextColor());
  }
  void where(const std::string& id) {
    const QWidget* widget = window_.widget().find<QWidget>(QString::fromStdString(id));
    const QPoint corner = widget->mapToGlobal(QPoint(0, 0));
    say("at " + std::to_string(corner.x()) + " " + std::to_string(corner.y()) + " " +
        std::to_string(widget->width()) + " " + std::to_string(widget->height()));
  }

  RecordingLog log_;
  FakeBundles bundles_;
  FakeUnicode unicode_;
  FakeLocalizedDates dates_;
  FakeDefaults defaults_;
  LinuxSystemFacts system_;
  QtAppearances appearances_;
  QtInterfaceStyle style_;
  KTUtilitiesVersions versions_{bundles_, system_, unicode_, dates_, log_};
  KTUtilitiesTheme theme_{versions_, defaults_, style_};
  KTDynamicColorClass colors_{{.appearances = appearances_, .theme = theme_, .system = system_, .log = log_}};
  InstallerWindow& window_;
  InstallerOutlets outlets_ = window_.outlets();
};

int run(const std::string& program, const std::string& bundle, const std::string& language) {
  QtApplication application{Text(program)};
  DesktopAppearance desktop(std::nullopt);
  desktop.changed = [&] { say(desktop.style() == InterfaceStyle::Dark ? "dark" : "light"); };
  const LinuxLocalizedStrings strings(Text(bundle), {Text(language)});
  const Text resources = Paths::appending(Text(bundle), "Contents/Resources");
  QtImages images(resources);
  const auto loaded =
      InstallerWindow::load(Paths::appending(resources, "InstallerWindow.xml"), strings, images);
  if (!loaded.window) return say(loaded.problem.bytes()), 1;
  Probe probe(desktop, *loaded.window);
  std::binary_semaphore obeyed(0);
  std::thread reader([&] {
    for (std::string line; std::getline(std::cin, line); obeyed.acquire()) {
      application.perform([&probe, &obeyed, line] {
        probe.obey(line);
        obeyed.release();
      });
    }
    application.perform([&application] { application.terminate(); });
  });
  say("ready");
  const int status = application.run();
  reader.detach();  // it waits for input that may never come; the program ends here
  return status;
}

}  // namespace
}  // namespace halvorn

int main(int count, char** arguments) {
  if (count < 3) return 2;
  std::quick_exit(halvorn::run(arguments[0], arguments[1], arguments[2]));
}
