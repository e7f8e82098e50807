// The composition root of the tool: what Sources/main_linux.cpp is for the program with a window.
#include "tools/halvorn/InstallerSteps.h"

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <random>
#include <system_error>
#include <thread>

#include "Core/ByteCounter.h"
#include "Core/Paths.h"
#include "KTStuff/CocoaExtensions/SoundExtensions.h"
#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "Platform/color/null/NullColor.h"
#include "Platform/files/linux/trash/XdgTrash.h"
#include "Platform/files/null/NullFiles.h"
#include "Platform/files/posix/SilentFileChangeNotices.h"
#include "Platform/rights/linux/PolkitAuthorizer.h"
#include "Platform/rights/posix/Requester.h"
#include "Platform/running/null/NullRunning.h"
#include "Platform/running/posix/PosixStandardStreams.h"
#include "Platform/running/posix/TerminationSignals.h"
#include "Platform/session/null/NullSession.h"
#include "Platform/sound/linux/LoadedSounds.h"
#include "Platform/sound/null/NullSound.h"
#include "Platform/text/null/NullText.h"
#include "Sources/AdministratorRefusal.h"
#include "Sources/CompletionSound.h"
#include "Sources/InstallerWinController.h"
#include "System/linux/MainLoop.h"
#include "System/linux/Places.h"
#include "tools/halvorn/InterfaceTexts.h"
#include "tools/halvorn/RootAuthorizer.h"
#include "train/InstallFunction.h"

namespace halvorn {
namespace {

constexpr std::chrono::seconds kLongestSound(5);

constexpr char kProgramName[] = "halvorn";
constexpr char kBundleIdentifier[] = "example.halvorn.installer";  // the same settings hold
constexpr double kForEver = 1e9;                                   // seconds
constexpr std::size_t kLongestDescription = 1 << 20;

std::vector<Text> argumentListOf(const InstallerStepsSettings& settings) {
  std::vector<Text> list = settings.arguments;
  list.insert(list.begin(), kProgramName);
  return list;
}

// The installer's bundle is the main one, wherever this program lies.
class InstallersBundles : public Bundles {
 public:
  InstallersBundles(const Bundles& bundles, const Text& installer)
      : bundles_(bundles), installer_(installer) {}
  Text mainBundlePath() const override { return installer_; }
  std::optional<PropertyDictionary> infoDictionary(const Text& bundlePath) const override {
    return bundles_.infoDictionary(bundlePath);
  }
  OptionalText pathForResource(const Text& bundlePath, const Text& name, const Text& type) const override {
    return bundles_.pathForResource(bundlePath, name, type);
  }
  std::vector<Text> resourcePaths(const Text& bundlePath) const override {
    return bundles_.resourcePaths(bundlePath);
  }
  OptionalText executablePath(const Text& bundlePath) const override {
    return bundles_.executablePath(bundlePath);
  }
  std::optional<PropertyDictionary> dictionaryAtPath(const Text& path) const override {
    return bundles_.dictionaryAtPath(path);
  }

 private:
  const Bundles& bundles_;
  const Text installer_;
};

// Tells each line, and writes it where the installer's lines go when it shall.
class ToldLog : public JournalLog {
 public:
  ToldLog(const Ground& ground, const InstallerStepsSettings& settings)
      : JournalLog(ground.clock, kProgramName, ground.environment),
        told_(settings.told),
        isWritten_(settings.log == InstallerStepsSettings::Log::Standard) {}

 protected:
  void write(const Text& line) const override {
    if (isWritten_) JournalLog::write(line);
    if (told_) told_(line);
  }

 private:
  std::function<void(const Text&)> told_;
  bool isWritten_;
};

}  // namespace

struct InstallerSteps::Parts {
  explicit Parts(const InstallerStepsSettings& chosen)
      : settings(chosen),
        system(argumentListOf(chosen),
               {.programName = kProgramName,
                .identifier = kBundleIdentifier,
                .modulesFolder = Paths::appending(chosen.installer, "Contents/Linux")}),
        log(ground, settings),
        bundles(system.bundles(), settings.installer),
        strings(settings.installer, places.languages),
        face(interfaceTexts(descriptionOfWindow(), strings)),
        application(isRoot || settings.enforceRights == InstallerStepsSettings::EnforceRights::Yes),
        sounds(Paths::appending(settings.installer, "Contents/Linux/HalvornSound.so"), system.clock(),
               system.workers(), kProgramName),
        soundExtensions(soundServices()),
        destinations(destinationServices()),
        controller(services(), face.outlets(), argumentListOf(settings)) {}

