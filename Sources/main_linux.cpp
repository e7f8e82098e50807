// The composition root on Linux: the one place that names the adapters.
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "Core/Format.h"
#include "Core/Paths.h"
#include "KTStuff/CocoaExtensions/SoundExtensions.h"
#include "KTStuff/KTClasses/KTCompatibility.h"
#include "KTStuff/KTClasses/KTDynamicColorClass.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "KTStuff/KTClasses/KTProcessClass.h"
#include "KTStuff/KTClasses/KTUtilitiesTheme.h"
#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/LinuxDefaults.h"
#include "Platform/bundles/linux/LinuxItemFacts.h"
#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "Platform/bundles/linux/PreferredLanguages.h"
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/bundles/linux/launching/LinuxWorkspace.h"
#include "Platform/color/linux/DesktopAppearance.h"
#include "Platform/color/linux/QtInterfaceStyle.h"
#include "Platform/files/linux/trash/XdgTrash.h"
#include "Platform/files/posix/PosixFileManager.h"
#include "Platform/files/posix/SilentFileChangeNotices.h"
#include "Platform/processes/linux/dbus/BusAppleEvents.h"
#include "Platform/processes/linux/proc/DesktopSession.h"
#include "Platform/processes/linux/proc/LinuxApplicationControl.h"
#include "Platform/processes/linux/proc/LinuxApplicationEvents.h"
#include "Platform/processes/linux/proc/LinuxProcessSource.h"
#include "Platform/processes/linux/proc/ProcFiles.h"
#include "Platform/processes/linux/proc/RunningApplications.h"
#include "Platform/processes/linux/x11/XWindowSystem.h"
#include "Platform/processes/null/NullProcesses.h"
#include "Platform/rights/linux/PolkitAuthorizer.h"
#include "Platform/rights/posix/Person.h"
#include "Platform/running/posix/BeforeExit.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/running/posix/PosixStandardStreams.h"
#include "Platform/running/posix/PosixTasks.h"
#include "Platform/running/posix/PosixWorkers.h"
#include "Platform/running/posix/ResourceLimits.h"
#include "Platform/running/posix/TerminationSignals.h"
#include "Platform/session/linux/Environment.h"
#include "Platform/session/linux/JournalLog.h"
#include "Platform/session/linux/LinuxSystemFacts.h"
#include "Platform/session/linux/WaylandSession.h"
#include "Platform/session/linux/XdgFolders.h"
#include "Platform/session/linux/XdgSearchPaths.h"
#include "Platform/session/linux/x11/DisplayConnection.h"
#include "Platform/session/linux/x11/StartupNotification.h"
#include "Platform/sound/linux/LoadedSounds.h"
#include "Platform/text/linux/IcuLocalizedDates.h"
#include "Platform/text/linux/IcuUnicode.h"
#include "Platform/text/linux/LoadedDigests.h"
#include "Platform/window/linux/InstallerWindow.h"
#include "Platform/window/linux/LoneAlert.h"
#include "Platform/window/linux/QtAlerts.h"
#include "Platform/window/linux/QtAppearances.h"
#include "Platform/window/linux/QtApplication.h"
#include "Platform/window/linux/QtRunLoop.h"
#include "Platform/window/linux/QtScreenReader.h"
#include "Platform/window/linux/pictures/QtImages.h"
#include "Sources/AdministratorRefusal.h"
#include "Sources/CommandLineAnswer.h"
#include "Sources/CompletionSound.h"
#include "Sources/Departure.h"
#include "Sources/DestinationChoice.h"
#include "Sources/InstallerWinController.h"
#include "Sources/main_application.h"
#include "train/InstallFunction.h"

namespace halvorn {
namespace {

constexpr char kProgramName[] = "HalvornInstaller";
constexpr char kBundleIdentifier[] = "example.halvorn.installer";

Text moduleBesideProgram(const char* name) {
  return Paths::appending(Paths::deletingLastComponent(LinuxBundles::pathOfThisProgram()), name);
}

// What asks the system nothing but files: made first, needed by everything.
struct Ground {
  Ground(const std::vector<Text>& arguments, const rlimit& descriptorLimit)
      : arguments_(arguments), descriptorLimit_(descriptorLimit) {}

