// Administrator rights by the system's authorization services.
//
// The system's dialog cannot be taken away from outside: a request that was under way when it was withdrawn is answered
// as canceled once the person has answered.
#pragma once

#include <atomic>

#include "Platform/rights/Authorizer.h"

namespace halvorn {

class MacAuthorizer : public Authorizer {
 public:
  Result requestAdministratorRights(const Text& toolPath, const std::vector<Text>& arguments) override;
  void withdraw() override { isWithdrawn_ = true; }

 private:
  std::atomic<bool> isWithdrawn_ = false;
};

}  // namespace halvorn
