// The base folders of the XDG Base Directory Specification. Relative paths in the variables count as unset.
#pragma once

#include <string>
#include <vector>

#include "Platform/session/linux/Environment.h"

namespace halvorn {

class XdgFolders {
 public:
  // The home folder is $HOME, else that of the password database, else "/".
  explicit XdgFolders(const Environment& environment);

  [[nodiscard]] const std::string& home() const { return home_; }
  [[nodiscard]] const std::string& configHome() const { return configHome_; }  // ~/.config
  [[nodiscard]] const std::string& dataHome() const { return dataHome_; }      // ~/.local/share
  // The system's own, most important first.
  [[nodiscard]] const std::vector<std::string>& configFolders() const { return configFolders_; }

 private:
  std::string home_;
  std::string configHome_;
  std::string dataHome_;
  std::vector<std::string> configFolders_;
};

}  // namespace halvorn