  const std::vector<Text>& arguments_;
  const rlimit descriptorLimit_;  // of what is launched: this program's own is raised
  const Environment environment = Environment::ofThisProcess();
  const XdgFolders folders{environment};
  PosixClock clock;
  const JournalLog log{clock, kProgramName, environment};
  const std::vector<Text> languages = preferredLanguages(arguments_, environment);
  const LinuxBundles bundles{LinuxBundles::pathOfThisProgram(), languages};
  const LinuxLocalizedStrings strings{bundles.mainBundlePath(), languages};
  const LinuxDefaults defaults{folders, kBundleIdentifier, arguments_};
  const XdgSearchPaths searchPaths{folders};
  const LinuxSystemFacts systemFacts;
  const IcuUnicode unicode;
  const LoadedDigests digests{moduleBesideProgram("HalvornDigests.so")};
  const IcuLocalizedDates dates;
  const KTUtilitiesVersions versions{bundles, systemFacts, unicode, dates, log};
  PosixFileManager files;
  SilentFileChangeNotices changes;
  Launcher::ActivationTokens activationTokens;  // set once there is a window a person can click into
  const Launcher launcher{environment, folders,
                          [this](const std::string& program) {
                            return activationTokens ? activationTokens(program) : std::nullopt;
                          },
                          descriptorLimit_};
  LinuxWorkspace workspace{bundles, folders, environment, launcher, languages};
};

// The process model. Nothing is connected before a process is asked for.
struct Processes {
  Processes(Ground& ground, QtApplication& application, QtRunLoop& loop, Images& images)
      : windows(ground.environment.value("DISPLAY").value_or(""),
                isWaylandSession(ground.environment) ? XWindowSystem::Coverage::SomeWindows
                                                     : XWindowSystem::Coverage::AllWindows,
                procFiles),
        running(procFiles, ground.bundles, windows, DesktopSession::ofThisProgram()),
        events(running, windows, loop, application),
        source(running, procFiles, windows, ground.workspace),
        control(running, windows),
        items(ground.bundles),
        appleEvents(running, ground.environment.value("DBUS_SESSION_BUS_ADDRESS").value_or("")),
        notifications(application),
        processes({.source = source,
                   .events = events,
                   .control = control,
                   .appleEvents = appleEvents,
                   .accessibility = accessibility,
                   .notifications = notifications,
                   .bundles = ground.bundles,
                   .items = items,
                   .files = ground.files,
                   .images = images,
                   .tasks = tasks,
                   .unicode = ground.unicode,
                   .digests = ground.digests,
                   .clock = ground.clock,
                   .log = ground.log}) {}

  const ProcFiles procFiles;
  XWindowSystem windows;
  RunningApplications running;
  LinuxApplicationEvents events;
  LinuxProcessSource source;
  LinuxApplicationControl control;
  const LinuxItemFacts items;
  BusAppleEvents appleEvents;
  NullAccessibility accessibility;  // the installer watches no other program's interface
  NotificationQueue notifications;
  PosixTasks tasks;
  KTProcessClass processes;
};

// Sound. Nothing is loaded or connected before one is played.
struct Sound {
  Sound(Ground& ground, Workers& workers)
      : sounds(moduleBesideProgram("HalvornSound.so"), ground.clock, workers, kProgramName),
        extensions({.sounds = sounds,
                    .devices = sounds,
                    .searchPaths = ground.searchPaths,
                    .files = ground.files,
                    .bundles = ground.bundles,
                    .defaults = ground.defaults,
                    .versions = ground.versions,
                    .workers = workers,
                    .clock = ground.clock,
                    .log = ground.log,
                    .userID = ::getuid()}),
        completion(extensions) {}

