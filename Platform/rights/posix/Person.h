// Somebody whose rights decide what can be reached, and whose folders are used.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "Platform/rights/posix/Accounts.h"

namespace halvorn {

struct Person {
  uid_t user = 0;
  gid_t group = 0;
  std::vector<gid_t> groups = {};  // all of them
  std::string home = {};           // absolute, or empty when unknown
  std::string dataFolder = {};     // where the person's programs keep data; absolute, or empty when unknown
};

// The person whose rights this process has, its folders taken from the environment.
[[nodiscard]] Person personOfThisProcess();

// The owner of the account, the folders taken from the accounts' database and from nowhere else.
[[nodiscard]] Person personOf(const Account& account);

// The custom of this system, defined in its folder.
namespace DataFolders {
// Where programs keep the data of a person with that home; empty for the empty home.
[[nodiscard]] std::string usualIn(const std::string& home);
// The one that the environment of this process names; absolute, or empty when it names none.
[[nodiscard]] std::string ofTheEnvironment();
}  // namespace DataFolders

}  // namespace halvorn
