// That nobody sits before the window any more.
//
// What has not been begun by then is not begun; what was begun is finished.
#pragma once

#include "Core/Cancellation.h"

namespace halvorn {

struct Departure {
  Cancellation left;         // the window is gone, for whatever reason
  Cancellation sessionEnds;  // and what is started now would end with the session
};

}  // namespace halvorn
