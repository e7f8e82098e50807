// What a launch for the person needs, put together once.
#pragma once

#include <sys/resource.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Core/Text.h"
#include "Platform/bundles/linux/launching/Launching.h"
#include "Platform/session/linux/Environment.h"

namespace halvorn {

class XdgFolders;

class Launcher {
 public:
  // Asks the desktop for a token that lets the program at the path come to the front; nullopt where it gives
  // none. Called on the thread that launches.
  using ActivationTokens = std::function<OptionalText(const std::string& program)>;

  // The descriptor limit is that of what is launched; nullopt: that of this program.
  Launcher(const Environment& environment, const XdgFolders& folders, ActivationTokens tokens = nullptr,
           std::optional<rlimit> descriptorLimit = std::nullopt);

  // As launchDetached(), in the person's home folder, with the launch environment, a token and the mark by
  // which the program knows its launcher.
  [[nodiscard]] int launch(const std::string& program, const std::vector<std::string>& arguments) const;
  // As runAndWait(), likewise, without a token.
  [[nodiscard]] int run(const std::string& program, const std::vector<std::string>& arguments,
                        double seconds) const;
  // As programInPath() in the person's PATH.
  [[nodiscard]] std::string find(const std::string& name) const { return programInPath(name, environment_); }

 private:
  [[nodiscard]] LaunchRequest request(const std::string& program,
                                      const std::vector<std::string>& arguments) const;

  Environment environment_;
  std::string home_;
  ActivationTokens tokens_;
  std::optional<rlimit> descriptorLimit_;
};

}  // namespace halvorn
