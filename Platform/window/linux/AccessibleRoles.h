// What the house's own widgets are to a screen reader.
#pragma once

namespace halvorn {

// From here on the toolkit asks the house first. Calling it again does nothing. Thread: main.
void installAccessibleRoles();

}  // namespace halvorn
