// Character references of HTML: "&eacute;", "&#233;", "&#xE9;".
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace halvorn {

struct HtmlReference {
  std::u16string text;     // what it stands for
  std::size_t length = 0;  // in units of the page
};

// The reference that the page begins with; nullopt when its "&" begins none. As browsers read it: the longest
// name that the standard knows, the older ones also without a semicolon; numbers in any notation, 128 to 159
// as the characters of windows-1252, and U+FFFD for what is no character.
[[nodiscard]] std::optional<HtmlReference> htmlReferenceAt(std::u16string_view page);

}  // namespace halvorn
