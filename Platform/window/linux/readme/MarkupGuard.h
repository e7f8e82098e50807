// Whether the toolkit's readers can be given a document: their time grows with the square of its depth.
#pragma once

#include <QString>

namespace halvorn {

// Elements nested at most 200 deep, tables at most 3.
[[nodiscard]] bool isShallowHtml(const QString& html);
// At most 10,000 tags, 4,000 attributes in one, and tables and style sheets that are small together: what a table's cells
// span is counted as if all of them stood in one table, and each rule of a style sheet is looked at for each tag.
[[nodiscard]] bool isModestHtml(const QString& html);
// The text of the document, its tags left out, a line end for each block.
[[nodiscard]] QString textOfHtml(const QString& html);

// No line opens more than 32 quotes and list items.
[[nodiscard]] bool isShallowMarkdown(const QString& markdown);
// At most 10,000 signs that may mean something, 2,000 of them brackets, 1,000 in a paragraph, 64 columns in a line, and
// 1,000 items of lists.
[[nodiscard]] bool isModestMarkdown(const QString& markdown);

}  // namespace halvorn
