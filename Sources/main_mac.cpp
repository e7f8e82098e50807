// The composition root on macOS: the one place that names the adapters of the installer. What the class library needs
// comes from KTSystem: an adapter for one of its classes is added in System/mac, one for the installer alone here.
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "Core/ByteCounter.h"
#include "Core/Format.h"
#include "Core/Paths.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/Workspace.h"
#include "Platform/files/SearchPaths.h"
#include "Platform/files/mac/MacFileChangeNotices.h"
#include "Platform/files/mac/MacTrash.h"
#include "Platform/files/null/NullFiles.h"
#include "Platform/rights/mac/MacAuthorizer.h"
#include "Platform/running/posix/BeforeExit.h"
#include "Platform/running/posix/PosixStandardStreams.h"
#include "Platform/running/posix/TerminationSignals.h"
#include "Platform/session/null/NullSession.h"
#include "Platform/text/null/NullText.h"
#include "Platform/window/mac/MacAlerts.h"
#include "Platform/window/mac/MacInstallerWindow.h"
#include "Platform/window/mac/MacScreenReader.h"
#include "Platform/window/null/NullWindow.h"
#include "Sources/AdministratorRefusal.h"
#include "Sources/CommandLineAnswer.h"
#include "Sources/CompletionSound.h"
#include "Sources/Departure.h"
#include "Sources/DestinationChoice.h"
#include "Sources/InstallerWinController.h"
#include "Sources/main_application.h"
#include "System/mac/Appearance.h"
#include "System/mac/Work.h"
#include "train/InstallFunction.h"

namespace halvorn {
namespace {

constexpr char kProgramName[] = "HalvornInstaller";
constexpr char kBundleIdentifier[] = "example.halvorn.installer";

// The window, the controller and what they need.
class Installer {
 public:
  Installer(KTSystem& system, MacInstallerWindow& window)
      : system_(system),
        window_(window),
        sound_(system.sound()),
        alerts_(window),
        destinations_(destinationServices()),
        controller_(services(), window.outlets(), system.parts().arguments) {}

  int run() {
    const TerminationSignals signals(system_.parts().of<MainLoop>().runLoop, departure_.sessionEnds,
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
                        .openLink = [this](const Text& url) { system_.workspace().openUrl(url); }});
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
    const BeforeExit withoutScreen([this] {
      noteSessionEnd("the system ends the program");
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
                           .mainThread = system_.mainThread(),
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
                       .mainThread = system_.mainThread(),
                       .clock = system_.clock(),
                       .departure = departure_,
                       .log = system_.log()},
            .progress = {.copied = copied_,
                         .items = itemSizes_,
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
  MacApplication& application_ = system_.parts().of<ApplicationPart>().application;
  MacInstallerWindow& window_;
  NullItemClaims claims_;
  MacFileChangeNotices changes_;
  Departure departure_;
  CompletionSound sound_;
  MacAlerts alerts_;
  MacScreenReader screenReader_;
  NullDesktopMessages messages_;
  NullNotices notices_;
  PosixStandardStreams streams_{Paths::appending(system_.searchPaths().homeFolder(), "Library/Logs")};
  MacTrash trash_;
  ByteCounter copied_;
  const NullItemSizes itemSizes_;
  const NullLocalizedSizes sizes_;
  const InstallServices install_{
      .files = system_.files(), .trash = trash_, .notices = changes_, .log = system_.log()};
  MacAuthorizer authorizer_;
  DestinationChoice destinations_;
  InstallerWinController controller_;
};

bool isRefused() {
  const char* const exception = std::getenv(kAdministratorVariable);
  return isRefusedForAdministrator(::geteuid() == 0,
                                   exception != nullptr ? OptionalText(exception) : std::nullopt);
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
                  {.programName = kProgramName, .identifier = kBundleIdentifier});
  if (const auto answer = commandLineAnswer(system.parts().arguments, system.bundles()))
    return std::fputs(answer->bytes().c_str(), stdout) >= 0 ? EXIT_SUCCESS : EXIT_FAILURE;
  if (isRefused()) {
    logAdministratorRefusal(system.log());
    return kAdministratorRefused;
  }
  MacApplication& application = system.parts().of<ApplicationPart>().application;
  const Text bundle = system.bundles().mainBundlePath();
  const OptionalText description = system.bundles().pathForResource(bundle, "InstallerWindow", "xml");
  const MacInstallerWindow::Loaded loaded =
      MacInstallerWindow::load(description.value_or(Text()), system.strings(), system.images(), application);
  if (!loaded.window) {
    system.log()("ERROR -- Could not load the window from %@: %@", bundle, loaded.problem);
    return 1;
  }
  return Installer(system, *loaded.window).run();
}

}  // namespace halvorn
