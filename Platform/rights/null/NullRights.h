// Rights that nobody can have.
#pragma once

#include "Platform/rights/Authorizer.h"

namespace halvorn {

// No administrator rights for anybody.
class NullAuthorizer : public Authorizer {
 public:
  Result requestAdministratorRights(const Text&, const std::vector<Text>&) override {
    return {AuthorizationAnswer::Refused, nullptr};
  }
  void withdraw() override {}  // nobody is ever asked
};

}  // namespace halvorn
