// The Trash, by the recycle operation of the workspace.
#pragma once

#include "Platform/files/Trash.h"

namespace halvorn {

class MacTrash : public Trash {
 public:
  // Each name is an operation of its own, whose tag is not asked for.
  std::optional<FileFailure> recycle(const Text& sourceFolder, const std::vector<Text>& names) override;
};

}  // namespace halvorn
