// The letters that press buttons together with the Alt key.
#pragma once

#include <QChar>
#include <QStringList>
#include <vector>

namespace halvorn {

// A letter of each title, none twice; null for a title that has none left, or none that its keyboard types at one stroke.
// The first letter of a word is preferred.
[[nodiscard]] std::vector<QChar> mnemonicsFor(const QStringList& titles);

}  // namespace halvorn
