// Work that this program has done: on the main thread, by threads, and by programs it starts.
#include "System/mac/Work.h"

#include "Platform/bundles/mac/MacWorkspace.h"
#include "Platform/files/posix/PosixTemporaryFiles.h"
#include "Platform/running/posix/PosixTasks.h"
#include "Platform/running/posix/PosixWorkers.h"

namespace halvorn {
namespace {

struct Launches {
  explicit Launches(KTSystem&) {}
  MacWorkspace workspace;
  PosixTasks tasks;
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
TemporaryFiles& KTSystem::temporaryFiles() { return parts_->of<Launches>().files; }
Workers& KTSystem::workers() { return parts_->of<Threads>().workers; }
MainThread& KTSystem::mainThread() { return parts_->of<MainLoop>().mainThread; }
bool KTSystem::runUntil(const std::function<bool()>& condition, double seconds) {
  return MacRunLoop::runUntil(condition, seconds);
}

}  // namespace halvorn
