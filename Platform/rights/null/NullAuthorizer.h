// No administrator rights for anybody.
#pragma once

#include "Platform/rights/Authorizer.h"

namespace halvorn {

class NullAuthorizer : public Authorizer {
 public:
  Result requestAdministratorRights(const Text&, const std::vector<Text>&) override {
    return {AuthorizationAnswer::Refused, nullptr};
  }
  void withdraw() override {}  // nobody is ever asked
};

}  // namespace halvorn
