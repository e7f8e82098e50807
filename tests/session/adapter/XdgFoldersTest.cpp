#include <gtest/gtest.h>
#include <unistd.h>

#include "Platform/rights/posix/Accounts.h"
#include "Platform/session/linux/XdgFolders.h"

namespace halvorn {
namespace {

TEST(XdgFolders, FollowTheVariablesThatAreAbsolute) {
  const XdgFolders given(Environment(Environment::Variables{{"HOME", "/h"},
                                                            {"XDG_CONFIG_HOME", "/c"},
                                                            {"XDG_DATA_HOME", "relative"},
                                                            {"XDG_CONFIG_DIRS", "/one:two::/three"}}));
  EXPECT_EQ(given.home(), "/h");
  EXPECT_EQ(given.configHome(), "/c");
  EXPECT_EQ(given.dataHome(), "/h/.local/share");
  EXPECT_EQ(given.configFolders(), (std::vector<std::string>{"/one", "/three"}));
  EXPECT_EQ(XdgFolders(Environment(Environment::Variables{{"HOME", "/h"}})).configFolders(),
            std::vector<std::string>{"/etc/xdg"});
}

TEST(XdgFolders, TheHomeFolderComesFromThePasswordDatabaseWhenNobodyNamesIt) {
  const auto account = accountWithUid(::getuid());
  const std::string home = account && account->home.starts_with('/') ? account->home : "/";
  EXPECT_EQ(XdgFolders(Environment()).home(), home);
  EXPECT_EQ(XdgFolders(Environment(Environment::Variables{{"HOME", "relative"}})).home(), home);
}

}  // namespace
}  // namespace halvorn
