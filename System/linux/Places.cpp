#include "System/linux/Places.h"

#include "Platform/bundles/linux/LinuxLocalizedStrings.h"
#include "Platform/bundles/linux/PreferredLanguages.h"

namespace halvorn {
namespace {

// The bundle says who the program is, where the program does not say it itself.
Text identifierOf(const Text& given, const Bundles& bundles, const Text& programName) {
  if (!given.isEmpty()) return given;
  const auto information = bundles.infoDictionary(bundles.mainBundlePath());
  return information ? textForKey(*information, "CFBundleIdentifier").value_or(programName) : programName;
}

struct Strings {
  explicit Strings(KTSystem& system)
      : strings(system.bundles().mainBundlePath(), system.parts().of<Places>().languages) {}
  const LinuxLocalizedStrings strings;
};

}  // namespace

Places::Places(KTSystem& system)
    : ground(system.parts().of<Ground>()),
      languages(preferredLanguages(system.parts().arguments, ground.environment)),
      defaults(folders, identifierOf(system.parts().settings.identifier, bundles, ground.programName),
               system.parts().arguments),
      versions(bundles, systemFacts, system.unicode(), system.dates(), ground.log) {}

const Bundles& KTSystem::bundles() { return parts_->of<Places>().bundles; }
const LocalizedStrings& KTSystem::strings() { return parts_->of<Strings>().strings; }
const Defaults& KTSystem::defaults() { return parts_->of<Places>().defaults; }
const SearchPaths& KTSystem::searchPaths() { return parts_->of<Places>().searchPaths; }
const SystemFacts& KTSystem::systemFacts() { return parts_->of<Places>().systemFacts; }
const ItemFacts& KTSystem::items() { return parts_->of<Places>().items; }
const KTUtilitiesVersions& KTSystem::versions() { return parts_->of<Places>().versions; }

}  // namespace halvorn
