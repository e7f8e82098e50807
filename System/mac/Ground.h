// What everything stands on: time, the log, files, folders, bundles and settings.
#pragma once

#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "Platform/bundles/mac/MacBundles.h"
#include "Platform/bundles/mac/MacDefaults.h"
#include "Platform/bundles/mac/MacItemFacts.h"
#include "Platform/files/mac/MacFileManager.h"
#include "Platform/files/mac/MacSearchPaths.h"
#include "Platform/files/posix/PosixFileHandles.h"
#include "Platform/running/posix/PosixClock.h"
#include "Platform/running/posix/StandardErrorLog.h"
#include "Platform/session/mac/MacSystemFacts.h"
#include "System/Parts.h"

namespace halvorn {

struct Ground {
  explicit Ground(KTSystem& system);

  PosixClock clock;
  const StandardErrorLog log;
  MacFileManager files;
  const PosixFileHandles fileHandles;
};

struct Places {
  explicit Places(KTSystem& system);

  const MacBundles bundles;
  const MacDefaults defaults;
  const MacSearchPaths searchPaths;
  const MacSystemFacts systemFacts;
  const MacItemFacts items;
  const KTUtilitiesVersions versions;
};

}  // namespace halvorn
