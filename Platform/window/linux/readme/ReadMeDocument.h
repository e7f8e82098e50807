// Read-me documents: rich text, HTML, Markdown and plain text, as documents of the toolkit.
//
// Other people wrote them: what they consist of and what reading them costs is bounded, nothing is loaded from
// anywhere else, nothing is run.
// Why: docs/decisions/017-nothing-outside-a-document.md
#pragma once

#include <QTextDocument>
#include <memory>

#include "Core/Text.h"
#include "Platform/window/linux/readme/ReadingBudget.h"

namespace halvorn {

struct ReadMeDocument {
  std::unique_ptr<QTextDocument> document;  // null when the file cannot be read
  bool isWhole = true;                      // false when it is the beginning only
  QString fileName = {};                    // as people see it
};

// The document in the file. One that the toolkit could not bear (DocumentLimits.h), or that used up its share of
// the budget, is shown as plain text, and of what is too long even so the beginning. A folder Name.rtfd counts as
// the document TXT.rtf in it.
[[nodiscard]] ReadMeDocument readMeDocument(const Text& path, const ReadingBudget& budget = ReadingBudget());

}  // namespace halvorn
