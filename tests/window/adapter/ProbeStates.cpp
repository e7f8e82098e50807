#include "tests/window/adapter/ProbeStates.h"

#include "Core/Format.h"

namespace halvorn {
namespace {

constexpr char kProduct[] = "Sample Studio";
constexpr char kPath[] = "/home/anna/Applications/Sample Studio";
constexpr char kLongProduct[] = "Fotobearbeitungssoftware Professional Enterprise Collection for Workgroups";
constexpr char kLongVersion[] = "12.3.45b6";
constexpr char kLongPath[] =
    "/home/benutzerin/Programme/Donaudampfschifffahrtsgesellschaftskapitänsmützenverwaltungssoftware/"
    "Zweigstellen/Niederösterreich/Sankt Pölten/Abteilung für Fotografie und Bildbearbeitung/Unterabteilung/"
    "Fotobearbeitungssoftware Professional Enterprise Collection for Workgroups";

}  // namespace

const std::vector<std::string>& ProbeStates::names() {
  static const std::vector<std::string> names = {
      "readme",       "readme-long", "menu",      "install",   "help", "focus-install",
      "focus-cancel", "focus-help",  "running",   "failed",    "done", "error",
      "names",        "icon-none",   "icon-tiny", "icon-huge", "alert"};
  return names;
}

bool ProbeStates::show(const std::string& name) {
  outlets_.tabView.showWithoutTabsAndBorder();
  if (name == "readme" || name == "menu") return showReadMe("editor.rtf"), true;
  if (name == "readme-long") return showReadMe("long.txt"), true;
  showInstall(kProduct, "2.1", kPath, name == "help" || name == "focus-help");
  if (name == "names") showInstall(kLongProduct, kLongVersion, kLongPath, true);
  if (name == "running") {
    outlets_.installButton.setEnabled(Enabled::No);
    outlets_.cancelButton.setEnabled(Enabled::No);
    outlets_.progressIndicator.startAnimation();
  }
  if (name == "done") {
    showMessage("%@ was successfully installed.");
    outlets_.checkmarkField.setHidden(Hidden::No);
  }
  if (name == "error") showMessage("missing product signature");
  if (name == "icon-none") outlets_.iconField.setImage(images_.imageNamed("GenericApplication"));
  if (name == "icon-tiny") outlets_.iconField.setImage(images_.imageFromFile(Text(documents_ + "/tiny.png")));
  if (name == "icon-huge") outlets_.iconField.setImage(images_.imageFromFile(Text(documents_ + "/huge.png")));
  if (name == "alert") showAlert();
  for (const std::string& known : names()) {
    if (known == name) return true;
  }
  return false;
}

void ProbeStates::showInstall(const Text& product, const Text& version, const Text& path, bool withHelp) {
  outlets_.window.setTitle(format(localized("Install %@"), product));
  outlets_.nameField.setStringValue(product + Text(" ") + version);
  outlets_.introField.setStringValue(
      format(localized("This program will install %@ on your computer."), product));
  Text explanation = format(localized("If %@ is running, it will be asked to quit. An older version will be "
                                      "moved to the Trash."),
                            product);
  if (withHelp) {
    explanation =
        format("%@ %@", localized("If you wish to read the documentation first, click the \"?\" button."),
               explanation);
  }
  outlets_.explanationField.setStringValue(explanation);
  outlets_.pathField.setStringValue(path);
  outlets_.iconField.setImage(images_.imageNamed("HalvornInstaller"));
  outlets_.progressIndicator.stopAnimation();
  outlets_.checkmarkField.setHidden(Hidden::Yes);
  outlets_.messageField.setHidden(Hidden::Yes);
  outlets_.explanationField.setHidden(Hidden::No);
  outlets_.pathField.setHidden(Hidden::No);
  outlets_.helpButton.setHidden(withHelp ? Hidden::No : Hidden::Yes);
  outlets_.installButton.setEnabled(Enabled::Yes);
  outlets_.cancelButton.setEnabled(Enabled::Yes);
  outlets_.tabView.selectItem(1);
  showButtons("Install", "Cancel");
}

void ProbeStates::showButtons(const char* install, const char* cancel) {
  outlets_.cancelButton.setHidden(Hidden::No);
  outlets_.installButton.setTitle(localized(install));
  outlets_.cancelButton.setTitle(localized(cancel));
}

void ProbeStates::showReadMe(const char* document) {
  showInstall(kProduct, "2.1", kPath, true);
  outlets_.readMeTextView.setAppearance(AppearanceName::Aqua);  // whatever the desktop's look
  (void)outlets_.readMeTextView.setDocumentFromFile(Text(documents_ + "/" + document));
  outlets_.tabView.selectItem(0);
  showButtons("Continue", "Cancel");
}

void ProbeStates::showMessage(const char* key) {
  outlets_.introField.setStringValue(format(localized(key), Text(kProduct)));
  outlets_.cancelButton.setHidden(Hidden::Yes);
  outlets_.installButton.setTitle(localized("OK"));
  outlets_.pathField.setHidden(Hidden::Yes);
  outlets_.explanationField.setHidden(Hidden::Yes);
  outlets_.helpButton.setHidden(Hidden::Yes);
}

void ProbeStates::showAlert() {
  AlertDescription alert;
  alert.style = AlertDescription::Style::Informational;
  alert.messageText =
      format(localized("%1$@ %2$@ cannot be installed on this computer because it requires Mac "
                       "OS X %3$@ or newer."),
             Text(kProduct), Text("2.1"), Text("99.0"));
  alert.informativeText =
      format(localized("To check if an older version of %@ is available for your computer, "
                       "please visit our software archive."),
             Text(kProduct));
  alert.buttonTitles = {localized("Quit"), localized("Visit Archive")};
  alert.icon = images_.imageNamed("AlertStopIcon");
  alerts_.beginSheet(alert, [](int) {});
}

}  // namespace halvorn
