#include "Sources/Startup.h"

#include "Core/ForPeople.h"
#include "Core/Format.h"
#include "Core/Log.h"
#include "Core/Paths.h"
#include "KTStuff/CocoaExtensions/ViewExtensions.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/files/FileManager.h"
#include "Platform/files/ItemClaims.h"
#include "Platform/files/SearchPaths.h"
#include "Platform/session/SystemFacts.h"
#include "Platform/window/Alerts.h"
#include "Platform/window/Application.h"
#include "Platform/window/Images.h"
#include "Sources/DestinationChoice.h"
#include "Sources/LogDestination.h"

namespace halvorn {
namespace {

constexpr int kReadMePage = 0;
constexpr int kInstallPage = 1;

}  // namespace

Startup::Startup(const StartupServices& services, const InstallerOutlets& outlets,
                 ArgumentDictionary& arguments, Controller controller)
    : services_(services),
      outlets_(outlets),
      arguments_(arguments),
      completion_(arguments, services.files, services.log),
      controller_(std::move(controller)) {}

void Startup::run(const std::vector<Text>& argumentList) {
  chooseLogDestination(argumentList);
  prepareWindow();
  controller_.extractArguments();

  if (!completion_.completeSourcePath(services_.bundles.mainBundlePath())) {
    controller_.playDoneSound();
    return controller_.showSetupError("missing source path");
  }
  if (!completion_.completeProductName()) return controller_.showSetupError("missing program name");
  outlets_.window.setTitle(formatForPeople(outlets_.window.title(), argument(KTInstallerKeyProductName)));

  const Text source = argument(KTInstallerKeySourcePath).value_or(Text());
  const PropertyDictionary info = services_.bundles.infoDictionary(source).value_or(PropertyDictionary());
  showIcon(info);

  const OptionalText version = completion_.version(info);
  const OptionalText minimum = completion_.minSystemVersion(info);
  const bool isCompatible =
      !minimum || services_.versions.compareVersion(services_.versions.systemVersionString(), *minimum) !=
                      Ordering::Ascending;

  completion_.completeDestination(services_.destinations);
  const Text destination = argument(KTInstallerKeyDestinationPath).value_or(Text());
  outlets_.pathField.setStringValue(undisguised(services_.destinations.localizedPath(destination)));
  completion_.completeDocumentation();
  if (!completion_.completeCodes(info)) return controller_.showSetupError("missing product signature");

  if (anotherHas(destination)) return services_.application.terminate();

  showTexts(version);
  showReadMeOrInstallPage();
  bringForward();
  if (!isCompatible) showSystemVersionAlert(version, minimum);
}

void Startup::chooseLogDestination(const std::vector<Text>& argumentList) {
  if (!isStartedByProduct(argumentList)) return services_.log("direct invocation");
  if (const OptionalText path = openLogFile(services_.streams, services_.searchPaths))
    controller_.logIsIn(*path);
}

void Startup::prepareWindow() {
  outlets_.nameField.setStringValue("");
  outlets_.tabView.showWithoutTabsAndBorder();
  controller_.selectTab(kInstallPage);
}

ImagePointer Startup::productIcon(const PropertyDictionary& info) const {
  if (const OptionalText path = argument(KTInstallerKeyIconPath)) {
    if (ImagePointer image = services_.images.imageFromFile(*path)) return image;
  }
  const Text source = argument(KTInstallerKeySourcePath).value_or(Text());
  if (const OptionalText name = textForKey(info, "CFBundleIconFile")) {
    OptionalText path = services_.bundles.pathForResource(source, *name, "icns");
    if (!path) path = services_.bundles.pathForResource(source, *name, "");
    if (path) {
      if (ImagePointer image = services_.images.imageFromFile(*path)) return image;
    }
  }
  return services_.images.iconForFile(source);
}

void Startup::showIcon(const PropertyDictionary& info) {
  const ImagePointer icon = productIcon(info);
  if (!icon) return;
  outlets_.iconField.setImage(icon);
  services_.application.setApplicationIcon(icon);
}

void Startup::showTexts(const OptionalText& version) {
  const OptionalText name = argument(KTInstallerKeyProductName);
  outlets_.nameField.setStringValue(version ? formatForPeople("%@ %@", name, version)
                                            : undisguised(name.value_or(Text())));
  outlets_.introField.setStringValue(formatForPeople(outlets_.introField.stringValue(), name));

  const bool hasDocumentation = arguments_.has(KTInstallerKeyDocumentationPath);
  Text explanation = formatForPeople(outlets_.explanationField.stringValue(), name);
  if (hasDocumentation) {
    const Text sentence =
        services_.strings.localized("If you wish to read the documentation first, click the \"?\" button.");
    explanation = format("%@ %@", sentence, explanation);
  }
  outlets_.explanationField.setStringValue(explanation);
  outlets_.helpButton.setHidden(hasDocumentation ? Hidden::No : Hidden::Yes);
  outlets_.messageField.setHidden(Hidden::Yes);
}

void Startup::showReadMeOrInstallPage() {
  const OptionalText path = argument(KTInstallerKeyReadMePath);
  if (!path || !services_.files.fileExists(*path)) return controller_.selectTab(kInstallPage);
  KTViewExtensions::useLightAquaAppearance(outlets_.readMeTextView, KTViewExtensions::LightAqua::Yes,
                                           services_.system);
  // However long it takes, the window is there.
  services_.application.performWhenShown(
      [&view = outlets_.readMeTextView, path = *path] { view.setDocumentFromFile(path); });
  controller_.selectTab(kReadMePage);
}

// Two that replace the same item would undo each other's work. Of one that does not answer nothing is known: it may be
// at its end, with its window closed.
bool Startup::anotherHas(const Text& destination) {
  const auto comeForward = [&window = outlets_.window, &processes = services_.processes] {
    window.makeKeyAndOrderFront();
    if (const auto current = processes.currentProcess()) current->setFrontProcess();
  };
  if (services_.claims.claim(destination, comeForward) != ItemClaims::Claim::Anothers) return false;
  services_.log("Another installer is there for %@: it comes to the front", destination);
  return true;
}

void Startup::bringForward() {
  outlets_.checkmarkField.setHidden(Hidden::Yes);
  outlets_.window.center();
  outlets_.window.makeKeyAndOrderFront();
  outlets_.window.orderFrontRegardless();
  outlets_.window.makeMain();
  // The process model connects to the desktop when it is first asked; the window is on the screen by then.
  services_.application.performWhenShown([&processes = services_.processes] {
    if (const auto current = processes.currentProcess()) current->setFrontProcess();
  });
}

void Startup::showSystemVersionAlert(const OptionalText& version, const OptionalText& minimum) {
  const OptionalText name = argument(KTInstallerKeyProductName);
  const LocalizedStrings& strings = services_.strings;
  AlertDescription alert;
  alert.style = AlertDescription::Style::Informational;
  alert.buttonTitles = {strings.localized("Quit"), strings.localized("Visit Archive")};
  alert.icon = services_.images.imageNamed("AlertStopIcon");
  alert.messageText = formatForPeople(
      strings.localized(
          "%1$@ %2$@ cannot be installed on this computer because it requires Mac OS X %3$@ or newer."),
      name, version, minimum);
  alert.informativeText = formatForPeople(
      strings.localized("To check if an older version of %@ is available for your computer, please visit our "
                        "software archive."),
      name);
  services_.alerts.beginSheet(alert, controller_.systemVersionAlertDidEnd);
}

}  // namespace halvorn
