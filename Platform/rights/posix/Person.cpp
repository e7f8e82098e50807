#include "Platform/rights/posix/Person.h"

#include <unistd.h>

#include <cstdlib>

namespace halvorn {
namespace {

std::string absoluteOrNone(const std::string& path) { return path.starts_with('/') ? path : std::string{}; }

std::string homeOfThisProcess() {
  const char* value = std::getenv("HOME");
  if (value != nullptr && value[0] == '/') return value;
  const auto account = accountWithUid(::geteuid());
  return account ? absoluteOrNone(account->home) : std::string{};
}

}  // namespace

Person personOfThisProcess() {
  Person person{.user = ::geteuid(), .group = ::getegid(), .groups = groupsOfThisProcess()};
  person.home = homeOfThisProcess();
  person.dataFolder = DataFolders::ofTheEnvironment();
  if (person.dataFolder.empty()) person.dataFolder = DataFolders::usualIn(person.home);
  return person;
}

Person personOf(const Account& account) {
  Person person{.user = account.uid, .group = account.gid, .groups = groupsOf(account)};
  person.home = absoluteOrNone(account.home);
  person.dataFolder = DataFolders::usualIn(person.home);
  return person;
}

}  // namespace halvorn