  LoadedSounds sounds;
  SoundExtensions extensions;
  CompletionSound completion;
};

std::optional<InterfaceStyle> styleOf(const Defaults& defaults) {
  const auto style = defaults.objectForKey("AppleInterfaceStyle");
  if (!style || !style->text()) return std::nullopt;
  return *style->text() == Text("Dark") ? InterfaceStyle::Dark : InterfaceStyle::Light;
}

// Colors that follow the appearance. Nothing is asked of the desktop that the window does not follow anyway.
struct Colors {
  Colors(Ground& ground, DesktopAppearance& appearance)
      : appearances(appearance),
        style(appearance),
        theme(ground.versions, ground.defaults, style),
        colors(
            {.appearances = appearances, .theme = theme, .system = ground.systemFacts, .log = ground.log}) {}

  const QtAppearances appearances;
  QtInterfaceStyle style;
  KTUtilitiesTheme theme;
  KTDynamicColorClass colors;
};

// What lets the launched product come to the front, in the wake of the last click or key.
OptionalText activationToken(const Environment& environment, const QtApplication& application,
                             const std::string& program) {
  if (isWaylandSession(environment)) return std::nullopt;
  const auto id =
      announceStartup(environment.value("DISPLAY"), {.launcher = kProgramName,
                                                     .program = Paths::lastComponent(Text(program)).bytes(),
                                                     .deedTime = application.timeOfLastDeed()});
  return id ? OptionalText(*id) : std::nullopt;
}

// The window, the controller and what they need.
class Installer {
 public:
  Installer(Ground& ground, QtApplication& application, KTDynamicColorClass& colors, InstallerWindow& window,
            QtImages& images, std::vector<Text> arguments)
      : ground_(ground),
        application_(application),
        colors_(colors),
        window_(window),
        processes_(ground, application, loop_, images),
        sound_(ground, workers_),
        alerts_(window),
        screenReader_(window),
        destinations_(destinationServices()),
        controller_(services(images), window.outlets(), std::move(arguments)) {
    ground.activationTokens = [&ground, &application](const std::string& program) {
      return activationToken(ground.environment, application, program);
    };
  }

  int run() {
    const TerminationSignals signals(loop_, departure_.sessionEnds, [this](int signal) {
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
                        .openLink = [this](const Text& url) { ground_.workspace.openUrl(url); }});
    controller_.awakeFromNib();
    window_.showIfVisibleAtLaunch();
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
    sound_.sounds.endAll();
    workers_.finish();
  }

  void noteSessionEnd(const Text& reason) {
    ground_.log("The session ends: %@", reason);
    departure_.sessionEnds.request();
  }

  DestinationChoiceServices destinationServices() {
    return {.processes = processes_.processes,
            .files = ground_.files,
            .searchPaths = ground_.searchPaths,
            .workspace = ground_.workspace,
            .log = ground_.log,
            .productCodes = [this] { return controller_.arguments().list(KTInstallerKeyProductCode); },
            .randomNumber = [] { return std::random_device{}(); }};
  }

  InstallerServices services(QtImages& images) {
    return {.startup = {.alerts = alerts_,
                        .application = application_,
                        .bundles = ground_.bundles,
                        .destinations = destinations_,
                        .files = ground_.files,
                        .images = images,
                        .processes = processes_.processes,
                        .versions = ground_.versions,
                        .strings = ground_.strings,
                        .searchPaths = ground_.searchPaths,
                        .streams = streams_,
                        .system = ground_.systemFacts,
                        .log = ground_.log},
            .completion = {.application = application_,
                           .sound = sound_.completion,
                           .defaults = ground_.defaults,
                           .strings = ground_.strings,
                           .mainThread = application_,
                           .screenReader = screenReader_,
                           .log = ground_.log},
            .worker = {.install = install_,
                       .destinations = destinations_,
                       .processes = processes_.processes,
                       .authorizer = authorizer_,
                       .workspace = ground_.workspace,
                       .changes = ground_.changes,
                       .application = application_,
                       .bundles = ground_.bundles,
                       .strings = ground_.strings,
                       .mainThread = application_,
                       .clock = ground_.clock,
                       .departure = departure_,
                       .log = ground_.log},
            .application = application_,
            .authorizer = authorizer_,
            .colors = colors_,
            .departure = departure_,
            .files = ground_.files,
            .log = ground_.log,
            .screenReader = screenReader_,
            .strings = ground_.strings,
            .workers = workers_,
            .workspace = ground_.workspace};
  }

