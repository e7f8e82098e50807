// A Trash that takes nothing: every item stays where it is.
#pragma once

#include "Platform/files/Trash.h"

namespace halvorn {

class NullTrash : public Trash {
 public:
  bool recycle(const Text&, const std::vector<Text>&) override { return false; }
};

}  // namespace halvorn
