// This program, as the process table has it.
#pragma once

#include "Core/Text.h"

namespace halvorn {

// The path of the running program, links resolved; stays what it was at the start when the file is moved or replaced
// later.
[[nodiscard]] Text pathOfThisProgram();

}  // namespace halvorn
