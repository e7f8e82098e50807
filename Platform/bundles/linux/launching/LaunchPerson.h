// Whose rights a program gets that is started for the person.
// Why: docs/decisions/011-launching-for-the-person.md
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "Platform/session/linux/Environment.h"

namespace halvorn {

struct LaunchPerson {
  // Unknown: this program has rights that are not the person's, and who the person is cannot be told.
  enum class Kind { ThisProcess, Other, Unknown };

  Kind kind = Kind::ThisProcess;
  // The rest only when Other.
  uid_t uid = 0;
  gid_t gid = 0;
  std::vector<gid_t> groups = {};
  std::string name = {};
  std::string home = {};
  std::string shell = {};
};

// This process's own rights, as a rule. When it was given the administrator's (set-user-id, pkexec, sudo),
// those of the person who asked: the answer of requesterOfThisProcess().
[[nodiscard]] LaunchPerson personToLaunchAs(const Environment& environment);

// The variables ("NAME=value") a program gets that is started for the person: who they are, their language,
// their session and its services, their settings for input and display. Nothing else, above all nothing that
// changes how programs are loaded. An activation token is for one program only and is not passed on.
[[nodiscard]] std::vector<std::string> launchEnvironment(const Environment& environment,
                                                         const LaunchPerson& person);

}  // namespace halvorn
