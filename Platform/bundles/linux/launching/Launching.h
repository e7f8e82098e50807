// Starting programs as the person's own, with nothing of this program clinging to them.
//
// What is started runs in a session of its own, with the person's rights, the working folder
// given (else "/"), default signals, an empty signal mask, umask 022, /dev/null as its three
// standard streams and no other descriptor.
//
// Thread: any.
#pragma once

#include <sys/resource.h>

#include <optional>
#include <string>
#include <vector>

#include "Platform/bundles/linux/launching/LaunchPerson.h"
#include "Platform/session/linux/Environment.h"

namespace halvorn {

// By which a launched program knows who launched it: "OWN-ID LAUNCHER-ID", two process ids.
inline constexpr char kLaunchMarkVariable[] = "HALVORN_LAUNCHED_BY";

struct LaunchRequest {
  std::string program;  // absolute
  std::vector<std::string> arguments = {};
  std::vector<std::string> environment = {};  // "NAME=value"
  std::string workingFolder = "/";
  LaunchPerson person = {};
  // How many descriptors the program may have; nullopt for as many as this one.
  std::optional<rlimit> descriptorLimit = {};
  enum class Mark { No, Yes } mark = Mark::No;  // whether the program is told who launched it
};

// Starts the program and lets go of it: it is no child of this one. 0 once it runs; else
// the errno that kept it from running.
[[nodiscard]] int launchDetached(const LaunchRequest& request);

// Starts the program and waits for its end, at most that long; then it is killed. Its exit status, or -1 when
// it could not be started, was ended by a signal or took too long.
[[nodiscard]] int runAndWait(const LaunchRequest& request, double seconds);

// The first executable file of that name in the folders of PATH; "" when there is none.
[[nodiscard]] std::string programInPath(const std::string& name, const Environment& environment);

}  // namespace halvorn
