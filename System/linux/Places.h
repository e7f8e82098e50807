// Folders, languages, bundles and settings. Nothing of a bundle is read before it is asked for.
#pragma once

#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "Platform/bundles/linux/LinuxBundles.h"
#include "Platform/bundles/linux/LinuxDefaults.h"
#include "Platform/bundles/linux/LinuxItemFacts.h"
#include "Platform/session/linux/LinuxSystemFacts.h"
#include "Platform/session/linux/XdgFolders.h"
#include "Platform/session/linux/XdgSearchPaths.h"
#include "System/linux/Ground.h"

namespace halvorn {

struct Places {
  explicit Places(KTSystem& system);

  const Ground& ground;
  const XdgFolders folders{ground.environment};
  const std::vector<Text> languages;
  const LinuxBundles bundles{ground.programPath, languages};
  const LinuxDefaults defaults;
  const XdgSearchPaths searchPaths{folders};
  const LinuxSystemFacts systemFacts;
  const LinuxItemFacts items{bundles};
  const KTUtilitiesVersions versions;
};

}  // namespace halvorn
