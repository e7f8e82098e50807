// Languages that nobody speaks, for what a real one would hide.
#pragma once

#include <string>

namespace halvorn {

inline constexpr char kLongerLanguage[] = "qps";
inline constexpr char kMirroredLanguage[] = "qpr";

// Writes the table of a language made from the English one into that folder of resources: each text longer by so many
// per cent, in accented letters; `mirrored` turns the window around.
void writePseudoLanguage(const std::string& resources, const std::string& language, int longerPerCent,
                         bool mirrored = false);

}  // namespace halvorn
