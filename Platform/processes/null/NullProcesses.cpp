// Compiled in every build, so that no interface of this subject goes without its null.
#include "Platform/processes/null/NullProcesses.h"
