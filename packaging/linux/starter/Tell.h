// What a program has to say to a person who may have started it without a terminal.
#pragma once

#include <string>

namespace halvorn {

// The sentence on standard error, and as a notification of the desktop's with that title: by notify-send, else by a call on the
// person's bus. Returns when it was handed over, or when there is nobody to show it.
void tell(const std::string& title, const std::string& sentence);

}  // namespace halvorn
