// The person an installation is made for, and doing something with that person's rights.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

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

// The person who asked for administrator rights, taken from PKEXEC_UID; nullopt when this process has none,
// or when nobody asked. The folders come from the accounts' database, since the environment is not that
// person's. Fails: answers nullopt and sets `isUnknown` when someone asked who has no account here.
struct Requester {
  std::optional<Person> person;
  bool isUnknown = false;
};
[[nodiscard]] Requester requesterOfAdministratorRights();

// While it lives, the calling thread reaches files with that person's rights only. No person: changes
// nothing. Thread: other threads keep their rights. Fails: holds() is false, and nothing may then be done.
class RightsOf {
 public:
  explicit RightsOf(const Person* person);
  ~RightsOf();
  RightsOf(const RightsOf&) = delete;
  RightsOf& operator=(const RightsOf&) = delete;
  [[nodiscard]] bool holds() const { return holds_; }

 private:
  bool isChanged_ = false;
  bool holds_ = true;
  std::vector<gid_t> groupsBefore_;
  gid_t groupBefore_ = 0;
};

}  // namespace halvorn
