// What an installation here and now would do, asked of the steps that would do it. Nothing is touched.
#pragma once

#include "Core/PropertyValue.h"
#include "tools/halvorn/Command.h"
#include "tools/halvorn/InstallerSteps.h"

namespace halvorn {

struct Plan {
  Ending ending = Ending::Done;   // of the installation, as far as that is known beforehand
  PropertyDictionary facts = {};  // as the schema has them
};

// After begin(). Thread: main.
[[nodiscard]] Plan planOf(InstallerSteps& steps);
// The sentences for a terminal, a line each.
[[nodiscard]] std::string sentencesOf(const Plan& plan);

// The installer's bundle that the option names, else the one beside this program or where packages have it; nullopt
// when there is none.
[[nodiscard]] OptionalText installerFor(const Call& call);

// A dictionary's text, "" for none.
[[nodiscard]] Text textIn(const PropertyDictionary& facts, const char* key);

}  // namespace halvorn
