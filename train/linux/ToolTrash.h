// The Trash that the tool moves things to.
#pragma once

#include "Platform/files/linux/trash/XdgTrash.h"

namespace halvorn {

using ToolTrash = XdgTrash;

}  // namespace halvorn
