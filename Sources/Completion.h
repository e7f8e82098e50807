// The window's final state: after an installation, and after a set-up error.
#pragma once

#include <functional>

#include "Core/Text.h"
#include "Platform/window/InstallerOutlets.h"
#include "Sources/ArgumentDictionary.h"
#include "Sources/InstallOutcome.h"

namespace halvorn {

class Application;
class Clock;
class CompletionSound;
class Defaults;
class DesktopMessages;
class LocalizedStrings;
class Log;
class MainThread;
class Notices;
class ScreenReader;
class Workspace;

struct CompletionServices {
  Application& application;
  Clock& clock;
  CompletionSound& sound;
  const Defaults& defaults;
  DesktopMessages& messages;
  const LocalizedStrings& strings;
  MainThread& mainThread;
  Notices& notices;
  ScreenReader& screenReader;
  Workspace& workspace;
  const Log& log;
};

// Thread: main.
class Completion {
 public:
  Completion(const CompletionServices& services, const InstallerOutlets& outlets,
             const ArgumentDictionary& arguments);

  // What was said of the installation before is over.
  void installationBegins();
  // Shows how the installation ended, tells it to who looks elsewhere, and lets the person go on; quits after the delay
  // the product asked for. A failure is told by the desktop's messages where nobody can be shown a notice.
  // Logs: "quit delay: %1.1f".
  void installationFinished(const InstallOutcome& outcome);
  // Shows the localized message, filled with the product name, as the last word;
  // the install button then quits.
  void showFinalMessage(const Text& message);
  // Plays the completion sound when the arguments ask for it.
  void playDoneSound();

  // The file that people can read the log in.
  void setLogFile(const Text& path) { logFile_ = path; }

  // Set with the final message.
  [[nodiscard]] bool finished() const { return finished_; }

 private:
  enum class Told { AsFailure, AsResult };
  void showFailure(const InstallOutcome& outcome);
  void showSuccess();
  void tell(const Text& sentence, Told how);
  void scheduleQuit();

  CompletionServices services_;
  InstallerOutlets outlets_;
  const ArgumentDictionary& arguments_;
  OptionalText logFile_;
  double began_ = 0;  // by the monotonic clock
  bool finished_ = false;
};

}  // namespace halvorn
