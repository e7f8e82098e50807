// Nothing ever happens.
#pragma once

#include "Platform/processes/ApplicationEvents.h"

namespace halvorn {

class NullApplicationEvents : public ApplicationEvents {
 public:
  void installHandler(std::function<void(int)>) override {}
};

}  // namespace halvorn
