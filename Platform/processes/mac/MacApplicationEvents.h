// Launches, ends and front switches, as Carbon's application events tell them.
#pragma once

#include <memory>

#include "Platform/processes/ApplicationEvents.h"

namespace halvorn {

class MacApplicationEvents : public ApplicationEvents {
 public:
  MacApplicationEvents();
  ~MacApplicationEvents() override;
  void installHandler(std::function<void(int kind)> handler) override;

 private:
  struct Installation;
  std::unique_ptr<Installation> installation_;
};

}  // namespace halvorn
