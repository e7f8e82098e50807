// Runs the tool that rights were granted for and turns its end into a status.
#pragma once

#include "Core/Text.h"

namespace halvorn {

class Authorization;
class Log;

// 0: the tool did its work, or nobody can tell (see the source); else the platform's status when it could not
// be started, or -1 when it ended in any other way than with exit status 0. Blocks until the tool has ended.
// Logs: every end but a good one. Thread: a worker.
[[nodiscard]] int AuthorizedExecute(Authorization& authorization, const OptionalText& toolPath,
                                    const Log& log);

}  // namespace halvorn
