// What a launch for the person needs, put together once.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Core/Text.h"
#include "Platform/bundles/linux/launching/Launching.h"
#include "Platform/session/linux/Environment.h"

namespace halvorn {

class XdgFolders;

class Launcher {
 public:
  // Asks the desktop for a token that lets the next program come to the front; nullopt where it gives none.
  // Called on the thread that launches.
  using ActivationTokens = std::function<OptionalText()>;

  Launcher(const Environment& environment, const XdgFolders& folders, ActivationTokens tokens = nullptr);

  // As launchDetached(), in the person's home folder, with the launch environment and a token.
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
};

}  // namespace halvorn
