// The composition root of a system for which nothing is implemented: the program starts, says what it cannot do, and
// ends. A port begins as a copy of this file.
#include <cstdlib>
#include <string>
#include <vector>

#include "Core/ByteCounter.h"
#include "KTStuff/CocoaExtensions/SoundExtensions.h"
#include "KTStuff/KTClasses/KTCompatibility.h"
#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "KTStuff/KTClasses/KTProcessClass.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "Platform/bundles/null/NullBundles.h"
#include "Platform/color/null/NullColor.h"
#include "Platform/files/null/NullFiles.h"
#include "Platform/processes/null/NullProcesses.h"
#include "Platform/rights/null/NullRights.h"
#include "Platform/running/null/NullRunning.h"
#include "Platform/session/null/NullSession.h"
#include "Platform/sound/null/NullSound.h"
#include "Platform/text/null/NullText.h"
#include "Platform/window/null/NullWindow.h"
#include "Sources/CompletionSound.h"
#include "Sources/DestinationChoice.h"
#include "Sources/InstallerWinController.h"
#include "Sources/main_application.h"
#include "train/InstallFunction.h"

namespace halvorn {
namespace {

constexpr char kProgramName[] = "HalvornInstaller";
// Whatever start-up posts for later is done or given up by then.
constexpr double kLongestRun = 10.0;  // seconds

// What asks nobody for anything: made first, needed by everything.
struct Ground {
  StandardClock clock;
  const StandardErrorStreamLog log{kProgramName};
  StandardMainThread mainThread;
  const NullBundles bundles;
  const NullLocalizedStrings strings;
  const NullDefaults defaults;
  const NullItemFacts items;
  NullWorkspace workspace;
  const NullSearchPaths searchPaths;
  const NullSystemFacts systemFacts;
  const NullUnicode unicode;
  const NullDigests digests;
  const NullFourCharCodes codes;
  const NullLocalizedDates dates;
  NullFileManager files;
  NullFileChangeNotices changes;
  NullItemClaims claims;
  NullStandardStreams streams;
  NullTasks tasks;
  NullImages images;
  NullApplication application{mainThread};
  const KTUtilitiesVersions versions{bundles, systemFacts, unicode, dates, log};
};

struct Processes {
  explicit Processes(Ground& ground)
      : notifications(ground.mainThread),
        processes({.source = source,
                   .events = events,
                   .control = control,
                   .appleEvents = appleEvents,
                   .accessibility = accessibility,
                   .notifications = notifications,
                   .bundles = ground.bundles,
                   .items = ground.items,
                   .files = ground.files,
                   .images = ground.images,
                   .tasks = ground.tasks,
                   .unicode = ground.unicode,
                   .digests = ground.digests,
                   .codes = ground.codes,
                   .clock = ground.clock,
                   .log = ground.log}) {}

  NullProcessSource source;
  NullApplicationEvents events;
  NullApplicationControl control;
  NullAppleEvents appleEvents;
  NullAccessibility accessibility;
  NotificationQueue notifications;
  KTProcessClass processes;
};

struct Sound {
  Sound(Ground& ground, Workers& workers)
      : extensions({.sounds = sounds,
                    .devices = devices,
                    .searchPaths = ground.searchPaths,
                    .files = ground.files,
                    .bundles = ground.bundles,
                    .defaults = ground.defaults,
                    .versions = ground.versions,
                    .workers = workers,
                    .clock = ground.clock,
                    .log = ground.log}),
        completion(extensions) {}

  NullSounds sounds;
  const NullAudioDevices devices;
  SoundExtensions extensions;
  CompletionSound completion;
};

struct Colors {
  explicit Colors(Ground& ground)
      : theme(ground.versions, ground.defaults, style),
        colors(
            {.appearances = appearances, .theme = theme, .system = ground.systemFacts, .log = ground.log}) {}

