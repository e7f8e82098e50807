// No administrator rights for anybody.
#pragma once

#include "Platform/Authorizer.h"

namespace halvorn {

class NullAuthorizer : public Authorizer {
 public:
  Result requestAdministratorRights(const Text&, const std::vector<Text>&) override {
    return {AuthorizationAnswer::Refused, nullptr};
  }
};

}  // namespace halvorn
