#include "Platform/session/linux/XdgSearchPaths.h"

#include <unistd.h>

#include "Core/Paths.h"
#include "Platform/files/linux/FoundItem.h"
#include "Platform/rights/posix/Accounts.h"
#include "Platform/session/linux/XdgFolders.h"

namespace halvorn {

XdgSearchPaths::XdgSearchPaths(const XdgFolders& folders, const Text& sharedApplications)
    : home_(folders.home()), dataHome_(folders.dataHome()), sharedApplications_(sharedApplications) {}

OptionalText XdgSearchPaths::homeFolderOf(const Text& account) const {
  const auto found = accountNamed(account.bytes());
  return found && found->home.starts_with('/') ? OptionalText(found->home) : std::nullopt;
}

std::vector<Text> XdgSearchPaths::localApplicationsFolders() const {
  std::vector<Text> folders = {"/opt"};
  const auto shared = findItem(sharedApplications_.bytes());
  if (shared && isFolder(*shared)) folders.push_back(sharedApplications_);
  return folders;
}

std::vector<Text> XdgSearchPaths::userApplicationsFolders() const {
  return {Paths::appending(home_, "Applications")};
}

std::vector<Text> XdgSearchPaths::volumeFolders() const {
  std::vector<Text> folders = {"/Volumes"};
  const auto account = accountWithUid(::getuid());
  if (account && !account->name.empty()) {
    folders.push_back("/media/" + account->name);
    folders.push_back("/run/media/" + account->name);
  }
  return folders;
}

std::vector<Text> XdgSearchPaths::soundFolders() const {
  return {Paths::appending(dataHome_, "sounds"), "/usr/share/sounds"};
}

}  // namespace halvorn
