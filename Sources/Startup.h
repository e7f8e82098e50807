// The installer's start-up: where the log goes, what is to be installed, and what the window says of it.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "Core/PropertyValue.h"
#include "Core/Text.h"
#include "Platform/window/InstallerOutlets.h"
#include "Sources/ArgumentDictionary.h"
#include "Sources/InstallerArguments.h"

namespace halvorn {

class Alerts;
class Application;
class Bundles;
class FileManager;
class Images;
class ItemClaims;
class KTProcessClass;
class KTUtilitiesVersions;
class LocalizedStrings;
class Log;
class SearchPaths;
class StandardStreams;
class SystemFacts;

struct StartupServices {
  Alerts& alerts;
  Application& application;
  const Bundles& bundles;
  ItemClaims& claims;
  DestinationChoice& destinations;
  const FileManager& files;
  Images& images;
  KTProcessClass& processes;
  const KTUtilitiesVersions& versions;
  const LocalizedStrings& strings;
  const SearchPaths& searchPaths;
  StandardStreams& streams;
  const SystemFacts& system;
  const Log& log;
};

// Thread: main.
class Startup {
 public:
  // What start-up asks of the controller.
  struct Controller {
    std::function<void(int)> selectTab;
    std::function<void()> extractArguments;
    std::function<void()> playDoneSound;
    std::function<void(const Text&)> showSetupError;
    std::function<void(int)> systemVersionAlertDidEnd;
    std::function<void(const Text& path)> logIsIn;  // where people can read it
  };

  Startup(const StartupServices& services, const InstallerOutlets& outlets, ArgumentDictionary& arguments,
          Controller controller);

  // Runs once. Ends with the window on its page, with a set-up error in the window, with the version alert up, or,
  // where another installer is there for the same destination, with that one in front and this one told to end.
  // Logs: "direct invocation"; "shortened path = %@"; what the completion of the arguments logs; set-up errors;
  // "Another installer is there for %@: it comes to the front".
  void run(const std::vector<Text>& argumentList);
  // What the destination was chosen for; nullopt when start-up ended before that.
  [[nodiscard]] std::optional<DestinationReason> destinationReason() const {
    return completion_.destinationReason();
  }

 private:
  void chooseLogDestination(const std::vector<Text>& argumentList);
  void prepareWindow();
  void showIcon(const PropertyDictionary& info);
  [[nodiscard]] ImagePointer productIcon(const PropertyDictionary& info) const;
  void showTexts(const OptionalText& version);
  void showReadMeOrInstallPage();
  [[nodiscard]] bool anotherHas(const Text& destination);
  void bringForward();
  void showSystemVersionAlert(const OptionalText& version, const OptionalText& minimum);

  [[nodiscard]] OptionalText argument(const char* key) const { return arguments_.text(key); }

  StartupServices services_;
  InstallerOutlets outlets_;
  ArgumentDictionary& arguments_;
  InstallerArguments completion_;
  Controller controller_;
};

}  // namespace halvorn
