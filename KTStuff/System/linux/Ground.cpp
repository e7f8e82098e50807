#include "KTStuff/System/linux/Ground.h"

#include "Core/Paths.h"
#include "Platform/running/linux/ThisProgram.h"

namespace halvorn {
namespace {

Text nameOrThatOf(const Text& name, const Text& program) {
  return name.isEmpty() ? Paths::lastComponent(program) : name;
}

}  // namespace

Ground::Ground(KTSystem& system)
    : programPath(pathOfThisProgram()),
      programName(nameOrThatOf(system.parts().settings.programName, programPath)),
      log(clock, programName, environment),
      modulesFolder_(system.parts().settings.modulesFolder) {}

// What lies beside the program comes with it and fits it; the library's own are of the system.
Text Ground::modulePath(const char* name) const {
  if (!modulesFolder_.isEmpty()) return Paths::appending(modulesFolder_, name);
  const Text beside = Paths::appending(Paths::deletingLastComponent(programPath), name);
  return files.fileExists(beside) ? beside : Paths::appending(KT_MODULES_FOLDER, name);
}

KTSystem::KTSystem(std::vector<Text> arguments, KTSystemSettings settings)
    : parts_(std::make_unique<Parts>(*this, std::move(arguments), std::move(settings))) {}

KTSystem::~KTSystem() { finish(); }

void KTSystem::finish() { parts_->finish(); }

const Log& KTSystem::log() { return parts_->of<Ground>().log; }
Clock& KTSystem::clock() { return parts_->of<Ground>().clock; }
FileManager& KTSystem::files() { return parts_->of<Ground>().files; }
const FileHandles& KTSystem::fileHandles() { return parts_->of<Ground>().fileHandles; }

}  // namespace halvorn
