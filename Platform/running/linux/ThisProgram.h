// This program, as the process table has it.
#pragma once

#include "Core/Text.h"

namespace halvorn {

// The path of the running program, links resolved; stays what it was at the start when the file is moved or replaced
// later.
[[nodiscard]] Text pathOfThisProgram();
// The path of the program or the shared library that this address of a function or a thing lies in; "" for none.
[[nodiscard]] Text pathOfCodeAt(const void* address);

}  // namespace halvorn
