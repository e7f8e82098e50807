#include "Platform/session/linux/XdgFolders.h"

#include <unistd.h>

#include "Platform/rights/posix/Accounts.h"

namespace halvorn {
namespace {

bool isAbsolute(const std::string& path) { return path.starts_with('/'); }

std::string homeFolder(const Environment& environment) {
  const auto named = environment.value("HOME");
  if (named && isAbsolute(*named)) return *named;
  const auto account = accountWithUid(::getuid());
  return account && isAbsolute(account->home) ? account->home : "/";
}

std::string folder(const Environment& environment, const char* variable, const std::string& otherwise) {
  const auto named = environment.value(variable);
  return named && isAbsolute(*named) ? *named : otherwise;
}

std::vector<std::string> folders(const Environment& environment, const char* variable,
                                 const char* otherwise) {
  const std::string list = environment.value(variable).value_or(otherwise) + ":";
  std::vector<std::string> result;
  for (std::size_t start = 0, end = 0; (end = list.find(':', start)) != std::string::npos; start = end + 1) {
    const std::string path = list.substr(start, end - start);
    if (isAbsolute(path)) result.push_back(path);
  }
  return result;
}

}  // namespace

XdgFolders::XdgFolders(const Environment& environment)
    : home_(homeFolder(environment)),
      configHome_(folder(environment, "XDG_CONFIG_HOME", home_ + "/.config")),
      dataHome_(folder(environment, "XDG_DATA_HOME", home_ + "/.local/share")),
      configFolders_(folders(environment, "XDG_CONFIG_DIRS", "/etc/xdg")) {}

}  // namespace halvorn
