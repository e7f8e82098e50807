#include "Sources/InstallWorker.h"

#include "Core/ByteCounter.h"
#include "Core/ForPeople.h"
#include "Core/Format.h"
#include "Core/Log.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/bundles/Workspace.h"
#include "Platform/files/FileChangeNotices.h"
#include "Platform/rights/Authorizer.h"
#include "Platform/running/Clock.h"
#include "Platform/running/MainThread.h"
#include "Platform/window/Application.h"
#include "Sources/AuthorizedExecute.h"
#include "Sources/DestinationChoice.h"
#include "train/InstallFunction.h"

namespace halvorn {
namespace {

constexpr int kQuitRetries = 3;
constexpr double kQuitRetrySeconds = 1.0;
constexpr int kOpenRetries = 10;
constexpr double kOpenRetrySeconds = 0.5;

}  // namespace

InstallWorker::InstallWorker(const InstallWorkerServices& services, const ArgumentDictionary& arguments,
                             MainThreadEntries entries)
    : services_(services),
      arguments_(arguments),
      entries_(std::move(entries)),
      quitter_(services.processes, arguments, services.departure.left, services.clock, services.log) {}

void InstallWorker::installThread() {
  services_.log("Install");
  noRights_ = std::nullopt;
  animateProgress(Animate::Yes);

  if (const OptionalText name = nameOfProcessThatRefusedToQuit()) {
    services_.log("%@ refused to quit; installation cancelled", *name);
    const Text message = services_.strings.localized(
        "%1$@ cannot be running during the installation.\rQuit %1$@, then click \"Install\" again.");
    finish(InstallOutcome::failed(InstallFailure::RefusedToQuit, formatForPeople(message, *name)));
    return;
  }

  const CopyResult result = installMyselfInDestination();
  if (hasLeft() && result.kind == CopyResult::Kind::Canceled) {
    services_.log("Left before anything was touched: nothing is installed");
  }
  switch (result.kind) {
    case CopyResult::Kind::Installed:
      return finish(InstallOutcome::installed());
    case CopyResult::Kind::Canceled:
      return finish(InstallOutcome::canceled());
    case CopyResult::Kind::Failed:
      return finish(InstallOutcome::failed(*result.failure, failureMessage(result.messageKey), noRights_));
  }
}

OptionalText InstallWorker::nameOfProcessThatRefusedToQuit() {
  OptionalText name = quitAndLook();
  if (name) services_.log("%@ did not quit; will retry", *name);
  for (int attempt = 0; name && attempt < kQuitRetries; ++attempt) {
    services_.clock.sleep(kQuitRetrySeconds);
    name = quitAndLook();
  }
  return hasLeft() ? std::nullopt : quitter_.processToQuitStillRunning();
}

OptionalText InstallWorker::quitAndLook() {
  quitter_.quitProcesses();
  return hasLeft() ? std::nullopt : quitter_.processToQuitStillRunning();
}

Text InstallWorker::failureMessage(const Text& messageKey) const {
  const OptionalText productName = arguments_.text(KTInstallerKeyProductName);
  const Text message = formatForPeople(services_.strings.localized(messageKey), productName);
  if (arguments_.has(KTInstallerKeyWrapperPath)) return message;
  const Text hint =
      services_.strings.localized("Try installing %1$@ manually by copying it to the Applications folder.");
  return message + format("\r%@", formatForPeople(hint, productName));
}

InstallWorker::CopyResult InstallWorker::installMyselfInDestination() {
  const Text source = arguments_.text(KTInstallerKeySourcePath).value_or(Text());
  const Text destination = arguments_.text(KTInstallerKeyDestinationPath).value_or(Text());
  const OptionalText wrapper = arguments_.text(KTInstallerKeyWrapperPath);

  const bool isWritable = services_.destinations.canWriteToPath(destination);
  const bool isEnforced = services_.application.currentEventHasOptionKey();
  if (isEnforced) services_.log("enforcing authorization");
  // The last moment at which nothing has been touched.
  if (hasLeft()) return {CopyResult::Kind::Canceled, std::nullopt, Text()};
  CopyResult result = isWritable && !isEnforced ? copyInProcess(source, destination, wrapper)
                                                : copyWithAuthorization(source, destination, wrapper);
  if (result.kind != CopyResult::Kind::Installed) return result;

  // From here on nothing can fail the installation.
  services_.log("successfully copied");
  services_.changes.noteFileSystemChanged(destination);
  launch(destination);
  if (const auto current = services_.processes.currentProcess()) current->setFrontProcessFrontWindowOnly();
  return result;
}

InstallWorker::CopyResult InstallWorker::copyInProcess(const Text& source, const Text& destination,
                                                       const OptionalText& wrapper) {
  switch (InstallApplication(services_.install, source, destination, wrapper)) {
    case InstallResult::Installed:
      return {CopyResult::Kind::Installed, std::nullopt, Text()};
    case InstallResult::NotTrashed:
      return {CopyResult::Kind::Failed, InstallFailure::NotTrashed, "Could not delete existing copy."};
    case InstallResult::CopyFailed:
      break;
  }
  return {CopyResult::Kind::Failed, InstallFailure::NotCopied, "Installation failed."};
}

InstallWorker::CopyResult InstallWorker::copyWithAuthorization(const Text& source, const Text& destination,
                                                               const OptionalText& wrapper) {
  switch (authorizedInstall(source, destination, wrapper)) {
    case AuthorizedInstall::Done:
      return {CopyResult::Kind::Installed, std::nullopt, Text()};
    case AuthorizedInstall::Canceled:
      services_.log("User canceled authorization");
      return {CopyResult::Kind::Canceled, std::nullopt, Text()};
    case AuthorizedInstall::Failed:
      break;
  }
  // KEEP: the line says /Applications whatever the destination is.
  services_.log("ERROR -- Could not copy myself to /Applications with authorization");
  return {CopyResult::Kind::Failed, InstallFailure::NotCopiedWithRights, "Authorized copying failed."};
}

InstallWorker::AuthorizedInstall InstallWorker::authorizedInstall(const Text& source, const Text& to,
                                                                  const OptionalText& wrap) {
  if (to.trimmed().isEmpty() || source.trimmed().isEmpty()) return AuthorizedInstall::Failed;

  // The password dialog must not appear over a spinning window.
  animateProgress(Animate::No);
  const OptionalText tool =
      services_.bundles.pathForResource(services_.bundles.mainBundlePath(), "train", "");
  std::vector<Text> arguments = {source, to};
  if (wrap) arguments.push_back(*wrap);
  const Authorizer::Result rights =
      services_.authorizer.requestAdministratorRights(tool.value_or(Text()), arguments);
  noRights_ = rights.reason;
  if (rights.answer == AuthorizationAnswer::Canceled) return AuthorizedInstall::Canceled;
  if (rights.answer == AuthorizationAnswer::Refused || !rights.authorization)
    return AuthorizedInstall::Failed;

  animateProgress(Animate::Yes);
  rights.authorization->whenCopied(
      [&copied = services_.copied](std::uint64_t bytes) { copied.raiseTo(bytes); });
  const int status = AuthorizedExecute(*rights.authorization, tool, services_.log);
  return status == 0 ? AuthorizedInstall::Done : AuthorizedInstall::Failed;
}

void InstallWorker::launch(const Text& destination) {
  services_.log("launching %@", destination);
  services_.clock.sleep(0.5);
  // KEEP: the path is handed over as the text of a URL, not made into a file URL.
  services_.log("registered app: %d", services_.workspace.registerBundle(destination));
  services_.clock.sleep(0.1);
  waitForIcon(destination);
  if (isLaunchWanted() && !sessionEnds()) open(destination);
}

bool InstallWorker::isLaunchWanted() const {
  if (services_.launch == LaunchInstalled::Yes) return true;
  services_.log("not launched: nobody wants it");
  return false;
}

bool InstallWorker::sessionEnds() const {
  if (!services_.departure.sessionEnds.isRequested()) return false;
  services_.log("not launched: the session ends");
  return true;
}

void InstallWorker::waitForIcon(const Text& destination) {
  if (services_.workspace.hasIcon(destination)) return;
  services_.log("did not get icon");
  services_.clock.sleep(1.0);
  services_.log("retry; %@", services_.workspace.hasIcon(destination) ? "succeeded" : "failed");
}

void InstallWorker::open(const Text& destination) {
  bool isOpen = services_.workspace.openFile(destination);
  services_.log("launched immediately: %d", isOpen ? 1 : 0);
  for (int attempt = 0; !isOpen && attempt < kOpenRetries; ++attempt) {
    services_.clock.sleep(kOpenRetrySeconds);
    if (sessionEnds()) return;
    services_.log("retry opening");
    isOpen = services_.workspace.openFile(destination);
    services_.log("launched: %d", isOpen ? 1 : 0);
  }
}

void InstallWorker::animateProgress(Animate animate) {
  services_.mainThread.perform([entry = entries_.animateProgress, animate] { entry(animate); });
}

void InstallWorker::finish(const InstallOutcome& outcome) {
  services_.mainThread.perform([entry = entries_.installationFinished, outcome] { entry(outcome); });
}

}  // namespace halvorn
