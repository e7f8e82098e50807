// StringExtensions, HTML: the text of markup.
#pragma once

#include "Core/Text.h"
#include "Platform/text/HtmlText.h"

namespace halvorn::StringExtensions {

// The text that the markup shows, with its entities resolved: white space in a row is one space (except in
// <pre>), line breaks stand between blocks and for <br>, tabs between the cells of a table row; nothing of
// <head>, scripts and style sheets, and no line break at either end. Fails: the text itself, when it cannot
// be read as HTML.
[[nodiscard]] Text stringByExpandingHTMLEntities(const Text& text, const HtmlText& html);

}  // namespace halvorn::StringExtensions