  std::string descriptionOfWindow() const {
    const OptionalText path = bundles.pathForResource(settings.installer, "InstallerWindow", "xml");
    const auto bytes = path ? files.readFile(*path, kLongestDescription) : std::nullopt;
    return bytes.value_or(std::string());
  }

  // The rights that are there are used by the tool alone, which confines itself; in a container whose only account is the
  // administrator's they are nothing special.
  static bool worksAsRoot(const Environment& environment) {
    const auto exception = environment.value(kAdministratorVariable);
    return isRefusedForAdministrator(::geteuid() == 0, exception ? OptionalText(*exception) : std::nullopt);
  }
  Authorizer& authorizerInUse() { return isRoot ? static_cast<Authorizer&>(rootAuthorizer) : authorizer; }
  // A product is not started with the administrator's rights, and without a person there is nobody else.
  [[nodiscard]] bool mayLaunch() const { return !isRoot || requesterOfThisProcess().account.has_value(); }

  SoundServices soundServices() {
    const bool isHeard = settings.sound == InstallerStepsSettings::Sound::Yes;
    return {.sounds = isHeard ? static_cast<Sounds&>(sounds) : silence,
            .devices = isHeard ? static_cast<const AudioDevices&>(sounds) : noDevices,
            .searchPaths = system.searchPaths(),
            .files = files,
            .bundles = bundles,
            .defaults = system.defaults(),
            .versions = system.versions(),
            .workers = system.workers(),
            .clock = system.clock(),
            .log = log};
  }

  DestinationChoiceServices destinationServices() {
    return {.processes = system.processes(),
            .files = files,
            .searchPaths = system.searchPaths(),
            .workspace = system.workspace(),
            .log = log,
            .productCodes = [this] { return controller.arguments().list(KTInstallerKeyProductCode); },
            .randomNumber = [] { return std::random_device{}(); }};
  }

  InstallerServices services() {
    const bool hasLogFile = settings.logFile == InstallerStepsSettings::LogFile::Yes;
    return {.startup = {.alerts = alerts,
                        .application = application,
                        .bundles = bundles,
                        .claims = claims,
                        .destinations = destinations,
                        .files = files,
                        .images = images,
                        .processes = system.processes(),
                        .versions = system.versions(),
                        .strings = strings,
                        .searchPaths = system.searchPaths(),
                        .streams = hasLogFile ? static_cast<StandardStreams&>(streams) : closedStreams,
                        .system = system.systemFacts(),
                        .log = log},
            .completion = {.application = application,
                           .clock = system.clock(),
                           .sound = sound,
                           .defaults = system.defaults(),
                           .messages = messages,
                           .strings = strings,
                           .mainThread = system.mainThread(),
                           .notices = notices,
                           .screenReader = screenReader,
                           .workspace = system.workspace(),
                           .log = log},
            .worker = {.install = installing,
                       .destinations = destinations,
                       .processes = system.processes(),
                       .authorizer = authorizerInUse(),
                       .workspace = system.workspace(),
                       .changes = changes,
                       .application = application,
                       .bundles = bundles,
                       .copied = copied,
                       .strings = strings,
                       .mainThread = system.mainThread(),
                       .clock = system.clock(),
                       .departure = departure,
                       .log = log,
                       .launch = mayLaunch() ? settings.launch : LaunchInstalled::No},
            .progress = {.copied = copied,
                         .items = itemSizes,
                         .sizes = sizes,
                         .strings = strings,
                         .clock = system.clock()},
            .application = application,
            .authorizer = authorizerInUse(),
            .colors = colors,
            .departure = departure,
            .files = files,
            .log = log,
            .screenReader = screenReader,
            .strings = strings,
            .workers = system.workers(),
            .workspace = system.workspace()};
  }

