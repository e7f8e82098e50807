// The composition root on Linux: the one place that names the adapters of the installer. What the class library needs
// comes from KTSystem: an adapter for one of its classes is added in System/linux, one for the installer alone here.
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string_view>

#include "Core/ByteCounter.h"
#include "Core/Format.h"
#include "Core/Paths.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "Platform/bundles/Workspace.h"
#include "Platform/files/linux/SocketItemClaims.h"
#include "Platform/files/linux/trash/XdgTrash.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/files/posix/PosixItemSizes.h"
#include "Platform/files/posix/SilentFileChangeNotices.h"
#include "Platform/rights/linux/PolkitAuthorizer.h"
#include "Platform/rights/posix/Person.h"
#include "Platform/running/linux/ThisProgram.h"
#include "Platform/running/posix/BeforeExit.h"
#include "Platform/running/posix/Headroom.h"
#include "Platform/running/posix/PosixStandardStreams.h"
#include "Platform/running/posix/TerminationSignals.h"
#include "Platform/session/linux/BusAddresses.h"
#include "Platform/session/linux/NotifiedMessages.h"
#include "Platform/session/linux/SessionServers.h"
#include "Platform/session/linux/WaylandSession.h"
#include "Platform/session/linux/wayland/WaylandConnection.h"
#include "Platform/window/linux/BusNotices.h"
#include "Platform/window/linux/InstallerWindow.h"
#include "Platform/window/linux/LoneAlert.h"
#include "Platform/window/linux/PackagedToolkit.h"
#include "Platform/window/linux/QtAlerts.h"
#include "Platform/window/linux/QtLocalizedSizes.h"
#include "Platform/window/linux/QtScreenReader.h"
#include "Platform/window/linux/ScaleVariables.h"
#include "Sources/AdministratorRefusal.h"
#include "Sources/CommandLineAnswer.h"
#include "Sources/CompletionSound.h"
#include "Sources/Departure.h"
#include "Sources/DestinationChoice.h"
#include "Sources/InstallerWinController.h"
#include "Sources/LogDestination.h"
#include "Sources/StartConditions.h"
#include "Sources/main_application.h"
#include "System/linux/Appearance.h"
#include "System/linux/MainLoop.h"
#include "System/linux/Places.h"
#include "train/InstallFunction.h"

namespace halvorn {
namespace {

constexpr char kProgramName[] = "HalvornInstaller";
constexpr char kNameForPeople[] = "Halvorn Installer";
constexpr char kActivationToken[] =
    "XDG_ACTIVATION_TOKEN";  // the toolkit's, for the next window it activates
constexpr char kBundleIdentifier[] = "example.halvorn.installer";

Text firstLanguage(KTSystem& system) {
  const std::vector<Text>& languages = system.parts().of<Places>().languages;
  return languages.empty() ? Text("en") : languages.front();
}

// What the desktop gave this program so that its window may come to the front. On X11 windows are told by the window
// manager, which is asked by name.
SocketItemClaims::Activation activationOf(const Environment& environment) {
  if (!isWaylandSession(environment)) return {};
  return {.token = environment.value(kActivationToken).value_or(""),
          .takeOver = [](const std::string& token) { ::setenv(kActivationToken, token.c_str(), 1); }};
}

// The window, the controller and what they need.
class Installer {
 public:
  Installer(KTSystem& system, InstallerWindow& window)
      : system_(system),
        window_(window),
        sound_(system.sound()),
        alerts_(window),
        screenReader_(window),
        destinations_(destinationServices()),
        controller_(services(), window.outlets(), system.parts().arguments) {}

  int run(const StartConditions& conditions) {
    const TerminationSignals signals(system_.parts().of<MainLoop>().runLoop(), departure_.sessionEnds,
                                     [this](int signal) {
                                       noteSessionEnd(format("signal %d", signal));
                                       application_.terminate();
                                     });
    window_.setActions({.install = [this] { controller_.install(); },
                        .cancel = [this] { controller_.cancel(); },
                        .openDocumentation = [this] { controller_.openDocumentation(); },
                        .windowClosed =
                            [this] {
                              if (controller_.applicationShouldTerminateAfterLastWindowClosed())
                                application_.terminate();
                            },
                        .openLink = [this](const Text& url) { system_.workspace().openUrl(url); },
                        .openReadMe = [this] { controller_.openReadMe(); }});
    controller_.awakeFromNib();
    logWhatIsMissing(conditions, system_.log());
    if (!application_.isTerminated()) window_.showIfVisibleAtLaunch();
    const int status = runLoop();
    // Nobody works the window any more; left standing, it would look frozen until the worker is through.
    window_.hide();
    finishWork();
    return status;
  }

 private:
  int runLoop() {
    application_.setSessionEnded([this] { noteSessionEnd("asked to quit"); });
    const BeforeExit withoutDisplay([this] {
      noteSessionEnd("the display has gone");
      finishWork();
    });
    return application_.run();
  }

  // Whatever ended the loop: a worker may still be at work, and everything it
  // uses is there until this returns.
  void finishWork() {
    controller_.leave();
    system_.finish();
  }

