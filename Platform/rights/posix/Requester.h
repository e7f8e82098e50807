// For whom this process works. It may have rights that are not those of the person who wanted them.
// Why: docs/decisions/028-for-whom-a-program-works.md
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "Platform/rights/posix/Accounts.h"

namespace halvorn {

struct Requester {
  enum class Kind {
    Nobody,    // nobody else than the user whose rights the process has
    Somebody,  // the account's owner
    Unknown,   // somebody else who has no account here
  };
  Kind kind = Kind::Nobody;
  std::optional<Account> account = std::nullopt;  // when Somebody
};

// The value of a variable; nullopt when it is not set.
using VariableLookup = std::function<std::optional<std::string>(const std::string& name)>;
[[nodiscard]] std::optional<std::string> variableOfThisProcess(const std::string& name);

// The one answer: the starter of a program with set-user-id; else, with the administrator's rights, whom the
// variables name; else nobody.
[[nodiscard]] Requester requesterOfThisProcess(const VariableLookup& variable = variableOfThisProcess);

// What differs from system to system, defined in its folder: how those who hand out the administrator's rights
// tell for whom they did.
namespace RequesterVariables {
// Whom the variables name: the first of them that does not name the administrator. One that can not be read,
// also an empty one, names somebody unknown.
[[nodiscard]] Requester requesterNamedBy(const VariableLookup& variable);
// Whether they name anybody, the administrator and the unknown included. Looks no account up.
[[nodiscard]] bool nameAnybody(const VariableLookup& variable = variableOfThisProcess);
// The variables themselves; and those that say where personOfThisProcess() finds
// the folders, where nobody is named.
[[nodiscard]] std::span<const char* const> names();
[[nodiscard]] std::span<const char* const> namesOfFolders();
}  // namespace RequesterVariables

}  // namespace halvorn
