// Literal comparison in numeric mode: runs of the digits 0 to 9 compare by their
// value, everything else unit for unit.
//
// "2.10" comes after "2.9", "2.1" before "2.1.1", "1.02" is the same as "1.2". Digits may go on for as long
// as they like. Case counts, the locale does not. Thread: any.
#pragma once

#include "Core/Ordering.h"
#include "Core/Text.h"

namespace halvorn {

[[nodiscard]] Ordering compareNumerically(const Text& a, const Text& b);  // see above

}  // namespace halvorn
