#include "Platform/bundles/linux/launching/Launcher.h"

#include <utility>

#include "Platform/session/linux/XdgFolders.h"

namespace halvorn {

Launcher::Launcher(const Environment& environment, const XdgFolders& folders, ActivationTokens tokens,
                   std::optional<rlimit> descriptorLimit)
    : environment_(environment),
      home_(folders.home()),
      tokens_(std::move(tokens)),
      descriptorLimit_(descriptorLimit) {}

LaunchRequest Launcher::request(const std::string& program, const std::vector<std::string>& arguments) const {
  const LaunchPerson person = personToLaunchAs(environment_);
  const std::string& home = person.kind == LaunchPerson::Kind::Other ? person.home : home_;
  return {program, arguments, launchEnvironment(environment_, person), home, person, descriptorLimit_};
}

int Launcher::launch(const std::string& program, const std::vector<std::string>& arguments) const {
  LaunchRequest started = request(program, arguments);
  started.mark = LaunchRequest::Mark::Yes;
  const OptionalText token = tokens_ ? tokens_(program) : std::nullopt;
  if (token && token->find(u'\0') == Text::npos) {
    // One name for Wayland, one for X.
    started.environment.push_back("XDG_ACTIVATION_TOKEN=" + token->bytes());
    started.environment.push_back("DESKTOP_STARTUP_ID=" + token->bytes());
  }
  return launchDetached(started);
}

int Launcher::run(const std::string& program, const std::vector<std::string>& arguments,
                  double seconds) const {
  return runAndWait(request(program, arguments), seconds);
}

}  // namespace halvorn
