// What a process asks for itself and no two systems call the same. Each system's folder defines these.
#pragma once

#include <string>

namespace halvorn::ProcessCalls {

// What the number of an error means, in the words of the system; in every locale the same, for logs.
[[nodiscard]] std::string wordsFor(int error);

// Removes every variable of this process. Fails: false.
[[nodiscard]] bool clearEnvironment();

// Closes this descriptor and all above it. Allocates nothing: a child may call it before it runs its program.
void closeFrom(int first);

}  // namespace halvorn::ProcessCalls