  void noteSessionEnd(const Text& reason) {
    system_.log()("The session ends: %@", reason);
    departure_.sessionEnds.request();
  }

  DestinationChoiceServices destinationServices() {
    return {.processes = system_.processes(),
            .files = system_.files(),
            .searchPaths = system_.searchPaths(),
            .workspace = system_.workspace(),
            .log = system_.log(),
            .productCodes = [this] { return controller_.arguments().list(KTInstallerKeyProductCode); },
            .randomNumber = [] { return std::random_device{}(); }};
  }

  InstallerServices services() {
    return {.startup = {.alerts = alerts_,
                        .application = application_,
                        .bundles = system_.bundles(),
                        .claims = claims_,
                        .destinations = destinations_,
                        .files = system_.files(),
                        .images = system_.images(),
                        .processes = system_.processes(),
                        .versions = system_.versions(),
                        .strings = system_.strings(),
                        .searchPaths = system_.searchPaths(),
                        .streams = streams_,
                        .system = system_.systemFacts(),
                        .log = system_.log()},
            .completion = {.application = application_,
                           .clock = system_.clock(),
                           .sound = sound_,
                           .defaults = system_.defaults(),
                           .messages = messages_,
                           .strings = system_.strings(),
                           .mainThread = application_,
                           .notices = notices_,
                           .screenReader = screenReader_,
                           .workspace = system_.workspace(),
                           .log = system_.log()},
            .worker = {.install = install_,
                       .destinations = destinations_,
                       .processes = system_.processes(),
                       .authorizer = authorizer_,
                       .workspace = system_.workspace(),
                       .changes = changes_,
                       .application = application_,
                       .bundles = system_.bundles(),
                       .copied = copied_,
                       .strings = system_.strings(),
                       .mainThread = application_,
                       .clock = system_.clock(),
                       .departure = departure_,
                       .log = system_.log()},
            .progress = {.copied = copied_,
                         .items = sizesOnDisk_,
                         .sizes = sizes_,
                         .strings = system_.strings(),
                         .clock = system_.clock()},
            .application = application_,
            .authorizer = authorizer_,
            .colors = system_.colors(),
            .departure = departure_,
            .files = system_.files(),
            .log = system_.log(),
            .screenReader = screenReader_,
            .strings = system_.strings(),
            .workers = system_.workers(),
            .workspace = system_.workspace()};
  }

