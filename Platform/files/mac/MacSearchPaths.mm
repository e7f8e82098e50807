#include "Platform/files/mac/MacSearchPaths.h"

#include "Platform/running/mac/Conversions.h"

namespace halvorn {
namespace {

std::vector<Text> applicationsFolders(NSSearchPathDomainMask domain) {
  return answered(std::vector<Text>(), [&] {
    std::vector<Text> folders;
    NSArray* const paths = NSSearchPathForDirectoriesInDomains(NSApplicationDirectory, domain, YES);
    for (NSUInteger i = 0; i < [paths count]; ++i) folders.push_back(*textOf([paths objectAtIndex:i]));
    return folders;
  });
}

}  // namespace

Text MacSearchPaths::homeFolder() const {
  return answered(OptionalText(), [] { return textOf(NSHomeDirectory()); }).value_or("/");
}

OptionalText MacSearchPaths::homeFolderOf(const Text& account) const {
  const OptionalText home =
      answered(OptionalText(), [&] { return textOf(NSHomeDirectoryForUser(stringOf(account))); });
  return home && home->hasPrefix("/") ? home : std::nullopt;
}

std::vector<Text> MacSearchPaths::localApplicationsFolders() const {
  return applicationsFolders(NSLocalDomainMask);
}
std::vector<Text> MacSearchPaths::userApplicationsFolders() const {
  return applicationsFolders(NSUserDomainMask);
}
std::vector<Text> MacSearchPaths::volumeFolders() const { return {"/Volumes"}; }
std::vector<Text> MacSearchPaths::soundFolders() const { return {}; }

}  // namespace halvorn
