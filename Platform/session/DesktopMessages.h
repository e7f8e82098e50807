// Sentences for whoever sits before the desktop, where no window says them.
#pragma once

#include "Core/Text.h"

namespace halvorn {

class DesktopMessages {
 public:
  virtual ~DesktopMessages() = default;
  // Shows the sentence under the title, the way the desktop shows what programs have to say. Returns at once.
  // Thread: any. Fails: without such a desktop it is told to whoever started the program, if anybody.
  virtual void tell(const Text& title, const Text& sentence) = 0;
};

}  // namespace halvorn
