// The languages the person reads, best first, and the folders in which bundles keep them.
#pragma once

#include <vector>

#include "Core/Text.h"
#include "Platform/session/linux/Environment.h"

namespace halvorn {

// "-AppleLanguages (de, en)" of the command line, program path included, where it is there; else LANGUAGE,
// which may list several; else the first of LC_ALL, LC_MESSAGES and LANG that is set. LANGUAGE does not count
// where that one is "C" or "POSIX". Empty when nothing is said.
[[nodiscard]] std::vector<Text> preferredLanguages(const std::vector<Text>& arguments,
                                                   const Environment& environment);

// The names a bundle may give its folder for the language, best first, without ".lproj":
// "de_AT.UTF-8" -> "de_AT", "de-AT", "de", "German"; "sr_RS@latin" -> "sr_Latn_RS", "sr_Latn", "sr" and the like.
[[nodiscard]] std::vector<Text> languageFolderNames(const Text& language);
// The folders of a bundle whose texts suit none of the languages: its own, then English.
[[nodiscard]] std::vector<Text> fallbackLanguageFolderNames(const OptionalText& developmentRegion);

}  // namespace halvorn
