// The work of one installation: quit the running product, put the new one in place, launch it.
//
// Whoever leaves before anything was touched gets nothing installed: no further application is quit, nothing
// trashed, copied or launched behind a closed window. From the first touch on the work is finished; only a
// session that ends does without the launch.
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
#include "Sources/Departure.h"
#include "Sources/InstallOutcome.h"
#include "Sources/ProductQuitter.h"

namespace halvorn {

class Application;
class Authorizer;
class Bundles;
class ByteCounter;
class Clock;
class DestinationChoice;
class FileChangeNotices;
class KTProcessClass;
class LocalizedStrings;
class Log;
class MainThread;
class Workspace;
struct InstallServices;

// Whether what was installed is launched.
enum class LaunchInstalled { No, Yes };

struct InstallWorkerServices {
  const InstallServices& install;
  DestinationChoice& destinations;
  KTProcessClass& processes;
  Authorizer& authorizer;
  Workspace& workspace;
  FileChangeNotices& changes;
  const Application& application;
  const Bundles& bundles;
  ByteCounter& copied;  // raised by the tool's words; copies in process count there by themselves
  const LocalizedStrings& strings;
  MainThread& mainThread;
  Clock& clock;
  const Departure& departure;
  const Log& log;
  LaunchInstalled launch = LaunchInstalled::Yes;
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

  // The whole installation; ends by posting installationFinished. Logs: "Left before anything
  // was touched: nothing is installed".
  void installThread();

  // Copy and launch; canceled when the person has left before. What went wrong comes
  // as a key of the localized strings.
  struct CopyResult {
    enum class Kind { Installed, Canceled, Failed } kind;
    std::optional<InstallFailure> failure;  // when failed
    Text messageKey;                        // when failed
  };
  [[nodiscard]] CopyResult installMyselfInDestination();

  enum class AuthorizedInstall { Done, Failed, Canceled };
  // Runs the tool with administrator rights. Blank paths fail at once, before any dialog.
  [[nodiscard]] AuthorizedInstall authorizedInstall(const Text& source, const Text& to,
                                                    const OptionalText& wrap);

 private:
  // nullopt also when the person has left.
  [[nodiscard]] OptionalText nameOfProcessThatRefusedToQuit();
  [[nodiscard]] OptionalText quitAndLook();
  [[nodiscard]] CopyResult copyInProcess(const Text& source, const Text& destination,
                                         const OptionalText& wrapper);
  [[nodiscard]] CopyResult copyWithAuthorization(const Text& source, const Text& destination,
                                                 const OptionalText& wrapper);
  [[nodiscard]] bool hasLeft() const { return services_.departure.left.isRequested(); }
  // Whether the session ends, which leaves the launch out. Logs: "not launched: the session ends".
  [[nodiscard]] bool sessionEnds() const;
  // Whether it is wanted. Logs: "not launched: nobody wants it".
  [[nodiscard]] bool isLaunchWanted() const;
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
  OptionalText noRights_;  // why the last request for rights came to nothing
};

}  // namespace halvorn
