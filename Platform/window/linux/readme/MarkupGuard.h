// Whether the toolkit's readers can be given a document: their time grows with the square of its depth.
#pragma once

#include <QString>

namespace halvorn {

// Elements nested at most 200 deep, tables at most 8.
[[nodiscard]] bool isShallowHtml(const QString& html);
// The text of the document, its tags left out, a line end for each block.
[[nodiscard]] QString textOfHtml(const QString& html);

// No line opens more than 32 quotes and list items.
[[nodiscard]] bool isShallowMarkdown(const QString& markdown);

}  // namespace halvorn
