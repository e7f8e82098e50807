// How much of the system's resources this program may use.
#pragma once

#include <sys/resource.h>

namespace halvorn {

// What a program that looks at many files or processes at once asks for.
inline constexpr rlim_t kManyDescriptors = 4096;

// Raises the limit of that resource (RLIMIT_NOFILE ...) to `least`, or as far up as this process may; never
// lowers it. What it was before. Thread: any, as long as nobody else does so.
rlimit raiseLimit(int resource, rlim_t least);

}  // namespace halvorn
