#include "System/linux/Ground.h"

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

// What lies beside the program comes with it and fits it. The library's own lie below it, wherever it was put; a
// program that it is a part of finds them where it was installed.
Text Ground::modulePath(const char* name) const {
  static constexpr char kHere = 0;
  if (!modulesFolder_.isEmpty()) return Paths::appending(modulesFolder_, name);
  const Text library = Paths::deletingLastComponent(pathOfCodeAt(&kHere));
  for (const Text& folder :
       {Paths::deletingLastComponent(programPath), Paths::appending(library, "ktstuff-1")}) {
    const Text path = Paths::appending(folder, name);
    if (files.fileExists(path)) return path;
  }
  return Paths::appending(KT_MODULES_FOLDER, name);
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
