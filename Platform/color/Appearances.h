// How things look: light (Aqua) or dark (Dark Aqua).
#pragma once

#include <memory>
#include <optional>
#include <vector>

namespace halvorn {

// The appearances a view can be held to; Inherited stands for that of whatever holds the view.
enum class AppearanceName { Inherited, Aqua, DarkAqua };

class Appearance {  // what a view, or all of the desktop, is drawn in
 public:
  virtual ~Appearance() = default;
  // Which of the names fits this appearance best; nullopt when none does. Thread: any.
  [[nodiscard]] virtual std::optional<AppearanceName> bestMatchFromAppearancesWithNames(
      const std::vector<AppearanceName>& names) const = 0;
};

using AppearancePointer = std::shared_ptr<const Appearance>;  // null for none

// Thread: main.
class Appearances {
 public:
  virtual ~Appearances() = default;
  // That of the view which is being drawn now; null while nothing is drawn.
  [[nodiscard]] virtual AppearancePointer currentAppearance() const = 0;
  // That of the whole application, which views follow unless they are held to another
  // one; null when the desktop has none.
  [[nodiscard]] virtual AppearancePointer effectiveAppearance() const = 0;
};

}  // namespace halvorn
