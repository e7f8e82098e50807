// Printing real numbers: as C does in its own locale, in every locale of the program.
#pragma once

#include <string>
#include <string_view>

namespace halvorn {

// As "%f" with these flags, width and precision between its two characters: "", "1.1", "-08.3".
[[nodiscard]] std::string printedInFull(double value, std::string_view modifiers);
// As "%g" with that many significant digits.
[[nodiscard]] std::string printedBriefly(double value, int significantDigits);

}  // namespace halvorn
