// The work of one installation: quit the running product, put the new one in place, launch it.
//
// Thread: everything here runs on the install worker's thread. It touches no outlet; it reaches the main
// thread only by posting to it, without waiting. The argument dictionary is read without a lock: nothing
// changes it any more.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "Core/Text.h"
#include "Sources/ArgumentDictionary.h"
#include "Sources/InstallOutcome.h"
#include "Sources/ProductQuitter.h"

namespace halvorn {

class Application;
class Authorizer;
class Bundles;
class Clock;
class DestinationChoice;
class FileChangeNotices;
class KTProcessClass;
class LocalizedStrings;
class Log;
class MainThread;
class Workspace;
struct InstallServices;

struct InstallWorkerServices {
  const InstallServices& install;
  DestinationChoice& destinations;
  KTProcessClass& processes;
  Authorizer& authorizer;
  Workspace& workspace;
  FileChangeNotices& changes;
  const Application& application;
  const Bundles& bundles;
  const LocalizedStrings& strings;
  MainThread& mainThread;
  Clock& clock;
  const Log& log;
};

enum class Animate { No, Yes };

class InstallWorker {
 public:
  // What the worker posts to the main thread.
  struct MainThreadEntries {
    std::function<void(Animate)> animateProgress;
    std::function<void(InstallOutcome)> installationFinished;
  };

  InstallWorker(const InstallWorkerServices& services, const ArgumentDictionary& arguments,
                MainThreadEntries entries);

  // The whole installation; ends by posting installationFinished.
  void installThread();

  // Copy and launch. What went wrong comes as a key of the localized strings.
  struct CopyResult {
    enum class Kind { Installed, Canceled, Failed } kind;
    Text messageKey;  // when failed
  };
  [[nodiscard]] CopyResult installMyselfInDestination();

  enum class AuthorizedInstall { Done, Failed, Canceled };
  // Runs the tool with administrator rights. Blank paths fail at once, before any dialog.
  [[nodiscard]] AuthorizedInstall authorizedInstall(const Text& source, const Text& to,
                                                    const OptionalText& wrap);

 private:
  [[nodiscard]] OptionalText nameOfProcessThatRefusedToQuit();
  [[nodiscard]] CopyResult copyInProcess(const Text& source, const Text& destination,
                                         const OptionalText& wrapper);
  [[nodiscard]] CopyResult copyWithAuthorization(const Text& source, const Text& destination,
                                                 const OptionalText& wrapper);
  void launch(const Text& destination);
  void waitForIcon(const Text& destination);
  void open(const Text& destination);
  [[nodiscard]] Text failureMessage(const Text& messageKey) const;
  void animateProgress(Animate animate);
  void finish(const InstallOutcome& outcome);

  InstallWorkerServices services_;
  const ArgumentDictionary& arguments_;
  MainThreadEntries entries_;
  ProductQuitter quitter_;
};

}  // namespace halvorn
