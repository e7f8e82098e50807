// Builds a window from an interface description.
// Why: docs/decisions/016-the-window-description.md
#pragma once

#include <QByteArray>
#include <memory>

#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/window/Images.h"
#include "Platform/window/linux/WindowWidget.h"

namespace halvorn {

struct ReadInterface {
  std::unique_ptr<WindowWidget> window;  // null when the description is wrong
  Text problem;                          // then: what is wrong with it and in which line
};

// Pictures named by the description are looked for through `imageNamed` when they are first shown.
[[nodiscard]] ReadInterface readInterface(const QByteArray& description, const LocalizedStrings& strings,
                                          std::function<ImagePointer(const Text& name)> imageNamed);

}  // namespace halvorn
