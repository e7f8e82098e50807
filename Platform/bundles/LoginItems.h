// What the session starts by itself when the person logs in.
#pragma once

#include <optional>
#include <vector>

#include "Core/Text.h"

namespace halvorn {

class LoginItems {
 public:
  virtual ~LoginItems() = default;

  // The session's login items in list order, each as the path it resolves to: the bundle around its program,
  // else the program; nullopt for an item that does not resolve. The whole answer is nullopt when there is no
  // list at all. Thread: any.
  [[nodiscard]] virtual std::optional<std::vector<OptionalText>> snapshot() const = 0;
};

}  // namespace halvorn
