// The accounts of this computer: the one place where they are looked up.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace halvorn {

struct Account {
  uid_t uid = 0;
  gid_t gid = 0;
  std::string name;
  std::string home;
  std::string shell;
};

// nullopt when the database has no such number.
[[nodiscard]] std::optional<Account> accountWithUid(uid_t uid);
// nullopt when the database has no such name.
[[nodiscard]] std::optional<Account> accountNamed(const std::string& name);
// The account's own group and all others it is in.
[[nodiscard]] std::vector<gid_t> groupsOf(const Account& account);
// The groups besides its own that this process is in.
[[nodiscard]] std::vector<gid_t> groupsOfThisProcess();

}  // namespace halvorn
