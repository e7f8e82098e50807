// Folders as a test names them.
#pragma once

#include <map>

#include "Platform/files/SearchPaths.h"

namespace halvorn {

class FakeSearchPaths : public SearchPaths {
 public:
  Text homeFolder() const override { return home; }
  OptionalText homeFolderOf(const Text& account) const override {
    const auto found = homes.find(account);
    return found == homes.end() ? std::nullopt : OptionalText(found->second);
  }
  std::vector<Text> localApplicationsFolders() const override { return localApplications; }
  std::vector<Text> userApplicationsFolders() const override { return userApplications; }
  std::vector<Text> volumeFolders() const override { return volumes; }
  std::vector<Text> soundFolders() const override { return sounds; }

  Text home = "/home/anna";
  std::map<Text, Text> homes = {{"anna", "/home/anna"}, {"bert", "/srv/bert"}};
  std::vector<Text> localApplications = {"/Applications"};
  std::vector<Text> userApplications = {"/home/anna/Applications"};
  std::vector<Text> volumes = {"/Volumes"};
  std::vector<Text> sounds = {"/home/anna/.local/share/sounds", "/usr/share/sounds"};
};

}  // namespace halvorn
