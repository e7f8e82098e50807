// The Trash that the tool moves things to: it links no framework, so no workspace does it.
#pragma once

#include "Platform/files/mac/HomeTrash.h"

namespace halvorn {

using ToolTrash = HomeTrash;

}  // namespace halvorn
