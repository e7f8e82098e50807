// No menu bar to watch.
#pragma once

#include "Platform/session/MenuBar.h"

namespace halvorn {

class NullMenuBar : public MenuBar {
 public:
  bool installHandler(Handler) override { return false; }
};

}  // namespace halvorn
