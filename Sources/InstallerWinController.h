// The controller of the installer window: coordinates start-up, the two pages, the installation and its end.
//
// Thread: main.
// Why: docs/decisions/005-the-worker-finishes.md
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Core/Text.h"
#include "Platform/window/InstallerOutlets.h"
#include "Sources/ArgumentDictionary.h"
#include "Sources/Completion.h"
#include "Sources/InstallOutcome.h"
#include "Sources/InstallProgress.h"
#include "Sources/InstallWorker.h"
#include "Sources/Startup.h"

namespace halvorn {

class Application;
class Authorizer;
class FileManager;
class KTDynamicColorClass;
class LocalizedStrings;
class Log;
class ScreenReader;
class Workers;
class Workspace;

struct InstallerServices {
  // What the steps use.
  StartupServices startup;
  CompletionServices completion;
  InstallWorkerServices worker;
  InstallProgressServices progress;
  // The controller's own.
  Application& application;
  Authorizer& authorizer;
  KTDynamicColorClass& colors;
  Departure& departure;
  const FileManager& files;
  const Log& log;
  ScreenReader& screenReader;
  const LocalizedStrings& strings;
  Workers& workers;
  Workspace& workspace;
};

class InstallerWinController {
 public:
  // `argumentList` is the process's, program path included.
  InstallerWinController(const InstallerServices& services, const InstallerOutlets& outlets,
                         std::vector<Text> argumentList);

  // Start-up; called once, when the window has been made from its description.
  void awakeFromNib();
  // Fills the argument dictionary from the command line; does nothing when it was filled before.
  void extractArguments();
  // Turns the window into the message of a set-up error. Logs: "%@" with the message.
  void showSetupError(const Text& message);
  // The person left the version alert: the program ends, after opening the
  // software archive for the second button.
  void systemVersionAlertDidEnd(int returnCode);
  [[nodiscard]] bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

  // Shows page 0 (read-me) or 1 (install) and titles the buttons for it.
  void selectTab(int index);
  void install();
  void cancel();
  // The window is gone. What the worker has not begun it leaves alone, and a question for administrator
  // rights is withdrawn; what it has begun it finishes.
  void leave();
  // Logs: "documentation path missing".
  void openDocumentation();
  void openReadMe();  // with its default application, for who sees only the beginning of it
  void animateProgress(Animate animate);

  void installationFinished(const InstallOutcome& outcome);
  void showFinalMessage(const Text& message);
  void playDoneSound();

  [[nodiscard]] const ArgumentDictionary& arguments() const { return arguments_; }
  [[nodiscard]] bool finished() const { return completion_.finished(); }
  // How the last installation ended; nullopt before one has.
  [[nodiscard]] const std::optional<InstallOutcome>& outcome() const { return outcome_; }
  // What the destination was chosen for; nullopt when start-up ended before that.
  [[nodiscard]] std::optional<DestinationReason> destinationReason() const { return destinationReason_; }

 private:
  void describeButtons(int index);
  // Shows how far it is, again and again, as long as `round` lasts.
  void followProgress(int round);
  void showProgress(const std::optional<Progress>& progress);

  InstallerServices services_;
  InstallerOutlets outlets_;
  std::vector<Text> argumentList_;
  ArgumentDictionary arguments_;
  bool hasArguments_ = false;
  std::optional<DestinationReason> destinationReason_;
  std::optional<InstallOutcome> outcome_;
  Completion completion_;
  InstallProgress progress_;
  InstallWorker worker_;
  int round_ = 0;  // counts the beginnings and ends of what is followed
};

}  // namespace halvorn
