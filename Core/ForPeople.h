// Names from elsewhere, as people get to see them: nothing in them is hidden, and nothing in them turns around the
// sentence that they stand in.
//
//   field.setStringValue(formatForPeople(strings.localized("%@ was successfully installed."), productName));
//
// Why: docs/decisions/034-names-in-disguise.md
#pragma once

#include <vector>

#include "Core/Format.h"
#include "Core/Text.h"

namespace halvorn {

// Whether nobody sees the character: controls, marks that turn the direction of what follows, fillers, and all that is
// left out where it is not known.
[[nodiscard]] bool isInvisible(char32_t character);

// How an invisible character is shown: "\u{202E}".
[[nodiscard]] std::u16string shownAsNumber(char32_t character);

// The text with its invisible characters shown as what they are. Those stay that have a part in the letters or the
// pictures around them: the joiners between letters of scripts that join, and in emoji.
[[nodiscard]] Text undisguised(const Text& name);

// Whether a letter in it is written from right to left.
[[nodiscard]] bool hasRightToLeft(const Text& text);

// As format(), with every text undisguised, and isolated from the sentence where one of the two is written from right to
// left.
[[nodiscard]] Text formatNames(const Text& text, std::vector<FormatArgument> arguments);
template <typename... Arguments>
[[nodiscard]] Text formatForPeople(const Text& text, const Arguments&... arguments) {
  return formatNames(text, {FormatArgument(arguments)...});
}

}  // namespace halvorn
