#include "Platform/rights/posix/Requester.h"

#include <unistd.h>

#include <cstdlib>

namespace halvorn {

std::optional<std::string> variableOfThisProcess(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

Requester requesterOfThisProcess(const VariableLookup& variable) {
  if (::geteuid() != ::getuid()) {
    auto account = accountWithUid(::getuid());
    if (!account) return {.kind = Requester::Kind::Unknown};
    return {.kind = Requester::Kind::Somebody, .account = std::move(account)};
  }
  if (::geteuid() != 0) return {};
  return RequesterVariables::requesterNamedBy(variable);
}

}  // namespace halvorn
