#include "Sources/InstallerWinController.h"

#include "Core/ByteCounter.h"
#include "Core/ForPeople.h"
#include "Core/Format.h"
#include "Core/Log.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/bundles/Workspace.h"
#include "Platform/rights/Authorizer.h"
#include "Platform/running/MainThread.h"
#include "Platform/running/Workers.h"
#include "Platform/window/Alerts.h"
#include "Platform/window/Application.h"
#include "Platform/window/ScreenReader.h"
#include "Sources/WindowColors.h"

namespace halvorn {
namespace {

// Where people find older versions of the products.
constexpr char kSoftwareArchiveUrl[] = "https://www.halvorn.example/archive/";
constexpr int kReadMePage = 0;
constexpr int kInstallPage = 1;
constexpr double kBetweenLooks = 0.5;  // seconds

}  // namespace

InstallerWinController::InstallerWinController(const InstallerServices& services,
                                               const InstallerOutlets& outlets,
                                               std::vector<Text> argumentList)
    : services_(services),
      outlets_(outlets),
      argumentList_(std::move(argumentList)),
      completion_(services.completion, outlets, arguments_),
      progress_(services.progress),
      worker_(services.worker, arguments_,
              {.animateProgress = [this](Animate animate) { animateProgress(animate); },
               .installationFinished =
                   [this](const InstallOutcome& outcome) { installationFinished(outcome); }}) {}

void InstallerWinController::awakeFromNib() {
  colorWindow(outlets_, services_.colors);
  Startup startup(
      services_.startup, outlets_, arguments_,
      {.selectTab = [this](int index) { selectTab(index); },
       .extractArguments = [this] { extractArguments(); },
       .playDoneSound = [this] { playDoneSound(); },
       .showSetupError = [this](const Text& message) { showSetupError(message); },
       .systemVersionAlertDidEnd = [this](int returnCode) { systemVersionAlertDidEnd(returnCode); },
       .logIsIn = [this](const Text& path) { completion_.setLogFile(path); }});
  startup.run(argumentList_);
  destinationReason_ = startup.destinationReason();
}

void InstallerWinController::extractArguments() {
  if (hasArguments_) return;
  hasArguments_ = true;
  InstallerArguments(arguments_, services_.files, services_.log).extract(argumentList_);
}

void InstallerWinController::showSetupError(const Text& message) {
  services_.log("%@", message);
  showFinalMessage(message);
  colorSetupError(outlets_, services_.colors);
  // Still the format of the interface description: there was no product name to put in.
  if (outlets_.window.title().contains("%")) outlets_.window.setTitle("");
}

void InstallerWinController::systemVersionAlertDidEnd(int returnCode) {
  if (returnCode == kAlertSecondButtonReturn) services_.workspace.openUrl(kSoftwareArchiveUrl);
  services_.application.terminate();
}

void InstallerWinController::selectTab(int index) {
  const LocalizedStrings& strings = services_.strings;
  outlets_.tabView.selectItem(index);
  outlets_.installButton.setTitle(strings.localized(index == kReadMePage ? "Continue" : "Install"));
  // KEEP: the entry counts, whether or not its file exists.
  if (arguments_.has(KTInstallerKeyReadMePath)) {
    outlets_.cancelButton.setTitle(strings.localized(index == kReadMePage ? "Cancel" : "Go Back"));
  }
  describeButtons(index);
}

// What the buttons will do, for those who hear the window.
void InstallerWinController::describeButtons(int index) {
  const LocalizedStrings& strings = services_.strings;
  const bool goesBack = index != kReadMePage && arguments_.has(KTInstallerKeyReadMePath);
  outlets_.cancelButton.setDescription(goesBack ? strings.localized("Shows the read-me again")
                                                : strings.localized("Ends without installing anything"));
  outlets_.helpButton.setDescription(strings.localized("Opens the documentation"));
  if (index == kReadMePage)
    return outlets_.installButton.setDescription(strings.localized("Shows the install page"));
  const Text name = arguments_.text(KTInstallerKeyProductName).value_or(Text());
  const Text place = outlets_.pathField.stringValue();
  outlets_.installButton.setDescription(format(strings.localized("Installs %1$@ to %2$@"), name, place));
}

void InstallerWinController::install() {
  if (finished()) return services_.application.terminate();
  if (outlets_.tabView.selectedItem() == kReadMePage) {
    selectTab(kInstallPage);
    return services_.screenReader.announce(outlets_.introField.stringValue());
  }
  outlets_.installButton.setEnabled(Enabled::No);
  outlets_.cancelButton.setEnabled(Enabled::No);
  completion_.installationBegins();
  services_.worker.copied.reset();
  progress_.begin();
  services_.workers.detach([this] { worker_.installThread(); });
  services_.workers.detach([this] {
    progress_.measure(arguments_.text(KTInstallerKeySourcePath).value_or(Text()),
                      arguments_.text(KTInstallerKeyWrapperPath), services_.departure.left);
  });
}

void InstallerWinController::cancel() {
  if (arguments_.has(KTInstallerKeyReadMePath) && outlets_.tabView.selectedItem() == kInstallPage) {
    return selectTab(kReadMePage);
  }
  services_.application.terminate();
}

void InstallerWinController::leave() {
  // In this order: a question that comes after the withdrawal must find that nobody is there.
  services_.departure.left.request();
  services_.authorizer.withdraw();
}

void InstallerWinController::openDocumentation() {
  const OptionalText path = arguments_.text(KTInstallerKeyDocumentationPath);
  if (!path) {
    services_.log("documentation path missing");
    services_.application.beep();
    return;
  }
  // An opener that does not start has nothing the person could act on here.
  static_cast<void>(services_.workspace.openFile(*path));
  // KEEP: the answer is asked for, and nothing follows from it.
  static_cast<void>(outlets_.window.isMiniaturizeEnabled());
}

void InstallerWinController::openReadMe() {
  // An opener that does not start has nothing the person could act on here.
  if (const OptionalText path = arguments_.text(KTInstallerKeyReadMePath))
    static_cast<void>(services_.workspace.openFile(*path));
}

void InstallerWinController::animateProgress(Animate animate) {
  ++round_;
  if (animate == Animate::No) {
    showProgress(std::nullopt);
    return outlets_.progressIndicator.stopAnimation();
  }
  outlets_.progressIndicator.startAnimation();
  followProgress(round_);
  const Text name = arguments_.text(KTInstallerKeyProductName).value_or(Text());
  services_.screenReader.announce(
      formatForPeople(services_.strings.localized("%@ is being installed."), name));
}

void InstallerWinController::followProgress(int round) {
  if (round != round_) return;
  showProgress(progress_.progress());
  services_.completion.mainThread.performAfter(kBetweenLooks, [this, round] { followProgress(round); });
}

void InstallerWinController::showProgress(const std::optional<Progress>& progress) {
  outlets_.progressIndicator.setProgress(progress);
  services_.application.setProgress(progress ? std::optional(progress->share) : std::nullopt);
}

void InstallerWinController::installationFinished(const InstallOutcome& outcome) {
  outcome_ = outcome;
  ++round_;
  showProgress(std::nullopt);
  completion_.installationFinished(outcome);
}

void InstallerWinController::showFinalMessage(const Text& message) { completion_.showFinalMessage(message); }

void InstallerWinController::playDoneSound() { completion_.playDoneSound(); }

}  // namespace halvorn