  const NullAppearances appearances;
  NullInterfaceStyleSetting style;
  KTUtilitiesTheme theme;
  KTDynamicColorClass colors;
};

// The controller and what it needs.
class Installer {
 public:
  Installer(Ground& ground, std::vector<Text> arguments)
      : ground_(ground),
        processes_(ground),
        sound_(ground, workers_),
        colors_(ground),
        alerts_(ground.mainThread),
        destinations_(destinationServices()),
        controller_(services(), window_.outlets(), std::move(arguments)) {}

  void run() {
    controller_.awakeFromNib();
    ground_.mainThread.run([this] { return ground_.application.isTerminated(); }, kLongestRun);
    controller_.leave();
    workers_.finish();
  }

 private:
  DestinationChoiceServices destinationServices() {
    return {.processes = processes_.processes,
            .files = ground_.files,
            .searchPaths = ground_.searchPaths,
            .workspace = ground_.workspace,
            .log = ground_.log,
            .productCodes = [this] { return controller_.arguments().list(KTInstallerKeyProductCode); },
            .randomNumber = [] { return 0U; }};
  }

  InstallerServices services() {
    return {.startup = {.alerts = alerts_,
                        .application = ground_.application,
                        .bundles = ground_.bundles,
                        .claims = ground_.claims,
                        .destinations = destinations_,
                        .files = ground_.files,
                        .images = ground_.images,
                        .processes = processes_.processes,
                        .versions = ground_.versions,
                        .strings = ground_.strings,
                        .searchPaths = ground_.searchPaths,
                        .streams = ground_.streams,
                        .system = ground_.systemFacts,
                        .log = ground_.log},
            .completion = {.application = ground_.application,
                           .clock = ground_.clock,
                           .sound = sound_.completion,
                           .defaults = ground_.defaults,
                           .messages = messages_,
                           .strings = ground_.strings,
                           .mainThread = ground_.mainThread,
                           .notices = notices_,
                           .screenReader = screenReader_,
                           .workspace = ground_.workspace,
                           .log = ground_.log},
            .worker = {.install = install_,
                       .destinations = destinations_,
                       .processes = processes_.processes,
                       .authorizer = authorizer_,
                       .workspace = ground_.workspace,
                       .changes = ground_.changes,
                       .application = ground_.application,
                       .bundles = ground_.bundles,
                       .copied = copied_,
                       .strings = ground_.strings,
                       .mainThread = ground_.mainThread,
                       .clock = ground_.clock,
                       .departure = departure_,
                       .log = ground_.log},
            .progress = {.copied = copied_,
                         .items = itemSizes_,
                         .sizes = sizes_,
                         .strings = ground_.strings,
                         .clock = ground_.clock},
            .application = ground_.application,
            .authorizer = authorizer_,
            .colors = colors_.colors,
            .departure = departure_,
            .files = ground_.files,
            .log = ground_.log,
            .screenReader = screenReader_,
            .strings = ground_.strings,
            .workers = workers_,
            .workspace = ground_.workspace};
  }

  Ground& ground_;
  Processes processes_;
  Departure departure_;
  StandardWorkers workers_;  // runs nothing any more once run() has returned
  Sound sound_;
  Colors colors_;
  NullAlerts alerts_;
  NullScreenReader screenReader_;
  NullDesktopMessages messages_;
  NullNotices notices_;
  NullTrash trash_;
  ByteCounter copied_;
  const NullItemSizes itemSizes_;
  const NullLocalizedSizes sizes_;
  const InstallServices install_{
      .files = ground_.files, .trash = trash_, .notices = ground_.changes, .log = ground_.log};
  NullAuthorizer authorizer_;
  DestinationChoice destinations_;
  NullInstallerWindow window_;
  InstallerWinController controller_;
};

}  // namespace

// Always a failure: nothing can be installed here.
int applicationMain(int argumentCount, char** arguments) {
  Ground ground;
  ground.log("ERROR -- This system is not supported: no window can be shown and nothing can be installed");
  Installer(ground, std::vector<Text>(arguments, arguments + argumentCount)).run();
  return EXIT_FAILURE;
}

}  // namespace halvorn
