// Work that this program has done: by programs it starts, and by threads.
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/bundles/linux/launching/LinuxWorkspace.h"
#include "Platform/bundles/linux/launching/OpenToolTasks.h"
#include "Platform/files/posix/PosixTemporaryFiles.h"
#include "Platform/running/posix/PosixTasks.h"
#include "Platform/running/posix/PosixWorkers.h"
#include "Platform/running/posix/ResourceLimits.h"
#include "System/linux/Activation.h"
#include "System/linux/Pictures.h"
#include "System/linux/Places.h"

namespace halvorn {
namespace {

std::optional<rlimit> limitOfLaunched(const KTSystemSettings& settings) {
  if (settings.holdManyProcesses == HoldManyProcesses::No) return std::nullopt;
  return raiseLimit(RLIMIT_NOFILE, kManyDescriptors);
}

Launcher::ActivationTokens tokensOf(Activation& activation) {
  return [&activation](const std::string& program) {
    return activation.tokens ? activation.tokens(program) : std::nullopt;
  };
}

struct Launches {
  explicit Launches(KTSystem& system)
      : places(system.parts().of<Places>()),
        drawing([&pictures = system.parts().of<Pictures>()](std::string_view bytes) {
          return pictures.drawnIcon(bytes);
        }),
        launcher(places.ground.environment, places.folders, tokensOf(system.parts().of<Activation>()),
                 limitOfLaunched(system.parts().settings)) {}

  const Places& places;
  const IconDrawing drawing;
  const Launcher launcher;
  LinuxWorkspace workspace{places.bundles, places.folders,   places.ground.environment,
                           launcher,       places.languages, drawing};
  PosixTasks programs;
  OpenToolTasks tasks{programs, workspace};
};

struct Scratch {
  explicit Scratch(KTSystem&) {}
  PosixTemporaryFiles files;
};

struct Threads {
  explicit Threads(KTSystem& system) {
    system.parts().whenFinishing([this] { workers.finish(); });
  }
  PosixWorkers workers;
};

}  // namespace

Workspace& KTSystem::workspace() { return parts_->of<Launches>().workspace; }
Tasks& KTSystem::tasks() { return parts_->of<Launches>().tasks; }
TemporaryFiles& KTSystem::temporaryFiles() { return parts_->of<Scratch>().files; }
Workers& KTSystem::workers() { return parts_->of<Threads>().workers; }

}  // namespace halvorn
