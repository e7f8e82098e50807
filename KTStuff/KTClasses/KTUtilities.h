// The maker's utilities under one name: versions, scripts, facts about the
// desktop, how this program was launched.
//
// One object is made at the root of the program. Who needs one part only takes that part: a
// `const KTUtilitiesVersions&` to compare versions, a `KTUtilitiesDesktop&` to ask for the dark appearance.
// Why: docs/decisions/006-the-utilities.md
#pragma once

#include "KTStuff/KTClasses/KTUtilitiesDesktop.h"
#include "KTStuff/KTClasses/KTUtilitiesLaunching.h"
#include "KTStuff/KTClasses/KTUtilitiesScripts.h"
#include "KTStuff/KTClasses/KTUtilitiesVersions.h"

namespace halvorn {

class KTUtilities : public KTUtilitiesVersions,
                    public KTUtilitiesScripts,
                    public KTUtilitiesDesktop,
                    public KTUtilitiesLaunching {
 public:
  // Made of the same parts as its bases; the services must outlive it.
  KTUtilities(const KTUtilitiesVersions& versions, const KTUtilitiesScripts& scripts,
              const KTUtilitiesDesktopServices& desktop, const KTUtilitiesLaunchingServices& launching)
      : KTUtilitiesVersions(versions),
        KTUtilitiesScripts(scripts),
        KTUtilitiesDesktop(static_cast<const KTUtilitiesVersions&>(*this), desktop),
        KTUtilitiesLaunching(static_cast<KTUtilitiesDesktop&>(*this), launching) {}
};

}  // namespace halvorn
