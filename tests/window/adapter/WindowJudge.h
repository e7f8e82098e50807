// Looks at a window as it stands and says what a careful person would not let pass.
#pragma once

#include <QMargins>
#include <string>
#include <vector>

class QAbstractButton;
class QWidget;

namespace halvorn {

// A sentence for each finding: outside the work area (with that frame around the window, where none is known), over one another, cut
// without a tool tip that has the whole text, without a name, hard to read, without a ring though the keyboard came to it by a key.
[[nodiscard]] std::vector<std::string> findingsIn(QWidget& window, const QMargins& frame,
                                                  const QAbstractButton* reachedByKey = nullptr);

}  // namespace halvorn
