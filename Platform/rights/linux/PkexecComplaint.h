// What pkexec means by the text it leaves behind when it starts nothing.
#pragma once

#include <string_view>

namespace halvorn {

enum class PkexecComplaint {
  NotAuthorized,  // by a rule, or because of the password; pkexec does not tell which
  NoAgent,        // nothing in the session can ask for a password
  NoSystemBus,
  NoPolicyDaemon,   // or it went away while it was asked
  NotPrivileged,    // pkexec itself has no rights here: a sandbox, or a medium mounted nosuid
  ToolUnreachable,  // the administrator cannot get at the tool
  ToolUnstartable,  // the rights were given, and the system did not start the tool
  Unknown,
};

[[nodiscard]] PkexecComplaint complaintFrom(std::string_view text);

}  // namespace halvorn
