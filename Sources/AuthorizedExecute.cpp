#include "Sources/AuthorizedExecute.h"

#include "Core/Log.h"
#include "Platform/rights/Authorizer.h"

namespace halvorn {

int AuthorizedExecute(Authorization& authorization, const OptionalText& toolPath, const Log& log) {
  const ToolEnd end = authorization.run();
  if (const auto* notStarted = std::get_if<ToolNotStarted>(&end)) {
    log("AuthorizationExecuteWithPrivileges failed (%s)", toolPath);
    return notStarted->status;
  }
  if (std::holds_alternative<ToolUnknown>(end)) {
    // KEEP: a tool whose end cannot be waited for counts as successful.
    log("no pid");
    return 0;
  }
  if (const auto* exited = std::get_if<ToolExited>(&end)) {
    if (exited->status == 0) return 0;
    log("WEXITSTATUS");
    return -1;
  }
  log("!WIFEXITED");
  return -1;
}

}  // namespace halvorn
