// Folders of the system and of the person.
#pragma once

#include "Platform/files/SearchPaths.h"

namespace halvorn {

class XdgFolders;

class XdgSearchPaths : public SearchPaths {
 public:
  // `sharedApplications` is used where it exists at the time of the question, "/opt" otherwise.
  explicit XdgSearchPaths(const XdgFolders& folders, const Text& sharedApplications = "/Applications");

  Text homeFolder() const override { return home_; }
  OptionalText homeFolderOf(const Text& account) const override;
  std::vector<Text> localApplicationsFolders() const override;
  std::vector<Text> userApplicationsFolders() const override;
  // /Volumes, and where desktops mount for the person: /media/<name> and /run/media/<name>.
  std::vector<Text> volumeFolders() const override;
  std::vector<Text> soundFolders() const override;

 private:
  Text home_;
  Text dataHome_;
  Text sharedApplications_;
};

}  // namespace halvorn
