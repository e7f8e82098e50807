#include "System/mac/Ground.h"

#include "Core/Paths.h"
#include "Platform/bundles/mac/MacLocalizedStrings.h"

namespace halvorn {
namespace {

Text nameOf(const KTSystem::Parts& parts) {
  if (!parts.settings.programName.isEmpty() || parts.arguments.empty()) return parts.settings.programName;
  return Paths::lastComponent(parts.arguments.front());
}

struct Strings {
  explicit Strings(KTSystem& system) : strings(system.bundles().mainBundlePath()) {}
  const MacLocalizedStrings strings;
};

}  // namespace

Ground::Ground(KTSystem& system) : log(clock, nameOf(system.parts())) {}

Places::Places(KTSystem& system)
    : versions(bundles, systemFacts, system.unicode(), system.dates(), system.log()) {}

KTSystem::KTSystem(std::vector<Text> arguments, KTSystemSettings settings)
    : parts_(std::make_unique<Parts>(*this, std::move(arguments), std::move(settings))) {}

KTSystem::~KTSystem() { finish(); }

void KTSystem::finish() { parts_->finish(); }

const Log& KTSystem::log() { return parts_->of<Ground>().log; }
Clock& KTSystem::clock() { return parts_->of<Ground>().clock; }
FileManager& KTSystem::files() { return parts_->of<Ground>().files; }
const FileHandles& KTSystem::fileHandles() { return parts_->of<Ground>().fileHandles; }

const Bundles& KTSystem::bundles() { return parts_->of<Places>().bundles; }
const LocalizedStrings& KTSystem::strings() { return parts_->of<Strings>().strings; }
const Defaults& KTSystem::defaults() { return parts_->of<Places>().defaults; }
const SearchPaths& KTSystem::searchPaths() { return parts_->of<Places>().searchPaths; }
const SystemFacts& KTSystem::systemFacts() { return parts_->of<Places>().systemFacts; }
const ItemFacts& KTSystem::items() { return parts_->of<Places>().items; }
const KTUtilitiesVersions& KTSystem::versions() { return parts_->of<Places>().versions; }

}  // namespace halvorn