  const InstallerStepsSettings settings;
  KTSystem system;
  const Ground& ground = system.parts().of<Ground>();
  const Places& places = system.parts().of<Places>();
  const ToldLog log;
  FileManager& files = system.files();
  const bool isRoot = worksAsRoot(ground.environment);
  const InstallersBundles bundles;
  const LinuxLocalizedStrings strings;
  TerminalFace face;
  TerminalApplication application;
  TerminalAlerts alerts;
  NullImages images;
  NullScreenReader screenReader;
  NullNotices notices;
  NullDesktopMessages messages;  // the terminal is told by who asked for the installation
  NullStandardStreams closedStreams;
  PosixStandardStreams streams{Paths::appending(system.searchPaths().homeFolder(), "Library/Logs")};
  NullItemClaims claims;  // no window could come to the front
  SilentFileChangeNotices changes;
  Departure departure;
  int signal = 0;
  LoadedSounds sounds;
  NullSounds silence;
  NullAudioDevices noDevices;
  SoundExtensions soundExtensions;
  CompletionSound sound{soundExtensions};
  NullAppearances appearances;
  NullInterfaceStyleSetting style;
  KTUtilitiesTheme theme{system.versions(), system.defaults(), style};
  KTDynamicColorClass colors{
      {.appearances = appearances, .theme = theme, .system = system.systemFacts(), .log = log}};
  XdgTrash trash{system.clock(), personOfThisProcess(), LinksInTheWay::Followed};
  ByteCounter copied;
  const NullItemSizes itemSizes;
  const NullLocalizedSizes sizes;
  const InstallServices installing{.files = files, .trash = trash, .notices = changes, .log = log};
  PolkitAuthorizer authorizer{log};
  RootAuthorizer rootAuthorizer;
  DestinationChoice destinations;
  InstallerWinController controller;
};

InstallerSteps::InstallerSteps(const InstallerStepsSettings& settings)
    : parts_(std::make_unique<Parts>(settings)) {}

// A worker may still be at work, and everything it uses is there until then. What plays is heard to its end, as long as
// a sound for an ending may be.
InstallerSteps::~InstallerSteps() {
  parts_->controller.leave();
  std::jthread limit;
  try {
    limit = std::jthread([this](const std::stop_token& isOver) {
      std::mutex mutex;
      std::unique_lock lock(mutex);
      std::condition_variable_any().wait_for(lock, isOver, kLongestSound, [] { return false; });
      if (!isOver.stop_requested()) parts_->sounds.endAll();
    });
  } catch (const std::system_error&) {
    parts_->sounds.endAll();  // no further thread can be had, and nothing may play on for ever
  }
  parts_->system.finish();
}

void InstallerSteps::begin() { parts_->controller.awakeFromNib(); }

OptionalText InstallerSteps::setupError() const {
  if (!parts_->controller.finished() || parts_->controller.outcome()) return std::nullopt;
  return parts_->face.introField.stringValue();
}

const std::optional<AlertDescription>& InstallerSteps::systemAlert() const { return parts_->alerts.shown; }
const ArgumentDictionary& InstallerSteps::arguments() const { return parts_->controller.arguments(); }
std::optional<DestinationReason> InstallerSteps::destinationReason() const {
  return parts_->controller.destinationReason();
}

std::vector<std::shared_ptr<KTProcess>> InstallerSteps::targets() {
  return ProductQuitter(parts_->system.processes(), arguments(), parts_->departure.left,
                        parts_->system.clock(), parts_->log)
      .targets();
}

OptionalText InstallerSteps::obstacleToRights() {
  if (parts_->isRoot) return std::nullopt;
  const OptionalText tool = parts_->bundles.pathForResource(parts_->settings.installer, "train", "");
  std::vector<Text> words;
  for (const char* key :
       {KTInstallerKeySourcePath, KTInstallerKeyDestinationPath, KTInstallerKeyWrapperPath}) {
    if (const OptionalText word = arguments().text(key)) words.push_back(*word);
  }
  return parts_->authorizer.obstacleTo(tool.value_or(Text()), words);
}

InstallOutcome InstallerSteps::install() {
  Parts& parts = *parts_;
  const TerminationSignals signals(parts.system.parts().of<MainLoop>().runLoop(), parts.departure.sessionEnds,
                                   [&parts](int signal) {
                                     parts.signal = signal;
                                     parts.log("The session ends: signal %d", signal);
                                     parts.controller.leave();
                                   });
  // The first page has the read-me, the second the button that installs.
  parts.controller.selectTab(1);
  parts.controller.install();
  (void)parts.system.runUntil([&parts] { return parts.controller.outcome().has_value(); }, kForEver);
  return *parts.controller.outcome();
}

int InstallerSteps::interruptedBy() const { return parts_->signal; }
TerminalFace& InstallerSteps::face() { return parts_->face; }
KTSystem& InstallerSteps::system() { return parts_->system; }
const Bundles& InstallerSteps::bundles() const { return parts_->bundles; }
DestinationChoice& InstallerSteps::destinations() { return parts_->destinations; }
Trash& InstallerSteps::trash() { return parts_->trash; }
const Log& InstallerSteps::log() const { return parts_->log; }

}  // namespace halvorn