  KTSystem& system_;
  QtApplication& application_ = system_.parts().of<ApplicationPart>().application;
  InstallerWindow& window_;
  SilentFileChangeNotices changes_;
  SocketItemClaims claims_{system_.parts().of<MainLoop>().runLoop(),
                           activationOf(system_.parts().of<Ground>().environment)};
  Departure departure_;
  CompletionSound sound_;
  NotifiedMessages messages_{
      system_.workers(), sessionBusAddress(system_.parts().of<Ground>().environment).value_or(std::string()),
      kNameForPeople};
  QtAlerts alerts_;
  QtScreenReader screenReader_;
  BusNotices notices_{kNameForPeople};
  PosixStandardStreams streams_{Paths::appending(system_.searchPaths().homeFolder(), "Library/Logs")};
  XdgTrash trash_{system_.clock(), personOfThisProcess(), LinksInTheWay::Followed};
  ByteCounter copied_;
  PosixFileManager copyingFiles_{FileRules{.copied = &copied_}};
  const PosixItemSizes sizesOnDisk_;
  const QtLocalizedSizes sizes_{firstLanguage(system_)};
  const InstallServices install_{
      .files = copyingFiles_, .trash = trash_, .notices = changes_, .log = system_.log()};
  PolkitAuthorizer authorizer_{system_.log()};
  DestinationChoice destinations_;
  InstallerWinController controller_;
};

bool isRefused(const Environment& environment) {
  const auto exception = environment.value(kAdministratorVariable);
  return isRefusedForAdministrator(::geteuid() == 0, exception ? OptionalText(*exception) : std::nullopt);
}

// A toolkit for windows needs about thirty, and the copy as many again.
constexpr int kFewestDescriptors = 48;
constexpr int kFewestThreads = 3;

// Whether the window can be shown somewhere, and where. A platform of the toolkit that somebody chose needs what it needs.
void askForDisplay(const Environment& environment, StartConditions& conditions) {
  const auto name = environment.value("DISPLAY");
  if (name) conditions.displayName = *name;
  const char* const platform = std::getenv("QT_QPA_PLATFORM");
  if (platform != nullptr && !std::string_view(platform).starts_with("xcb")) return;
  conditions.display = askDisplay(name);
  if (conditions.display == Answer::Given || !isWaylandSession(environment)) return;
  conditions.display = WaylandConnection::ask(waylandSocketPath(environment), kLongestForDisplay);
  conditions.displayName = environment.value("WAYLAND_DISPLAY").value_or("wayland-0");
}

// What there is, asked for within a bounded time.
StartConditions startConditions(const Environment& environment) {
  StartConditions conditions{.hasThreads = canHaveThreads(kFewestThreads),
                             .hasDescriptors = canHaveDescriptors(kFewestDescriptors),
                             .hasProcessTable = ::access("/proc/self/exe", F_OK) == 0};
  // Without one of these there is no window, whatever the display says.
  if (obstacleToTheWindow(conditions)) return conditions;
  askForDisplay(environment, conditions);
  if (obstacleToTheWindow(conditions)) return conditions;
  const BusAnswers buses = askBuses(sessionBusAddress(environment), environment.value("AT_SPI_BUS_ADDRESS"));
  conditions.sessionBus = buses.session;
  conditions.accessibilityBus = buses.accessibility;
  return conditions;
}

// The toolkit is not to wait for what is silent: an address where nobody is answers at once. What is launched later gets
// the environment as it was.
void keepToolkitFromWaiting(StartConditions& conditions) {
  constexpr char kNobody[] = "unix:path=/dev/null";
  const bool isBusSilent = conditions.sessionBus == Answer::Silent;
  if (isBusSilent) ::setenv("DBUS_SESSION_BUS_ADDRESS", kNobody, 1);
  if (isBusSilent || conditions.accessibilityBus == Answer::Silent)
    ::setenv("AT_SPI_BUS_ADDRESS", kNobody, 1);
  for (const std::string& variable : removeUnusableScales())
    conditions.ignoredVariables.emplace_back(variable);
}

// To whoever started the program, and into the log where a product did.
int endWithoutWindow(KTSystem& system, const Text& sentence) {
  system.log()("%@", sentence);
  if (!isStartedByProduct(system.parts().arguments)) return kNoWindow;
  PosixStandardStreams streams(Paths::appending(system.searchPaths().homeFolder(), "Library/Logs"));
  static_cast<void>(openLogFile(streams, system.searchPaths()));
  system.log()("%@", sentence);
  return kNoWindow;
}

// Says so, to whoever sits before a screen too.
int refuseAdministrator(KTSystem& system) {
  logAdministratorRefusal(system.log());
  const Environment& environment = system.parts().of<Ground>().environment;
  const bool isSeen =
      isWaylandSession(environment) || askDisplay(environment.value("DISPLAY")) == Answer::Given;
  if (!isSeen) return kAdministratorRefused;
  (void)system.application();
  (void)system.appearances();
  showLoneAlert(kNameForPeople, administratorAlert(system.strings(), system.images()), system.strings());
  return kAdministratorRefused;
}

}  // namespace

int applicationMain(int argumentCount, char** arguments) {
  // Whoever started this program may have ignored the ends of its children; the tool's end must be told here.
  std::signal(SIGCHLD, SIG_DFL);
  // A server of the desktop that goes away ends no installation, whoever writes to it just then.
  std::signal(SIGPIPE, SIG_IGN);
  // Nor does a log that may not grow any more (ulimit -f): the call that fails tells it.
  std::signal(SIGXFSZ, SIG_IGN);
  KTSystem system({arguments, arguments + argumentCount},
                  {.programName = kProgramName,
                   .identifier = kBundleIdentifier,
                   .modulesFolder = Paths::deletingLastComponent(pathOfThisProgram()),
                   .holdManyProcesses = HoldManyProcesses::Yes});
  if (const auto answer = commandLineAnswer(system.parts().arguments, system.bundles()))
    return std::fputs(answer->bytes().c_str(), stdout) >= 0 ? EXIT_SUCCESS : EXIT_FAILURE;
  const Environment& environment = system.parts().of<Ground>().environment;
  if (isRefused(environment)) return refuseAdministrator(system);
  const auto foreignParts = removeForeignParts(Paths::deletingLastComponent(pathOfThisProgram()).bytes());
  StartConditions conditions = startConditions(environment);
  conditions.ignoredVariables.assign(foreignParts.begin(), foreignParts.end());
  if (const auto sentence = obstacleToTheWindow(conditions)) return endWithoutWindow(system, *sentence);
  keepToolkitFromWaiting(conditions);
  {
    const BeforeExit withoutDisplay(
        [&] { system.log()("ERROR -- There is no display that the window can be shown on"); });
    (void)system.application();
    system.parts().of<ApplicationPart>().application.setIdentifier(kBundleIdentifier);
  }
  (void)system.colors();

  const Text bundle = system.bundles().mainBundlePath();
  const OptionalText description = system.bundles().pathForResource(bundle, "InstallerWindow", "xml");
  QtImages& images = system.parts().of<PicturePart>().images;
  const InstallerWindow::Loaded loaded =
      InstallerWindow::load(description.value_or(Text()), system.strings(), images);
  if (!loaded.window) {
    system.log()("ERROR -- Could not load the window from %@: %@", bundle, loaded.problem);
    return 1;
  }
  system.parts().of<AppearancePart>().desktop.unanswered = [&log = system.log()] {
    log("The desktop portal does not answer: the desktop's colors are not known");
  };
  return Installer(system, *loaded.window).run(conditions);
}

}  // namespace halvorn
