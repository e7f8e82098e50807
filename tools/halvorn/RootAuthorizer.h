// Administrator rights that are there already: the tool is run as it is.
#pragma once

#include <atomic>

#include "Platform/rights/Authorizer.h"

namespace halvorn {

class RootAuthorizer : public Authorizer {
 public:
  // Asks nobody.
  Result requestAdministratorRights(const Text& toolPath, const std::vector<Text>& arguments) override;
  void withdraw() override { isWithdrawn_ = true; }

 private:
  std::atomic<bool> isWithdrawn_ = false;
};

}  // namespace halvorn
