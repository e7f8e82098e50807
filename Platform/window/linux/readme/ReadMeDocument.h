// Read-me documents: rich text, HTML, Markdown and plain text, as documents of the toolkit.
//
// Other people wrote them: size, depth and pictures are bounded, nothing is loaded
// from anywhere else, nothing is run.
// Why: docs/decisions/017-nothing-outside-a-document.md
#pragma once

#include <QByteArray>
#include <QTextDocument>
#include <memory>

#include "Core/Text.h"

namespace halvorn {

// The document in the file; null when it cannot be read or is larger than 8 MiB (rich text: 16 MiB). HTML and
// Markdown that is larger or deeper than the toolkit can bear is shown as plain text. A folder Name.rtfd
// counts as the document TXT.rtf in it.
[[nodiscard]] std::unique_ptr<QTextDocument> readMeDocument(const Text& path);

}  // namespace halvorn
