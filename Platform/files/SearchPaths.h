// Where the system keeps things.
#pragma once

#include <vector>

#include "Core/Text.h"

namespace halvorn {

class SearchPaths {
 public:
  virtual ~SearchPaths() = default;
  // Absolute, without "~". Never empty, also when the environment names none.
  [[nodiscard]] virtual Text homeFolder() const = 0;
  // That of the account of that name, absolute; nullopt when there is no such account, or it has no home.
  [[nodiscard]] virtual OptionalText homeFolderOf(const Text& account) const = 0;
  // Applications folders of all users, the one to use last; they need not exist.
  [[nodiscard]] virtual std::vector<Text> localApplicationsFolders() const = 0;
  // Applications folders of this user, the one to use last; they need not exist and are not made here.
  [[nodiscard]] virtual std::vector<Text> userApplicationsFolders() const = 0;
  // The folders whose entries are mounted volumes (distribution disks, network volumes); they need not exist.
  [[nodiscard]] virtual std::vector<Text> volumeFolders() const = 0;
  // Where this system keeps sounds, apart from the folders that are searched everywhere: absolute, in the
  // order of the search; they need not exist. Thread: any.
  [[nodiscard]] virtual std::vector<Text> soundFolders() const = 0;
};

}  // namespace halvorn
