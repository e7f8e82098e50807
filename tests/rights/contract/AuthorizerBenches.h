// What the cases of the contract are asked of: somebody who answers, and a tool.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/rights/Authorizer.h"

namespace halvorn {

// How the person answers, and what the tool then does.
struct Circumstances {
  AuthorizationAnswer answer = AuthorizationAnswer::Granted;
  ToolEnd end = ToolExited{0};
};

class Bench {
 public:
  virtual ~Bench() = default;
  struct Outcome {
    AuthorizationAnswer answer = AuthorizationAnswer::Refused;
    bool hasAuthorization = false;
    std::optional<ToolEnd> end = std::nullopt;
  };
  virtual Outcome ask(const Circumstances& circumstances) = 0;
};

// One of those that this program was built with.
struct NamedBench {
  const char* name;
  std::optional<std::string> (*missing)();  // what the machine lacks for it
  std::unique_ptr<Bench> (*make)();
};
[[nodiscard]] const std::vector<NamedBench>& benches();

}  // namespace halvorn
