// The installer's own steps, those that its window takes, with a face that shows no window.
//
//   InstallerSteps steps({.installer = bundle, .arguments = {"-sourcePath", product}}, log);
//   steps.begin();                                    // start-up: what would be installed, and where
//   if (!steps.setupError()) ... steps.install() ...
//
// Nothing is written before install(), unless start-up may open the log file.
// Thread: main.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Core/Log.h"
#include "Platform/window/Alerts.h"
#include "Sources/DestinationChoice.h"
#include "Sources/InstallOutcome.h"
#include "Sources/InstallWorker.h"
#include "tools/halvorn/TerminalFace.h"

namespace halvorn {

class ArgumentDictionary;
class Bundles;
class FileManager;
class ItemFacts;
class KTProcess;
class KTSystem;
class LocalizedStrings;
class Trash;
class Workspace;

struct InstallerStepsSettings {
  Text installer;                    // the installer's bundle
  std::vector<Text> arguments = {};  // of the installer, its program path not among them
  // Whether the standard streams become the installer's log file, as they do when a product starts it.
  enum class LogFile { No, Yes } logFile = LogFile::No;
  enum class Sound { No, Yes } sound = Sound::No;
  enum class EnforceRights { No, Yes } enforceRights = EnforceRights::No;  // as the Option key does
  LaunchInstalled launch = LaunchInstalled::Yes;
  // Each line of the log. Thread: any.
  std::function<void(const Text& line)> told = {};
  // Where the lines go besides; Standard: where those of the installer go.
  enum class Log { Nowhere, Standard } log = Log::Nowhere;
};

class InstallerSteps {
 public:
  explicit InstallerSteps(const InstallerStepsSettings& settings);
  ~InstallerSteps();
  InstallerSteps(const InstallerSteps&) = delete;
  InstallerSteps& operator=(const InstallerSteps&) = delete;

  // Start-up.
  void begin();
  // The message of a set-up error: nothing can be installed.
  [[nodiscard]] OptionalText setupError() const;
  // The alert that the product needs a newer system.
  [[nodiscard]] const std::optional<AlertDescription>& systemAlert() const;
  [[nodiscard]] const ArgumentDictionary& arguments() const;
  [[nodiscard]] std::optional<DestinationReason> destinationReason() const;
  // What would be asked to quit.
  [[nodiscard]] std::vector<std::shared_ptr<KTProcess>> targets();
  // Why administrator rights could not be asked for, as far as that is known beforehand.
  [[nodiscard]] OptionalText obstacleToRights();
  [[nodiscard]] TerminalFace& face();

  // The install page's button. Returns when the installation has ended, whatever signal comes meanwhile.
  InstallOutcome install();
  // The number of the signal that came meanwhile; 0 for none.
  [[nodiscard]] int interruptedBy() const;

  [[nodiscard]] KTSystem& system();
  [[nodiscard]] const Bundles& bundles() const;
  [[nodiscard]] DestinationChoice& destinations();
  [[nodiscard]] Trash& trash();
  [[nodiscard]] const Log& log() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace halvorn
