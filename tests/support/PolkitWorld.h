// A small world of a test's own in which somebody without rights can ask for administrator rights: two
// accounts, a system bus with the policy daemon, rules, an empty /opt.
//
//   if (const auto missing = PolkitWorld::missing()) GTEST_SKIP() << *missing;
//   PolkitWorld world({.rules = PolkitWorld::ruleAnswering("NO")});
//   ChildProcess program(world.asPerson({"/usr/bin/id"}), {.environment = world.personsEnvironment()});
//
// It is a private mount namespace of the test program: /run, /opt, the accounts, the policy's
// folders and the password checks are mounted over there and nowhere else, and nothing of the
// machine is written. Needs the rights of root.
//
// Thread: one; the test program should have no others when it makes its world.
#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace halvorn {

struct PolkitWorldParts {
  std::string rules = {};   // JavaScript, before all other rules
  std::string action = {};  // the file of an action that an installed package has; "" for none
  bool bus = true;
  bool policyDaemon = true;  // else the bus serves, and knows of no such daemon
};

class PolkitWorld {
 public:
  static constexpr uid_t personId = 64101;  // "halvorn-person", also in the group "halvorn-extra"
  static constexpr uid_t administratorId = 64102;
  static constexpr gid_t extraGroupId = 64103;
  static constexpr const char* password = "right-password";  // of the administrator

  // Why such a world cannot be had here; nullopt when it can.
  [[nodiscard]] static std::optional<std::string> missing();
  // A rule that gives "YES", "NO", "AUTH_ADMIN" ... to the person for running programs as administrator.
  [[nodiscard]] static std::string ruleAnswering(const std::string& answer);

  // Throws std::runtime_error when a part does not come up.
  explicit PolkitWorld(const PolkitWorldParts& parts = {});
  ~PolkitWorld();
  PolkitWorld(const PolkitWorld&) = delete;
  PolkitWorld& operator=(const PolkitWorld&) = delete;

  // The command, run as the person with the person's groups.
  [[nodiscard]] std::vector<std::string> asPerson(const std::vector<std::string>& command) const;
  // What a session would give: HOME, PATH and so on.
  [[nodiscard]] std::vector<std::string> personsEnvironment() const;

  // /opt/people/halvorn-person, so that home and /opt lie on one file system; 0700.
  [[nodiscard]] std::string homeFolder() const { return "/opt/people/halvorn-person"; }
  // A folder that everybody may search and root alone may write, on a file system of its own.
  [[nodiscard]] std::string scratchFolder() const { return folder_ / "scratch"; }

  // Mounts inside the world; gone with it.
  void mount(const std::string& source, const std::string& target, const std::string& type,
             unsigned long flags, const std::string& data);

  // From here on only this world sees what is put into the folder of the machine. The name is a new one each time.
  void layOver(const std::string& machineFolder, const std::string& name);

 private:
  void enterOwnNamespace();
  void writeAccounts();
  void writePolicy(const PolkitWorldParts& parts);
  void startBus();
  void killWhatIsLeft();

  TemporaryFolder folder_;
  std::vector<std::string> mounted_;
  std::unique_ptr<ChildProcess> bus_;
};

}  // namespace halvorn