  Ground& ground_;
  QtApplication& application_;
  KTDynamicColorClass& colors_;
  InstallerWindow& window_;
  QtRunLoop loop_;
  Processes processes_;
  Departure departure_;
  PosixWorkers workers_;  // runs nothing any more once run() has returned
  Sound sound_;
  QtAlerts alerts_;
  QtScreenReader screenReader_;
  PosixStandardStreams streams_{Paths::appending(ground_.searchPaths.homeFolder(), "Library/Logs")};
  XdgTrash trash_{ground_.clock, personOfThisProcess(), LinksInTheWay::Followed};
  const InstallServices install_{
      .files = ground_.files, .trash = trash_, .notices = ground_.changes, .log = ground_.log};
  PolkitAuthorizer authorizer_{ground_.log};
  DestinationChoice destinations_;
  InstallerWinController controller_;
};

bool isRefused(const Environment& environment) {
  const auto exception = environment.value(kAdministratorVariable);
  return isRefusedForAdministrator(::geteuid() == 0, exception ? OptionalText(*exception) : std::nullopt);
}

// Says so, to whoever sits before a screen too.
int refuseAdministrator(Ground& ground, const OptionalText& description) {
  logAdministratorRefusal(ground.log);
  const bool isSeen = isWaylandSession(ground.environment) ||
                      DisplayConnection::open(ground.environment.value("DISPLAY")) != nullptr;
  if (!isSeen) return kAdministratorRefused;
  const QtApplication application(LinuxBundles::pathOfThisProgram());
  const DesktopAppearance appearance(styleOf(ground.defaults));
  QtImages images(description ? Paths::deletingLastComponent(*description) : Text());
  showLoneAlert("Halvorn Installer", administratorAlert(ground.strings, images));
  return kAdministratorRefused;
}

}  // namespace

int applicationMain(int argumentCount, char** arguments) {
  // Whoever started this program may have ignored the ends of its children; the tool's end must be told here.
  std::signal(SIGCHLD, SIG_DFL);
  // Each running copy of the product is held by a descriptor.
  const rlimit descriptorLimit = raiseLimit(RLIMIT_NOFILE, kManyDescriptors);
  const std::vector<Text> argumentList(arguments, arguments + argumentCount);
  Ground ground(argumentList, descriptorLimit);
  if (const auto answer = commandLineAnswer(argumentList, ground.bundles))
    return std::fputs(answer->bytes().c_str(), stdout) >= 0 ? EXIT_SUCCESS : EXIT_FAILURE;
  const Text bundle = ground.bundles.mainBundlePath();
  const OptionalText description = ground.bundles.pathForResource(bundle, "InstallerWindow", "xml");
  if (isRefused(ground.environment)) return refuseAdministrator(ground, description);
  QtApplication application(LinuxBundles::pathOfThisProgram());
  DesktopAppearance appearance(styleOf(ground.defaults));
  Colors colors(ground, appearance);

  QtImages images(description ? Paths::deletingLastComponent(*description) : Text());
  const InstallerWindow::Loaded loaded =
      InstallerWindow::load(description.value_or(Text()), ground.strings, images);
  if (!loaded.window) {
    ground.log("ERROR -- Could not load the window from %@: %@", bundle, loaded.problem);
    return 1;
  }
  return Installer(ground, application, colors.colors, *loaded.window, images, argumentList).run();
}

}  // namespace halvorn
