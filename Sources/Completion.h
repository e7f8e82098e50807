// The window's final state: after an installation, and after a set-up error.
#pragma once

#include <functional>

#include "Core/Text.h"
#include "Platform/window/InstallerOutlets.h"
#include "Sources/ArgumentDictionary.h"
#include "Sources/InstallOutcome.h"

namespace halvorn {

class Application;
class CompletionSound;
class Defaults;
class DesktopMessages;
class LocalizedStrings;
class Log;
class MainThread;
class ScreenReader;

struct CompletionServices {
  Application& application;
  CompletionSound& sound;
  const Defaults& defaults;
  DesktopMessages& messages;
  const LocalizedStrings& strings;
  MainThread& mainThread;
  ScreenReader& screenReader;
  const Log& log;
};

// Thread: main.
class Completion {
 public:
  Completion(const CompletionServices& services, const InstallerOutlets& outlets,
             const ArgumentDictionary& arguments);

  // Shows how the installation ended and lets the person go on; quits after the delay the product asked for.
  // Logs: "quit delay: %1.1f".
  void installationFinished(const InstallOutcome& outcome);
  // Shows the localized message, filled with the product name, as the last word;
  // the install button then quits.
  void showFinalMessage(const Text& message);
  // Plays the completion sound when the arguments ask for it.
  void playDoneSound();

  // Set with the final message.
  [[nodiscard]] bool finished() const { return finished_; }

 private:
  void showFailure(const InstallOutcome& outcome);
  void showSuccess();
  void scheduleQuit();

  CompletionServices services_;
  InstallerOutlets outlets_;
  const ArgumentDictionary& arguments_;
  bool finished_ = false;
};

}  // namespace halvorn
